#!/usr/bin/python3
"""A reminder written as a user writes it: from the tray's menu, with the keyboard and the mouse,
with a picture from the clipboard; then in the menu and in its alert."""

import plistlib

from clipboard_owner import ClipboardOwner
from editors import Editors
from harness import SystemTest, main
from panel_menu import PanelMenu
from pictures import png
from screen import Screen

PINK = (214, 51, 132)  # nothing else on the screen has this colour
WIDE = 570  # pixels: twice of what a stored picture may have
NARROW = 285



class Writing(Editors, SystemTest):
    SESSION = {"tray": "xembed"}

    def setUp(self):
        super().setUp()
        self.session.start_application()
        self.icon = self.wait_for(self.find_icon, "the tray icon")

    def find_icon(self):
        return next((window for window in self.session.desktop.windows()
                     if window.width <= 32 and window.height <= 32), None)

    def open_menu(self):
        self.session.desktop.click(self.icon.x + self.icon.width // 2,
                                   self.icon.y + self.icon.height // 2, button=3)
        return self.wait_for(self.pop_up, "the menu")

    def close_menu(self):
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.pop_up(), "the menu's end")

    def open_editor(self):
        self.open_menu()
        for _ in ("Quit Tockwise", "Save Reminders...", "Open Reminders...", "New Reminder..."):
            self.session.desktop.press("Down")
        self.session.desktop.press("Return")
        return self.wait_for_editor("New Reminder")

    def coloured(self, find_window):
        """Where the picture is in the window, once it is there."""
        def look():
            window = find_window()
            return window and Screen(self.session).area_of(PINK, window)
        return self.wait_for(look, "the picture", 20)

    def test_a_rich_reminder_with_a_pasted_picture_fires(self):
        desktop = self.session.desktop
        clipboard = ClipboardOwner(self.session.environment["DISPLAY"],
                                   {"image/png": png(WIDE, 100, PINK)})
        self.addCleanup(clipboard.stop)
        signals = self.record()
        self.open_editor()
        desktop.type("tea for two ")
        desktop.press("b", "Control_L")
        desktop.type("now ")
        desktop.press("v", "Control_L")
        shown = self.coloured(self.editor)
        self.assertGreater(shown.share, 0.99)
        self.assertAlmostEqual(shown.width / shown.height, WIDE / 100, delta=0.3)
        self.assertLessEqual(shown.width, 300)
        self.choose_quick_time()
        self.save()
        self.check_stored()
        self.open_menu()
        self.assertGreater(self.coloured(self.pop_up).share, 0.99)
        self.close_menu()
        self.wait_for_signal(signals, "AlertOpened", 70)
        in_alert = self.coloured(lambda: self.alert("tea for two"))
        self.assertEqual((in_alert.width, in_alert.height), (shown.width, shown.height))
        self.assertGreater(in_alert.share, 0.99)

    def check_stored(self):
        """What was written, as the command line gives it and as another program reads it."""
        (reminder,) = self.wait_for(self.reminders, "the reminder")
        self.assertEqual(reminder["reminderDescriptions"], "tea for two now \ufffc")
        runs = self.session.json("show", "1")["richText"]
        self.assertEqual("".join(run["text"] for run in runs), "tea for two now \ufffc")
        bold = next(run for run in runs if run["text"].strip() == "now")
        self.assertIn("Bold", bold["attributes"]["font"])
        picture = runs[-1]["attributes"]["attachment"]
        self.assertEqual(picture["name"], "image.jpg")
        self.assertLessEqual(picture["width"], 300)
        with open(self.session.store, "rb") as file:
            archive = plistlib.loads(plistlib.load(file)["reminderRTFs"][0])
        self.assertEqual(archive["$archiver"], "NSKeyedArchiver")
        root = archive["$objects"][archive["$top"]["root"].data]
        classes = archive["$objects"][root["$class"].data]["$classes"]
        self.assertIn("NSTextStorage", classes)


class WritingFromPanel(Editors, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()
        self.menu = PanelMenu(self.session)

    def open_editor(self):
        self.menu.choose("New Reminder...")
        return self.wait_for_editor("New Reminder")

    def test_a_reminder_is_changed_where_it_stands(self):
        uuid = self.add("water the plants", "--in", "2 Hours")
        before = self.reminders()[0]
        self.menu.choose("water the plants", "Show")
        self.wait_for_editor("Edit Reminder")
        self.session.desktop.press("End", "Control_L")
        self.session.desktop.type(" today")
        self.save()
        (after,) = self.wait_for(lambda: self.texts() == ["water the plants today"]
                                 and self.reminders(), "the change")
        self.assertEqual(after["reminderUUID"], uuid)
        self.assertEqual(after["reminderQueue"], before["reminderQueue"])
        self.assertEqual(after["reminderDateTimeCreated"], before["reminderDateTimeCreated"])

    def test_a_recent_text_is_used_again(self):
        self.add("feed the cat", "--in", "2 Hours")
        self.menu.choose("Recent Reminders", "feed the cat")
        self.wait_for_editor("New Reminder")
        self.choose_quick_time()
        self.save()
        self.wait_for(lambda: self.texts() == ["feed the cat"] * 2, "the second reminder")
        self.assertEqual(self.menu.labels(self.menu.identifier("Recent Reminders")).count(
            "feed the cat"), 1)

    def test_a_reminder_deleted_while_it_is_edited_can_be_kept(self):
        uuid = self.add("buy bread", "--in", "2 Hours")
        self.menu.choose("buy bread", "Show")
        self.wait_for_editor("Edit Reminder")
        self.session.desktop.press("End", "Control_L")
        self.session.desktop.type(" and milk")
        self.run_command("delete", uuid)
        self.session.desktop.press("Return", "Control_L")
        self.answer_question()
        (kept,) = self.wait_for(self.reminders, "the reminder that was kept")
        self.assertEqual(kept["reminderDescriptions"], "buy bread and milk")
        self.assertNotEqual(kept["reminderUUID"], uuid)

    def answer_question(self):
        """Presses the default button of the question that is open."""
        question = self.wait_for_question()
        self.wait_for(lambda: self.session.desktop.active_window() == question.identifier,
                      "the question's keyboard")
        self.session.desktop.press("Return")

    def wait_for_question(self):
        return self.wait_for(lambda: next(
            (window for window in self.session.desktop.windows()
             if not window.plain and window.width > 100 and not self.is_editor(window)), None),
            "the question")

    @staticmethod
    def is_editor(window):
        return "New Reminder" in window.title or "Edit Reminder" in window.title

    def test_an_alert_can_be_dismissed_while_an_editor_is_open(self):
        editor = self.open_editor()
        self.session.desktop.type("half a thought")
        signals = self.record()
        uuid = self.add("soup", "--at", "2001-01-01 00:00")
        self.assertEqual(self.wait_for_signal(signals, "AlertOpened")[1], (uuid,))
        alert = self.wait_for(lambda: self.alert("soup"), "the alert")
        stacking = [window.identifier for window in self.session.desktop.windows()]
        self.assertGreater(stacking.index(alert.identifier), stacking.index(editor.identifier))
        self.assertEqual(self.session.desktop.active_window(), editor.identifier)
        self.run_command("alerts", "ok", "1")
        self.wait_for_signal(signals, "AlertClosed")
        self.assertTrue(self.editor())

    def test_what_was_being_written_when_the_session_ended_is_offered_again(self):
        self.open_editor()
        self.session.desktop.type("the last words")
        self.wait_for(lambda: "the last words" in self.drafts(), "a draft")
        self.session.desktop.type(" of all")
        self.session.desktop.press("Escape")
        self.wait_for_question()  # the end comes while one is open, too
        self.session.application.terminate()
        self.assertEqual(self.session.wait_for_end(), 0)
        self.assertEqual(self.drafts(), ["the last words of all"])

    def drafts(self):
        """The texts of the drafts on the disk."""
        folder = self.session.home / ".local/state/tockwise/drafts"
        return [plistlib.loads(path.read_bytes())["reminderText"]
                for path in (folder.glob("*.plist") if folder.is_dir() else ())]

    def test_what_was_being_written_when_the_program_was_killed_is_offered_again(self):
        self.open_editor()
        self.session.desktop.type("half a thought")
        drafts = self.session.home / ".local/state/tockwise/drafts"
        self.wait_for(lambda: drafts.is_dir() and any(drafts.glob("*.plist")), "the draft")
        self.session.kill_application()
        self.session.start_application()
        self.answer_question()
        self.wait_for_editor("New Reminder")
        self.choose_quick_time()
        self.save()
        self.wait_for(self.reminders, "the reminder")
        self.assertEqual(self.texts(), ["half a thought"])
        self.assertFalse(any(drafts.iterdir()))


if __name__ == "__main__":
    main()
