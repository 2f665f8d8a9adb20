#!/usr/bin/python3
"""Stores that are damaged, foreign, full or out of reach."""

import plistlib
import resource
import signal
import subprocess
import time

from harness import SystemTest, main
from session import PROGRAM
from stores import read_store, reminder, write_root, write_store

DAMAGES = {
    "empty": lambda data: b"",
    "cut": lambda data: data[:len(data) // 2],
    "zeroes": lambda data: bytes(len(data)),
    "no trailer": lambda data: data[:-32],
    "text": lambda data: b"these are no reminders\n",
    "list": lambda data: plistlib.dumps(["a", "list"], fmt=plistlib.FMT_BINARY),
}


class DamagedStore(SystemTest):
    SESSION = {"tray": "status-notifier"}

    def damage(self, how):
        """A store with two reminders, a copy of its state with one, then a damaged file; returns
        the damaged bytes."""
        self.add("one", "--at", "2031-01-01 00:00")
        with_one = self.session.store.read_bytes()
        self.add("two", "--at", "2031-01-02 00:00")
        copies = sorted(self.session.backups.iterdir(), key=lambda path: path.stat().st_mtime_ns)
        copies[-1].write_bytes(with_one)
        damaged = DAMAGES[how](self.session.store.read_bytes())
        self.session.store.write_bytes(damaged)
        return damaged

    def kept_copies(self, data):
        """The files beside the store and in the backups that hold exactly these bytes."""
        folders = (self.session.store.parent, self.session.backups)
        return [path for folder in folders if folder.is_dir() for path in folder.iterdir()
                if path.is_file() and path != self.session.store and path.suffix != ".lock"
                and path.read_bytes() == data]

    def check_recovery(self, how):
        damaged = self.damage(how)
        self.session.start_application()
        self.wait_for(self.session.desktop.windows, "a window that tells")
        self.assertEqual(self.texts(), ["one"])
        self.assertTrue(self.kept_copies(damaged), "the damaged file is kept")
        self.add("three", "--at", "2031-01-03 00:00")
        self.assertEqual(self.session.quit_application(), 0)
        self.assertEqual(self.texts(), ["one", "three"])

    def test_an_empty_file(self):
        self.check_recovery("empty")

    def test_a_file_that_was_cut(self):
        self.check_recovery("cut")

    def test_a_file_of_zeroes(self):
        self.check_recovery("zeroes")

    def test_a_file_without_its_end(self):
        self.check_recovery("no trailer")

    def test_a_file_of_text(self):
        self.check_recovery("text")

    def test_a_property_list_of_another_kind(self):
        self.check_recovery("list")

    def test_a_command_takes_the_newest_good_copy_and_says_so(self):
        damaged = self.damage("cut")
        done = self.session.tockwise("list")
        self.assertEqual(done.returncode, 0)
        self.assertIn("damaged", done.stderr)
        self.assertIn("one", done.stdout)
        self.assertTrue(self.kept_copies(damaged))
        self.assertEqual(self.session.tockwise("list").stderr, "", "it is said once")

    def test_a_damaged_store_without_a_copy_starts_empty_and_is_kept(self):
        self.session.store.parent.mkdir(parents=True)
        self.session.store.write_bytes(b"damaged")
        self.session.start_application()
        self.assertEqual(self.reminders(), [])
        self.assertTrue(self.kept_copies(b"damaged"))


class ForeignStore(SystemTest):
    SESSION = {"display": False}

    def test_a_store_of_another_writer_is_read_whole(self):
        write_store(self.session, [reminder("Tea", 1900000000, reminderIntervals=[0, 1, 0, 0])],
                    sortType=5)
        self.assertEqual(self.texts(), ["Tea"])
        self.assertEqual(self.reminders()[0]["reminderIntervals"], [0, 1, 0, 0])
        self.assertEqual(self.run_command("prefs", "get", "sortType"), "5\n")

    def test_another_reader_reads_what_we_write(self):
        self.add("Tee ☕️", "--at", "2031-03-04 09:05", "--every", "day")
        stored = read_store(self.session)
        self.assertEqual(stored["reminderDescriptions"], ["Tee ☕️"])
        self.assertEqual(stored["reminderIntervals"], [[0, 1, 0, 0]])
        self.assertEqual(stored["reminderRTFs"], [b""])
        self.assertIs(stored["reminderSendEmail"][0], False)
        converted = subprocess.run(["plistutil", "-i", str(self.session.store), "-f", "xml"],
                                   capture_output=True, check=True)
        self.assertIn("Tee ☕️".encode(), converted.stdout)

    def test_elements_of_a_foreign_kind_become_empty_and_the_original_is_kept(self):
        write_store(self.session, [reminder("Tea", 1900000000, reminderIntervals="never",
                                            reminderOffsets=7)])
        original = self.session.store.read_bytes()
        self.assertEqual(self.reminders()[0]["reminderIntervals"], [0, 0, 0, 0])
        self.assertEqual(self.reminders()[0]["reminderOffsets"], [0, 0, 0])
        self.add("more", "--in", "1 Hour")
        self.assertIn(original, [path.read_bytes() for path in self.session.backups.iterdir()])

    def test_columns_of_unequal_length_are_repaired(self):
        root = {"dataVersion": "0.1.0", "reminderDescriptions": ["one", "two"],
                "reminderQueue": [reminder("", 1900000000)["reminderQueue"]] * 2,
                "reminderUUID": ["A" * 8 + "-0000-0000-0000-" + "0" * 12]}
        write_root(self.session, root)
        listed = self.reminders()
        self.assertEqual([each["reminderDescriptions"] for each in listed], ["one", "two"])
        self.assertEqual(listed[0]["reminderUUID"], root["reminderUUID"][0])
        self.assertEqual(len({each["reminderUUID"] for each in listed}), 2)

    def test_unknown_keys_survive(self):
        write_store(self.session, [], keyOfAnotherRelease={"a": [1, 2.5, b"x"]})
        self.add("Tea", "--in", "1 Hour")
        self.assertEqual(read_store(self.session)["keyOfAnotherRelease"], {"a": [1, 2.5, b"x"]})


class StoreOutOfReach(SystemTest):
    SESSION = {"display": False}

    def test_a_folder_in_the_place_of_the_store_fails_and_stays(self):
        self.session.store.mkdir(parents=True)
        self.run_command("add", "Tea", "--in", "1 Hour", status=1)
        self.run_command("list", status=1)
        self.assertTrue(self.session.store.is_dir())

    def test_a_file_in_the_place_of_the_settings_folder_fails_and_stays(self):
        settings = self.session.home / ".config"
        settings.write_text("not a folder", encoding="utf-8")
        self.run_command("add", "Tea", "--in", "1 Hour", status=1)
        self.assertEqual(settings.read_text(encoding="utf-8"), "not a folder")

    def test_a_full_disk_leaves_the_old_store_whole(self):
        self.add("one", "--at", "2031-01-01 00:00")
        before = self.session.store.read_bytes()

        def fill_up():  # no file may grow beyond this: as a full disk, for the program
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (512, 512))

        done = subprocess.run([PROGRAM, "add", "two", "--at", "2031-01-02 00:00"],
                              env=self.session.environment, preexec_fn=fill_up, timeout=30,
                              capture_output=True, encoding="utf-8", check=False)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertEqual(self.session.store.read_bytes(), before)
        self.assertEqual([path for path in self.session.store.parent.iterdir()
                          if path.stat().st_size == 512], [], "no half-written file is left")
        self.add("three", "--at", "2031-01-03 00:00")
        self.assertEqual(self.texts(), ["one", "three"])

    def test_a_store_that_is_held_by_somebody_who_cannot_be_asked_is_left_alone(self):
        with_bus = self.session.environment
        self.add("one", "--at", "2031-01-01 00:00")
        environment = with_bus | {"QT_QPA_PLATFORM": "offscreen"}
        self.session.application = self.session.spawn(PROGRAM, log="tockwise",
                                                      environment=environment)
        self.wait_for(self.session.is_running, "the application")
        elsewhere = with_bus | {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        start = time.monotonic()
        self.run_command("add", "two", "--in", "1 Hour", status=1, environment=elsewhere)
        self.assertLess(time.monotonic() - start, 25)
        self.assertEqual(self.texts(), ["one"])


if __name__ == "__main__":
    main()
