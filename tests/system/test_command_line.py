#!/usr/bin/python3
"""The command line on the store itself: no application runs, with and without a session bus."""

import subprocess

from command_line_contract import Contract
from harness import SystemTest, main
from rich_contract import RichContract
from session import INTERFACE, NAME, PATH, PROGRAM


class WithoutApplication(Contract, RichContract, SystemTest):
    SESSION = {"display": False}

    def test_what_only_the_application_can_do_fails(self):
        for words in (["quit"], ["quit", "--yes"], ["alerts", "ok"], ["alerts", "ok-all"],
                      ["alerts", "show"]):
            self.assertIn("not running", self.run_command(*words, status=1))

    def test_no_command_starts_the_application(self):
        self.add("Tea", "--in", "1 Hour")
        self.run_command("list")
        self.assertFalse(self.session.is_running())

    def test_a_reminder_that_fell_due_is_listed_and_not_fired(self):
        self.add("Tea", "--at", "2001-01-01 00:00")
        self.assertEqual(self.reminders()[0]["reminderRecent"], 0)
        self.assertIn("Expired", self.run_command("menu"))

    def test_the_store_is_private(self):
        self.add("Tea", "--in", "1 Hour")
        self.assertEqual(self.session.store.stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.session.store.parent.stat().st_mode & 0o777, 0o700)

    def test_reading_writes_nothing(self):
        self.add("Tea", "--in", "1 Hour")
        before = (self.session.store.stat().st_mtime_ns, self.session.store.read_bytes())
        for words in (["list"], ["show", "1"], ["menu"], ["prefs", "list"]):
            self.run_command(*words)
        after = (self.session.store.stat().st_mtime_ns, self.session.store.read_bytes())
        self.assertEqual(before, after)


    def shell(self, line):
        return subprocess.run(["sh", "-c", line, PROGRAM], env=self.session.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, check=False,
                              timeout=30, cwd=self.session.home)

    def test_an_answer_that_cannot_be_written_is_a_failure(self):
        self.add("Tea", "--in", "1 Hour")
        for words in ("list", "list --json", "doctor --json", "--help", "--version", "help add"):
            for output in ("/dev/full", "&-"):
                done = self.shell(f'"$0" {words} >{output}')
                self.assertEqual(done.returncode, 1, (words, output))
                self.assertIn(b"cannot be written", done.stderr)
        self.assertEqual(self.shell('"$0" save mine >&-').returncode, 0)  # it has no answer

    def test_a_relative_path_in_a_folder_that_is_gone_is_refused(self):
        for words in ("save mine", "merge mine", "open --yes mine", "print --pdf mine"):
            done = self.shell(f'mkdir gone; cd gone; rmdir ../gone; "$0" {words}')
            self.assertEqual(done.returncode, 1, words)
            self.assertIn(b"current folder is gone", done.stderr)

    def test_words_that_are_not_utf_8_are_refused(self):
        for words in ("save", "add --in '1 Hour'"):
            done = self.shell(f'"$0" {words} "$(printf "a\\377")"')
            self.assertEqual(done.returncode, 2, words)
            self.assertIn(b"not in UTF-8", done.stderr)
        self.assertEqual(self.reminders(), [])

    def test_a_name_in_an_error_does_not_steer_the_terminal(self):
        for words in ("show", "save", "", "prefs get"):
            done = self.shell(f'"$0" {words} "$(printf "/no\\033[2J/a.tockwise")"')
            self.assertNotEqual(done.returncode, 0, words)
            self.assertIn("\u241b[2J".encode(), done.stderr, words)
            self.assertNotIn(b"\033", done.stderr, words)

    def test_a_bus_that_ends_before_the_answer_leaves_the_store_to_the_command(self):
        self.add("Tea", "--in", "1 Hour")
        calls = self.session.bus.never_answer(NAME, PATH, INTERFACE, "List")
        waiting = subprocess.Popen([PROGRAM, "list"], env=self.session.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   encoding="utf-8")
        self.addCleanup(waiting.kill)
        self.wait_for(lambda: calls, "the question")
        self.session.end("session-bus")
        output, errors = waiting.communicate(timeout=20)
        self.assertEqual((waiting.returncode, errors), (0, ""))
        self.assertIn("Tea", output)


class WithoutBus(Contract, SystemTest):
    SESSION = {"display": False, "bus": False}

    def test_no_address_of_a_bus_at_all_does_not_matter(self):
        environment = dict(self.session.environment)
        del environment["DBUS_SESSION_BUS_ADDRESS"]
        self.run_command("add", "Tea", "--in", "1 Hour", environment=environment)
        self.assertEqual(self.texts(), ["Tea"])

if __name__ == "__main__":
    main()
