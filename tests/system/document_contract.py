"""What the commands on reminders documents promise in every state of the application: a mix-in of
tests."""

import os
import resource
import signal
import subprocess
from pathlib import Path

from documents import DUE, KEYS, dictionary, document, reminder, rows
from keyed_archives import CalendarDate, Date, Mutable, archive
from session import PROGRAM

DATA = Path(__file__).resolve().parents[1] / "data"
NEVER = Date(-63113904000.0)  # 0001-01-01, as we write it


class DocumentContract:
    """What holds in every state of the application."""

    def write(self, name, data):
        path = self.session.home / name
        path.write_bytes(data)
        return str(path)

    def write_document(self, *reminders, mutable=False):
        return self.write("given.tockwise", document(list(reminders), mutable))

    def saved(self, path="saved.tockwise"):
        """The reminders of the document that save writes."""
        place = self.session.home / path
        self.assertEqual(self.run_command("save", str(place)), "")
        return rows(place.read_bytes())

    def run_telling(self, *words):
        """Runs a command that succeeds; returns what it printed on stdout and on stderr."""
        done = self.session.tockwise(*words)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout, done.stderr

    # Saving

    def test_texts_of_a_document_do_not_steer_the_terminal(self):
        path = self.write_document(reminder("\x1b[2Jred\x07\x7f\x9b\nover\U0001f469\u200d\U0001f33e",
                                            reminderUUID="\x1b]0;x"))
        self.run_command("merge", path)
        for words in (["list"], ["show", "1"], ["menu"]):
            output = self.run_command(*words)
            self.assertNotRegex(output, r"[\x00-\x08\x0b-\x1f\x7f-\x9f]", words)
            self.assertIn("over\U0001f469\u200d\U0001f33e", output)
        self.assertEqual(self.reminders()[0]["reminderDescriptions"][:4], "\x1b[2J")

    def test_another_reader_reads_what_save_writes(self):
        uuid = self.add("Tee ☕️", "--at", "2031-03-04 09:05", "--every", "day", "--days", "Mon",
                        "--between", "08:00-17:30", "--before", "1,2,3", "--sms", "--task",
                        "script:/tmp/a b.sh")
        (row,) = self.saved()
        listed = self.session.json("show", uuid)
        self.assertEqual(row["reminderUUID"], uuid)
        self.assertEqual(row["reminderDescriptions"], "Tee ☕️")
        self.assertEqual(row["reminderIntervals"], [0, 1, 0, 0])
        self.assertEqual(row["reminderExtras"], {
            "days": [False, True, False, False, False, False, False], "times": [8, 0, 17, 30]})
        self.assertEqual(row["reminderOffsets"], [1, 2, 3])
        self.assertEqual(row["reminderTasks"], {"type": 4, "path": "/tmp/a b.sh"})
        self.assertIs(row["reminderSendSMS"], True)
        self.assertIs(row["reminderSendEmail"], False)
        self.assertIs(row["reminderRecent"], False)
        self.assertEqual(row["reminderRTFs"], b"")
        self.assertEqual(row["reminderDateTimeFired"], NEVER)
        self.assertIsInstance(row["reminderQueue"], Date)
        self.assertEqual(listed["reminderDateTimeFired"], None)

    def test_an_empty_queue_saves_as_a_document_that_empties_the_queue(self):
        self.assertEqual(self.saved(), [])
        self.add("Tea", "--at", "2031-03-04 09:05")
        self.run_command("open", str(self.session.home / "saved.tockwise"), "--yes")
        self.assertEqual(self.reminders(), [])

    def test_opening_what_was_saved_gives_the_same_queue_element_for_element(self):
        self.add("Tea", "--at", "2031-03-04 09:05", "--every", "week")
        self.add("Milk\nand honey 🐝", "--at", "2030-03-04 09:05", "--email")
        self.add("Bread", "--at", "2032-01-01 00:00")
        before = self.reminders()
        path = str(self.session.home / "a.tockwise")
        self.run_command("save", path)
        self.run_command("clear", "--yes")
        self.assertEqual(self.reminders(), [])
        self.assertEqual(self.run_command("open", path, "--yes"), "")
        self.assertEqual(self.reminders(), before)

    def test_save_takes_a_path_from_the_callers_folder_and_replaces_what_is_there(self):
        folder = self.session.home / "my documents"
        folder.mkdir()
        old = folder / "a.tockwise"
        old.write_bytes(b"old")
        old.chmod(0o664)
        self.add("Tea", "--at", "2031-03-04 09:05")
        self.run_command("save", "a.tockwise", cwd=folder)
        self.assertEqual([row["reminderDescriptions"] for row in rows(old.read_bytes())], ["Tea"])
        self.assertEqual(old.stat().st_mode & 0o777, 0o664)
        self.assertEqual(os.listdir(folder), ["a.tockwise"])
        self.run_command("merge", "./a.tockwise", cwd=folder)

    def test_what_cannot_be_saved_says_so_and_leaves_what_is_there(self):
        folder = self.session.home / "folder"
        folder.mkdir()
        os.mkfifo(self.session.home / "pipe")
        for path in (folder, self.session.home / "pipe", self.session.home / "nowhere/a",
                     "/proc/a.tockwise"):
            self.assertIn(str(path), self.run_command("save", str(path), status=1))

    # Opening

    def test_a_document_of_another_program_opens(self):
        self.run_command("open", str(DATA / "documents/other-program.tockwise"), "--yes")
        by_text = {each["reminderDescriptions"]: each for each in self.reminders()}
        plants = by_text["Water the plants"]
        self.assertEqual(plants["reminderQueue"], "2031-01-01T00:00:00.125000Z")
        self.assertEqual(plants["reminderIntervals"], [0, 1, 0, 0])
        self.assertEqual(plants["reminderExtras"]["times"], [8, 0, 17, 30])
        self.assertIs(plants["reminderSendEmail"], True)
        self.assertIsNone(plants["reminderDateTimeFired"])
        tea = by_text["Tee um fünf ☕️\nzweite Zeile"]
        self.assertEqual(tea["reminderRecent"], 3)
        self.assertEqual(tea["reminderTasks"], {"type": 4, "path": "/home/me/backup.sh"})
        self.assertTrue(self.session.json("show", tea["reminderUUID"])["richText"])
        dentist = by_text["Dentist"]
        self.assertEqual(dentist["reminderIntervals"], [0, 0, 0, 0])
        self.assertEqual(dentist["reminderTasks"], {"nil": "nil"})
        self.assertEqual(dentist["reminderExtras"]["days"], [True] * 7)
        self.assertEqual((dentist["importedUIDs"], dentist["reminderTypes"]), ("A-B-C-D", "daily"))

    def test_collections_of_either_kind_and_older_dates_open(self):
        for mutable in (False, True):
            path = self.write_document(
                reminder(Mutable("Tea"), reminderQueue=CalendarDate(946684800.125),
                         reminderRTFs=Mutable(b"rich"), reminderRecent=2), mutable=mutable)
            self.run_command("open", path, "--yes")
            (row,) = self.saved()
            self.assertEqual(row["reminderQueue"], Date(946684800.125))
            self.assertEqual((row["reminderDescriptions"], row["reminderRTFs"],
                              row["reminderRecent"]), ("Tea", b"rich", 2))

    def test_a_document_that_was_opened_is_saved_as_it_was(self):
        given = [reminder(f"text {number}", reminderDateTimeFired=NEVER, reminderRecent=number,
                          reminderQueue=Date(DUE.seconds + number),
                          reminderIntervals=[0, 0, number, 0], importedUIDs=f"event {number}")
                 for number in range(1, 30)]
        self.run_command("open", self.write_document(*given), "--yes")
        self.assertEqual(self.saved(), given)

    def test_what_is_no_document_changes_nothing(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        before = self.reminders()
        whole = document([reminder("a"), reminder("b")])
        short = dictionary([reminder("a"), reminder("b")])
        short["reminderTasks"].pop()
        missing = dictionary([reminder("a")])
        del missing["reminderOffsets"]
        foreign = {
            "empty": b"", "words": b"Dear diary", "half": whole[:len(whole) // 2],
            "zeroes": bytes(len(whole)), "no dictionary": archive(["a"]),
            "short": archive(short), "missing": archive(missing),
            "folded": (DATA / "archives/hostile/bplist_sharing_bomb_24.plist").read_bytes(),
        }
        for name, data in foreign.items():
            path = self.write(f"{name}.tockwise", data)
            for words in (["open", path, "--yes"], ["merge", path]):
                with self.subTest(words=words):
                    self.assertIn(path, self.run_command(*words, status=1))
        self.assertEqual(self.reminders(), before)

    def test_what_cannot_be_read_changes_nothing(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        os.mkfifo(self.session.home / "pipe")
        for path in (self.session.home / "missing", self.session.home, self.session.home / "pipe",
                     "/dev/zero"):
            for words in (["open", str(path), "--yes"], ["merge", str(path)]):
                with self.subTest(words=words):
                    self.assertIn(str(path), self.run_command(*words, status=1))
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_fire_date_that_is_none_is_dropped_alone(self):
        path = self.write_document(reminder("a", reminderQueue="soon"), reminder("b"))
        self.run_command("open", path, "--yes")
        self.assertEqual(len(self.reminders()), 1)

    # Merging

    def test_merging_adds_what_is_new_and_tells_how_many(self):
        known = self.add("Tea", "--at", "2031-03-04 09:05")
        path = self.write_document(reminder("another text", reminderUUID=known), reminder("Milk"),
                                   reminder("Bread"), reminder("b", reminderUUID="X"),
                                   reminder("a", reminderUUID="X"))
        self.assertEqual(self.run_command("merge", path), "3 merged, 2 existed\n")
        self.assertEqual(sorted(self.texts()), ["Bread", "Milk", "Tea", "b"])
        self.assertEqual(self.run_command("merge", path), "0 merged, 5 existed\n")

    def test_merging_into_itself_merges_nothing(self):
        for text in ("one", "two", "three"):
            self.add(text, "--at", "2031-03-04 09:05")
        self.saved("a.tockwise")
        stored = self.session.store.read_bytes()
        self.assertEqual(self.run_command("merge", str(self.session.home / "a.tockwise")),
                         "0 merged, 3 existed\n")
        self.assertEqual(self.session.store.read_bytes(), stored)

    # Tasks

    def test_what_would_run_is_told_on_stderr(self):
        path = self.write_document(
            reminder("Tea\n\x1b[31m", reminderTasks={"type": 4, "path": "/bin/\x07x"}),
            reminder("Milk"), reminder("News", reminderTasks={"type": 0, "path": "http://x.org/"}))
        expected = ('tockwise: "Tea ␛[31m" runs the script /bin/␇x\n'
                    'tockwise: "News" opens the address http://x.org/\n')
        self.assertEqual(self.run_telling("merge", path), ("3 merged, 0 existed\n", expected))
        self.assertEqual(self.run_telling("open", path, "--yes"), ("", expected))
        self.assertEqual(self.run_telling("merge", path), ("0 merged, 3 existed\n", ""))

    def test_no_more_than_twenty_tasks_are_told(self):
        path = self.write_document(*(reminder(f"t{number}", reminderTasks={
            "type": 2, "path": "/x"}) for number in range(25)))
        lines = self.run_telling("open", path, "--yes")[1].splitlines()
        self.assertEqual(len(lines), 21)
        self.assertEqual(lines[-1], "tockwise: and 5 more")

    def test_tasks_can_be_left_out(self):
        task = {"type": 4, "path": "/bin/true"}
        path = self.write_document(reminder("Tea", reminderTasks=task))
        self.assertEqual(self.run_telling("open", path, "--yes", "--no-tasks"), ("", ""))
        self.assertEqual(self.reminders()[0]["reminderTasks"], {"nil": "nil"})
        self.run_command("clear", "--yes")
        self.assertEqual(self.run_telling("merge", path, "--no-tasks"),
                         ("1 merged, 0 existed\n", ""))
        self.assertEqual(self.reminders()[0]["reminderTasks"], {"nil": "nil"})

    # Words

    def test_wrong_words_are_refused(self):
        path = self.write_document(reminder("Tea"))
        for words in (["save"], ["save", "a", "b"], ["open"], ["merge"], ["merge", path, "--yes"],
                      ["open", path, "--no-tasks"], ["save", path, "--json"], ["save", ""],
                      ["merge", ""], ["open", "", "--yes"]):
            self.run_command(*words, status=2)
        self.assertEqual(self.reminders(), [])

    def run_with_small_files(self, *words, bytes_each):
        """Runs a command in which no file may grow beyond that: as a full disk, for the program."""
        def fill_up():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (bytes_each, bytes_each))
        return subprocess.run([PROGRAM, *words], env=self.session.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8",
                              timeout=30, check=False, preexec_fn=fill_up)


assert len(KEYS) == 16
