#!/usr/bin/python3
"""The road of one reminder: added, counted down in the tray's menu, fired at its second with a
sound, put off, dismissed, and still there after the next start."""

import re
from datetime import datetime

from editors import Editors
from harness import SystemTest, main, next_minute
from panel_menu import WATCHER, PanelMenu, registered_items
from session import TRAY_SELECTION

COUNTDOWN = re.compile(r"(?:(\d+) minutes, )?(\d+) seconds")
AUDIBLE = 1000  # of 32768


class Road(Editors):
    """The flow; each class below says how its tray shows the menu."""

    def start(self):
        self.session.start_application()

    def countdown(self):
        """The seconds left, as the menu shows them now."""
        for item in self.session.json("menu"):
            match = COUNTDOWN.fullmatch(item["title"])
            if match:
                return int(match[1] or 0) * 60 + int(match[2])
        return None

    def alert_window(self, text):
        return next((window for window in self.session.desktop.windows()
                     if text in window.title and window.role == "alert"), None)

    def test_a_reminder_from_adding_to_the_next_start(self):
        self.start()
        signals = self.record()
        due = next_minute()
        uuid = self.add("Tea", "--at", due.strftime("%Y-%m-%d %H:%M"))
        self.wait_for_signal(signals, "QueueChanged")
        self.check_countdown()
        self.session.record_sound()
        self.check_firing(signals, uuid, due)
        self.put_it_off(uuid)
        self.dismiss(uuid)
        before = self.reminders()
        settings = self.run_command("prefs", "list")
        self.assertEqual(self.session.quit_application(), 0)
        self.start()
        self.assertEqual(self.reminders(), before)
        self.assertEqual(self.run_command("prefs", "list"), settings)
        self.assertEqual(self.session.json("alerts"), [])

    def check_countdown(self):
        first = self.wait_for(self.countdown, "a countdown in the menu")
        self.assertLessEqual(first, 66)
        self.wait_for(lambda: (self.countdown() or first) <= first - 2, "a smaller countdown", 5)

    def check_firing(self, signals, uuid, due):
        left = (due - datetime.now()).total_seconds()
        fired, arguments = self.wait_for_signal(signals, "ReminderFired", left + 5)
        self.assertEqual(arguments, (uuid,))
        self.assertEqual(datetime.fromtimestamp(fired).replace(microsecond=0), due)
        self.assertEqual(self.wait_for_signal(signals, "AlertOpened")[1], (uuid,))
        self.wait_for(lambda: self.alert_window("Tea"), "the alert window")
        self.wait_for(lambda: self.session.loudest_sample() > AUDIBLE, "the sound")
        self.assertEqual([name for _, name, _ in signals].count("ReminderFired"), 1)

    def put_it_off(self, uuid):
        """Asks to be reminded again: an editor with the text, whose third quick time is ten
        minutes, and no alert."""
        asked = datetime.now().timestamp()
        self.run_command("alerts", "again", "1")
        self.wait_for_editor("New Reminder")
        self.assertEqual(self.session.json("alerts"), [])
        self.choose_quick_time(3)
        self.save()
        self.wait_for(lambda: len(self.reminders()) == 2, "the reminder put off")
        self.wait_for(lambda: not self.alert_window("Tea"), "the window's end")
        (again,) = [each for each in self.reminders() if each["reminderUUID"] != uuid]
        self.assertEqual(again["reminderDescriptions"], "Tea")
        due = datetime.fromisoformat(again["reminderQueue"].replace("Z", "+00:00")).timestamp()
        self.assertGreater(due - asked, 9 * 60 - 1)
        self.assertLess(due - asked, 10 * 60 + 15)

    def dismiss(self, uuid):
        """A fired reminder that is edited fires again; its alert is dismissed by its button."""
        signals = self.record()
        self.run_command("edit", uuid, "--at", "2001-01-01 00:00", "--text", "Coffee")
        window = self.wait_for(lambda: self.alert_window("Coffee"), "the second alert window")
        self.session.desktop.activate(window)
        self.wait_for(lambda: self.session.desktop.active_window() == window.identifier,
                      "the alert's focus")
        self.run_command("alerts", "ok", "1")
        self.assertEqual(self.wait_for_signal(signals, "AlertClosed")[1], (uuid,))
        self.wait_for(lambda: not self.alert_window("Coffee"), "the window's end")
        (kept,) = [each for each in self.reminders() if each["reminderUUID"] == uuid]
        self.assertEqual(kept["reminderRecent"], 1)
        self.assertIsNotNone(kept["reminderDateTimeFired"])


class StatusNotifierTray(Road, SystemTest):
    SESSION = {"tray": "status-notifier", "sound": True}

    def start(self):
        super().start()
        self.menu = PanelMenu(self.session)
        self.assertEqual(len(self.items()), 1)

    def items(self):
        return registered_items(self.session)

    def countdown(self):
        matches = filter(None, map(COUNTDOWN.fullmatch, self.menu.labels()))
        return next((int(each[1] or 0) * 60 + int(each[2]) for each in matches), None)

    def test_a_tray_that_comes_later_is_found(self):
        late = self.session.start_tray  # the tray of this class ends first
        self.session.end("status_notifier_host")
        self.wait_for(lambda: not self.session.bus.owner(WATCHER), "the tray's end")
        self.session.start_application()
        late("status-notifier")
        self.wait_for(self.items, "the tray item")

    def test_a_tray_that_is_started_again_gets_the_item_again(self):
        self.start()
        self.session.end("status_notifier_host")
        self.wait_for(lambda: not self.session.bus.owner(WATCHER), "the tray's end")
        self.session.start_tray("status-notifier")
        self.wait_for(self.items, "the tray item")


class XEmbedTray(Road, SystemTest):
    SESSION = {"tray": "xembed", "sound": True}

    def start(self):
        super().start()
        self.wait_for(self.icon, "the tray icon")

    def icon(self):
        """The icon's window in the tray."""
        return next((window for window in self.session.desktop.windows()
                     if window.width <= 32 and window.height <= 32), None)

    def menu_window(self):
        return next((window for window in self.session.desktop.windows()
                     if window.plain and window.width > 100 and window.height > 100), None)

    def test_a_click_on_the_icon_opens_the_menu_and_escape_closes_it(self):
        self.start()
        self.add("Tea", "--in", "1 Hour")
        icon = self.icon()
        self.session.desktop.click(icon.x + icon.width // 2, icon.y + icon.height // 2, button=3)
        menu = self.wait_for(self.menu_window, "the menu")
        self.assertLessEqual(menu.height, 800)
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.menu_window(), "the menu's end")

    def test_a_tray_that_comes_later_is_found(self):
        self.session.end("tint2")
        self.wait_for(lambda: not self.session.desktop.selection_owner(TRAY_SELECTION),
                      "the tray's end")
        self.session.start_application()
        self.session.start_tray("xembed")
        self.wait_for(self.icon, "the tray icon")


class NoTray(Road, SystemTest):
    SESSION = {"sound": True}

    def menu_window(self):
        return next((window for window in self.session.desktop.windows()
                     if window.role != "alert" and window.height > 200), None)

    def test_starting_it_again_opens_a_window_with_the_menu(self):
        self.start()
        done = self.session.tockwise()
        self.assertEqual(done.returncode, 0, done.stderr)
        self.wait_for(self.menu_window, "the window with the menu")


if __name__ == "__main__":
    main()
