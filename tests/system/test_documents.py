#!/usr/bin/python3
"""Reminders documents from the command line, with and without the running application."""

import os
import subprocess

from bus import GLib
from document_contract import DocumentContract
from documents import reminder, rows
from harness import SystemTest, main
from session import INTERFACE, NAME, PATH, PROGRAM


class DocumentsWithoutApplication(DocumentContract, SystemTest):
    SESSION = {"display": False}

    def test_opening_without_yes_is_refused(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        path = self.write_document(reminder("Milk"))
        self.assertIn("--yes", self.run_command("open", path, status=1))
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_full_disk_leaves_the_old_document_whole(self):
        for number in range(30):
            self.add(f"reminder {number}", "--at", "2031-03-04 09:05")
        path = self.session.home / "a.tockwise"
        path.write_bytes(b"old")
        done = self.run_with_small_files("save", str(path), bytes_each=512)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn(str(path), done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertEqual(path.read_bytes(), b"old")
        self.assertEqual([name for name in os.listdir(self.session.home) if "writing" in name], [])

    def test_a_change_that_does_not_fit_on_the_disk_is_lost_with_an_error_and_nothing_else(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        stored = self.session.store.read_bytes()
        path = self.write_document(*(reminder(f"reminder {number}") for number in range(50)))
        for words in (["open", path, "--yes"], ["merge", path]):
            done = self.run_with_small_files(*words, bytes_each=512)
            self.assertEqual((done.returncode, done.stdout), (1, ""), done.stderr)
        self.assertEqual(self.session.store.read_bytes(), stored)
        self.assertEqual(self.texts(), ["Tea"])


class DocumentsWithApplication(DocumentContract, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()

    def question(self):
        return next(iter(self.session.desktop.windows()), None)

    def answer(self, key):
        box = self.wait_for(self.question, "the question")
        self.session.desktop.activate(box)
        self.wait_for(lambda: self.session.desktop.active_window() == box.identifier, "its focus")
        self.session.desktop.press(key)

    def ask_to_open(self, path):
        asking = subprocess.Popen([PROGRAM, "open", path], env=self.session.environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                  encoding="utf-8")
        self.addCleanup(asking.kill)
        return asking

    def test_opening_without_yes_asks_in_the_application(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        asking = self.ask_to_open(self.write_document(reminder("Milk")))
        self.wait_for(self.question, "the question")
        self.assertEqual(self.texts(), ["Tea"])
        self.answer("Return")
        self.assertEqual(asking.communicate(timeout=20), ("", ""))
        self.assertEqual(asking.returncode, 0)
        self.assertEqual(self.texts(), ["Milk"])

    def test_a_question_that_is_cancelled_fails_and_changes_nothing(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        asking = self.ask_to_open(self.write_document(reminder("Milk")))
        self.answer("Escape")
        output, errors = asking.communicate(timeout=20)
        self.assertEqual((asking.returncode, output), (1, ""))
        self.assertIn("not replaced", errors)
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_second_document_is_refused_while_the_question_is_open(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        path = self.write_document(reminder("Milk"))
        asking = self.ask_to_open(path)
        self.wait_for(self.question, "the question")
        self.assertIn("another document", self.run_command("open", path, status=1))
        self.answer("Escape")
        asking.communicate(timeout=20)
        self.assertIsNone(self.question())  # the second one was not kept for later

    def test_what_cannot_be_opened_is_not_asked_about(self):
        path = self.write("damaged.tockwise", b"Dear diary")
        self.assertIn(path, self.run_command("open", path, status=1))
        self.assertIsNone(self.question())

    def test_a_change_is_announced_and_on_the_disk_at_once(self):
        signals = self.record()
        self.run_command("merge", self.write_document(reminder("Tea")))
        self.wait_for_signal(signals, "QueueChanged")
        self.session.application.kill()
        self.session.wait_for_end()
        self.wait_for(lambda: not self.session.is_running(), "the end on the bus")
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_reminder_of_a_document_that_fell_due_fires(self):
        signals = self.record()
        path = self.write_document(reminder("Tea", reminderUUID="A"))
        data = reminder("Milk", reminderUUID="B")
        data["reminderQueue"] = type(data["reminderQueue"])(0.0)
        self.run_command("open", path, "--yes")
        self.run_command("merge", self.write_document(data))
        self.assertEqual(self.wait_for_signal(signals, "AlertOpened")[1], ("B",))

    def test_the_methods_on_the_bus(self):
        def call(method, signature, *arguments):
            return self.session.bus.call(NAME, PATH, INTERFACE, method,
                                         GLib.Variant(signature, arguments))
        given = self.write_document(
            reminder("Tea", reminderTasks={"type": 4, "path": "/bin/true"}), reminder("Milk"))
        expected = {"merged": 2, "existed": 0, "taskCount": 1,
                    "tasks": ['"Tea" runs the script /bin/true']}
        self.assertEqual(call("Merge", "(sa{sv})", given, {}), (expected,))
        self.assertEqual(call("Open", "(sba{sv})", given, True, {}), (expected,))
        no_tasks = {"tasks": GLib.Variant("b", False)}
        self.assertEqual(call("Open", "(sba{sv})", given, True, no_tasks),
                         (expected | {"taskCount": 0, "tasks": []},))
        path = self.session.home / "b.tockwise"
        self.assertEqual(call("Save", "(s)", str(path)), ())
        self.assertEqual(len(rows(path.read_bytes())), 2)
        for method, signature, arguments in (
                ("Save", "(s)", ("b.tockwise",)), ("Merge", "(sa{sv})", ("b.tockwise", {})),
                ("Open", "(sba{sv})", (given, False, no_tasks)),
                ("Open", "(sba{sv})", (given, True, {"other": GLib.Variant("b", True)}))):
            with self.assertRaisesRegex(GLib.Error, "Error.Usage"):
                call(method, signature, *arguments)


if __name__ == "__main__":
    main()
