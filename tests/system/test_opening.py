#!/usr/bin/python3
"""Reminders documents with the running program: saved and opened from the menu, opened by name, by
the desktop and by a drop, with alerts beside it all."""

from drag_source import DragSource
from gi.repository import GLib
from harness import SystemTest, main
from panel_menu import PanelMenu
from session import NAME, PATH, PROGRAM

SAVE = "Save Reminders"
CHOOSE = "Choose a file"
REVIEW = "Review Tasks"


class Documents:
    """What a user does with documents; beside SystemTest."""

    def window(self, title):
        return self.session.desktop.window_titled(title)

    def wait_for_window(self, title):
        """The window of that title, with the keyboard."""
        window = self.wait_for(lambda: self.window(title), title)
        self.session.desktop.activate(window)
        self.wait_for(lambda: self.session.desktop.active_window() == window.identifier,
                      f"the keyboard of {title}")
        return window

    def question(self):
        return next((window for window in self.session.desktop.windows()
                     if window.title == "Tockwise" and not window.plain
                     and 100 < window.height < 300), None)

    def answer(self, key):
        """Presses the key in the question that is open, and waits for its end."""
        question = self.wait_for(self.question, "the question")
        self.session.desktop.activate(question)
        self.wait_for(lambda: self.session.desktop.active_window() == question.identifier,
                      "the question's keyboard")
        self.session.desktop.press(key)

        def is_gone():
            now = self.question()
            return now is None or now.identifier != question.identifier
        self.wait_for(is_gone, "the question's end")

    def name_in_panel(self, title, name):
        """Types the name into the panel of that title and confirms."""
        self.wait_for_window(title)
        self.session.desktop.press("a", "Control_L")
        for position, part in enumerate(name.split(".")):
            if position:
                self.session.desktop.press("period")
            self.session.desktop.type(part)
        self.session.desktop.press("Return")
        self.wait_for(lambda: not self.window(title), "the panel's end")

    def write_document(self, name, *texts):
        """A document with these reminders, made by the program; the queue is empty afterwards."""
        for text in texts:
            self.add(text, "--in", "2 Hours")
        return self.save_as(name)

    def save_as(self, name):
        self.menu.choose("Save Reminders...")
        self.name_in_panel(SAVE, name)
        path = self.session.home / f"{name}.tockwise"
        self.wait_for(path.exists, "the document")
        self.wait_for(lambda: f"Saved '{path}'" in self.session.log(), "the line in the log")
        self.run_command("clear", "--yes")
        return path

    def ask_to_open(self, *uris):
        """As a file manager does; it is answered at once."""
        self.session.bus.call(NAME, PATH, "org.freedesktop.Application", "Open",
                              GLib.Variant("(asa{sv})", (list(uris), {})))

    def alert(self, text):
        return next((window for window in self.session.desktop.windows()
                     if text in window.title and window.role == "alert"), None)


class FromMenu(Documents, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()
        self.menu = PanelMenu(self.session)

    def test_what_was_saved_is_opened_again(self):
        self.add("Tea", "--in", "2 Hours", "--every", "day", "--before", "0,1,0")
        self.add("Coffee", "--in", "3 Hours")
        before = self.reminders()
        self.save_as("mine")
        self.add("Something else", "--in", "1 Hour")
        self.menu.choose("Open Reminders...")
        self.name_in_panel(CHOOSE, "mine.tockwise")
        self.answer("Return")
        self.wait_for(lambda: len(self.texts()) == 2, "the reminders of the document")
        self.assertEqual(self.reminders(), before)

    def test_a_document_is_replaced_only_after_a_question(self):
        path = self.write_document("mine", "Tea")
        before = path.read_bytes()
        self.add("Coffee", "--in", "1 Hour")
        self.menu.choose("Save Reminders...")
        self.wait_for_window(SAVE)
        self.session.desktop.press("a", "Control_L")
        self.session.desktop.type("mine")
        self.session.desktop.press("Return")
        box = self.wait_for(lambda: next(
            (window for window in self.session.desktop.windows()
             if SAVE in window.title and window.height < 250), None), "the panel's question")
        self.wait_for(lambda: self.session.desktop.active_window() == box.identifier,
                      "its keyboard")
        self.session.desktop.press("Escape")
        self.wait_for_window(SAVE)
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.window(SAVE), "the panel's end")
        self.assertEqual(path.read_bytes(), before)

    def test_an_alert_is_used_while_the_open_panel_is_open(self):
        self.menu.choose("Open Reminders...")
        self.wait_for_window(CHOOSE)
        signals = self.record()
        self.add("soup", "--at", "2001-01-01 00:00")
        self.wait_for_signal(signals, "AlertOpened")
        alert = self.wait_for(lambda: self.alert("soup"), "the alert")
        self.session.desktop.activate(alert)
        self.wait_for(lambda: self.session.desktop.active_window() == alert.identifier,
                      "the alert's keyboard")
        self.dismiss(alert)
        self.wait_for_signal(signals, "AlertClosed")
        self.assertTrue(self.window(CHOOSE))
        self.menu.choose("Open Reminders...")  # brings the panel back, and makes no second one
        self.wait_for_window(CHOOSE)
        self.assertEqual(sum(CHOOSE in window.title for window in self.session.desktop.windows()),
                         1)

    def dismiss(self, alert):
        """With the keyboard, which rests for a moment after the alert was given it."""
        self.session.desktop.click(alert.x + alert.width // 2, alert.y + 20)

        def closed():
            self.session.desktop.press("Return")
            return not self.alert("soup")
        self.wait_for(closed, "the alert's end")

    def test_what_a_document_would_run_is_reviewed(self):
        self.add("Back up", "--in", "2 Hours", "--task", "script:/home/me/back-up.sh")
        self.add("Meeting", "--in", "3 Hours", "--task", "web:example.org")
        path = self.save_as("mine")
        self.ask_to_open(path.as_uri())
        self.answer("Return")
        self.wait_for_window(REVIEW)
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.window(REVIEW), "the window's end")
        self.assertEqual(self.texts(), [])
        self.ask_to_open(path.as_uri())
        self.answer("Return")
        self.wait_for_window(REVIEW)
        self.session.desktop.press("o", "Alt_L")
        self.wait_for(lambda: len(self.texts()) == 2, "the reminders")
        tasks = {each["reminderDescriptions"]: each["reminderTasks"] for each in self.reminders()}
        self.assertEqual(tasks["Back up"], {"nil": "nil"})
        self.assertEqual(tasks["Meeting"]["path"], "example.org")


class FromDesktop(Documents, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()
        self.menu = PanelMenu(self.session)
        self.document = self.write_document("mine", "Tea")

    def test_the_desktop_is_answered_whatever_the_user_says(self):
        self.add("Coffee", "--in", "1 Hour")
        self.ask_to_open(self.document.as_uri())
        self.answer("Escape")
        self.assertEqual(self.texts(), ["Coffee"])
        self.ask_to_open("https://example.org/mine.tockwise", "file://elsewhere/mine.tockwise")
        self.wait_for(lambda: self.session.log().count("no file on this machine") == 2, "the log")
        self.assertFalse(self.question())

    def test_several_files_are_asked_about_one_after_another(self):
        other = self.write_document("other", "Coffee")
        self.ask_to_open(self.document.as_uri(), other.as_uri())
        self.answer("Return")
        self.wait_for(lambda: self.texts() == ["Tea"], "the first document")
        self.answer("Return")
        self.wait_for(lambda: self.texts() == ["Coffee"], "the second document")

    def test_a_file_that_is_no_archive_changes_nothing(self):
        diary = self.session.home / "diary.tockwise"
        diary.write_text("Dear diary,\n", encoding="utf-8")
        self.add("Coffee", "--in", "1 Hour")
        self.ask_to_open(diary.as_uri())
        self.answer("Return")
        self.wait_for(lambda: f"Cannot open {diary}" in self.session.log(), "the log")
        self.assertEqual(self.texts(), ["Coffee"])
        self.assertFalse(self.question())

    def test_alerts_make_room_for_the_question(self):
        signals = self.record()
        self.add("soup", "--at", "2001-01-01 00:00")
        self.wait_for_signal(signals, "AlertOpened")
        self.wait_for(lambda: self.alert("soup"), "the alert")
        self.ask_to_open(self.document.as_uri())
        self.wait_for(self.question, "the question")
        self.assertFalse(self.alert("soup"))
        self.answer("Escape")
        self.wait_for(lambda: self.alert("soup"), "the alert again")

    def test_a_file_named_on_the_command_line_is_opened_by_the_running_application(self):
        self.run_command("mine.tockwise", cwd=self.session.home)
        self.answer("Return")
        self.wait_for(lambda: self.texts() == ["Tea"], "the reminders")

    def test_a_file_named_on_the_command_line_starts_the_application(self):
        self.session.quit_application()
        self.session.application = self.session.spawn(PROGRAM, self.document.as_uri(),
                                                      log="tockwise")
        self.answer("Return")
        self.wait_for(lambda: self.texts() == ["Tea"], "the reminders")

    def test_a_file_that_is_not_there_is_one_line(self):
        for word in ("nothing.tockwise", "file:///nothing"):
            self.assertIn("there is no file", self.run_command(word, status=1))
        self.run_command("mine.tockwise", "nothing.tockwise", status=1, cwd=self.session.home)
        self.assertIn("no command", self.run_command("nothing", status=2))
        self.assertFalse(self.question())

    def test_the_bus_starts_the_application_to_open_a_file(self):
        self.session.quit_application()
        self.session.let_the_bus_start_it()
        self.addCleanup(lambda: self.session.tockwise("quit", "--yes"))
        self.session.bus.call(NAME, PATH, "org.freedesktop.Application", "Open",
                              GLib.Variant("(asa{sv})", ([self.document.as_uri()], {})),
                              seconds=20, start=True)
        self.answer("Return")
        self.wait_for(lambda: self.texts() == ["Tea"], "the reminders")


class Dropped(Documents, SystemTest):
    SESSION = {}

    def setUp(self):
        super().setUp()
        self.session.start_application()

    def menu_window(self):
        return next((window for window in self.session.desktop.windows()
                     if window.role != "alert" and window.height > 400), None)

    def drag(self, *paths):
        source = DragSource(self.session.environment["DISPLAY"], paths)
        self.addCleanup(source.stop)
        return source

    def test_a_document_is_dropped_on_the_menu(self):
        self.session.tockwise()
        window = self.wait_for(self.menu_window, "the menu's window")
        diary = self.session.home / "my diary.tockwise"
        diary.write_text("Dear diary,\n", encoding="utf-8")
        source = self.drag(diary)
        self.assertTrue(source.drag_over(window))
        self.assertTrue(source.drop_on(window))
        self.answer("Return")
        self.wait_for(lambda: f"Cannot open {diary}" in self.session.log(), "the log")

    def test_another_file_is_not_taken(self):
        self.session.tockwise()
        window = self.wait_for(self.menu_window, "the menu's window")
        self.assertFalse(self.drag(self.session.home / "notes.txt").drag_over(window))


if __name__ == "__main__":
    main()
