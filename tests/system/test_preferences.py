#!/usr/bin/python3
"""The preferences window of the running program: opened from the menu, used with keyboard and
mouse, beside the command line."""

import time

from editors import Editors
from harness import SystemTest, main
from panel_menu import PanelMenu
from stores import reminder, write_store

BUTTONS = 24  # pixels from the lower edge of the window to the middle of its buttons
OK = 60  # pixels from the right edge to the middle of "OK"
PANES = ["General", "Alerts", "Menu", "Editor", "Quick Times", "Messages", "Mail Server",
         "Calendar", "Cloud", "This Desktop"]


class Preferences(Editors, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def start(self, reminders=()):
        write_store(self.session, list(reminders))
        self.session.start_application()
        self.menu = PanelMenu(self.session)

    def window(self):
        return self.session.desktop.window_titled("Preferences")

    def open(self):
        self.menu.choose("Preferences...")
        return self.wait_for_keyboard()

    def wait_for_keyboard(self):
        window = self.wait_for(self.window, "the preferences window")
        self.wait_for(lambda: self.session.desktop.active_window() == window.identifier,
                      "its keyboard")
        return window

    def show_pane(self, name):
        """From the first pane."""
        for _ in range(PANES.index(name)):
            self.session.desktop.press("Next", "Control_L")

    def press_box(self, mnemonic):
        """Changes a box; it is shown pressed for a moment first, and the title gets its star."""
        self.session.desktop.press(mnemonic, "Alt_L")
        self.wait_for(lambda: "*" in self.window().title, "the change")

    def click_ok(self):
        window = self.window()
        self.session.desktop.click(window.x + window.width - OK,
                                   window.y + window.height - BUTTONS)

    def setting(self, key):
        return self.run_command("prefs", "get", key).strip()

    def wait_for_setting(self, key, value):
        self.wait_for(lambda: self.setting(key) == value, f"{key} = {value}")

    def question(self):
        return next((window for window in self.session.desktop.windows()
                     if window.title == "Tockwise" and not window.plain), None)

    def test_what_is_chosen_is_stored(self):
        self.start()
        desktop = self.session.desktop
        self.open()
        self.show_pane("Menu")
        self.press_box("l")  # "the time that is left"
        self.assertEqual(self.setting("useCountdown"), "YES")
        desktop.press("a", "Alt_L")  # "Apply"
        self.wait_for_setting("useCountdown", "NO")
        self.assertTrue(self.window())
        for _ in range(PANES.index("Mail Server") - PANES.index("Menu")):
            desktop.press("Next", "Control_L")
        desktop.press("s", "Alt_L")
        desktop.type("mailhost")
        desktop.press("o", "Alt_L")
        desktop.type("2525")
        self.click_ok()
        self.wait_for(lambda: not self.window(), "the window's end")
        self.assertEqual(self.setting("smtpServerNameAD"), "mailhost")
        self.assertEqual(self.setting("serverPortAD"), "2525")
        self.assertEqual(self.setting("useADPrefsNoAuth"), "NO")  # there is no address

    def test_closing_saves(self):
        self.start()
        self.open()
        self.press_box("o")  # the hot keys
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.window(), "the window's end")
        self.assertEqual(self.setting("useGlobalHotKeys"), "YES")

    def test_what_a_command_sets_shows_up(self):
        self.start()
        desktop = self.session.desktop
        self.open()
        self.show_pane("Messages")
        desktop.press("p", "Alt_L")  # the phone number
        desktop.type("555")
        self.run_command("prefs", "set", "email", "other@example.org")
        self.run_command("prefs", "set", "sms", "999")
        desktop.type("0100")
        self.click_ok()
        self.wait_for(lambda: not self.window(), "the window's end")
        self.assertEqual(self.setting("sms"), "5550100")  # what was being typed
        self.assertEqual(self.setting("email"), "other@example.org")

    def test_the_queue_needs_one_of_its_two_lines(self):
        self.start()
        desktop = self.session.desktop
        self.open()
        self.show_pane("Menu")
        self.press_box("d")  # the date
        desktop.press("Tab")
        desktop.press("space")  # the time that is left
        desktop.press("Return")
        question = self.wait_for(self.question, "the question")
        self.wait_for(lambda: desktop.active_window() == question.identifier, "its keyboard")
        self.assertGreater(self.height_of(question), self.height_of(self.window()))
        desktop.press("Return")
        self.wait_for(lambda: not self.question(), "the question's end")
        self.wait_for_keyboard()
        self.assertEqual(self.setting("useAbsolute"), "YES")
        desktop.press("space")
        desktop.press("Return")
        self.wait_for(lambda: not self.window(), "the window's end")
        self.assertEqual((self.setting("useAbsolute"), self.setting("useCountdown")),
                         ("NO", "YES"))

    def test_alerts_stay_in_front(self):
        self.start([reminder("stretch", time.time() // 60 * 60)])
        alert = self.wait_for(lambda: self.alert("stretch"), "the alert")
        window = self.open()
        self.assertLess(self.height_of(window), self.height_of(alert))
        self.menu.choose("Preferences...")  # brings the same window to the front again
        self.assertEqual(self.wait_for_keyboard().identifier, window.identifier)
        self.assertLess(self.height_of(window), self.height_of(alert))

    def height_of(self, window):
        """Its place in the pile of windows, 0 the lowest."""
        return [each.identifier for each in self.session.desktop.windows()].index(
            window.identifier)


if __name__ == "__main__":
    main()
