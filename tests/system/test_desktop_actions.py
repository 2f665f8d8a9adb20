#!/usr/bin/python3
"""What a desktop asks for: key bindings, launchers' actions, on a running application and on none."""

import subprocess

from editors import Editors
from gi.repository import GLib
from harness import SystemTest, main
from session import NAME, PATH, PROGRAM
from stores import write_store

APPLICATION = "org.freedesktop.Application"


class DesktopActions(Editors, SystemTest):
    SESSION = {}

    def setUp(self):
        super().setUp()
        write_store(self.session, [], showUndoChangesAlert=False)
        self.addCleanup(self.end_started_application)

    def end_started_application(self):
        """One that a command started is no child of the session's."""
        if self.session.is_running():
            self.session.tockwise("quit", "--yes")
            self.wait_for(lambda: not self.session.is_running(), "its end")

    def activate(self, action, **platform_data):
        data = {key.replace("_", "-"): GLib.Variant("s", value)
                for key, value in platform_data.items()}
        self.session.bus.call(NAME, PATH, APPLICATION, "ActivateAction",
                              GLib.Variant("(sava{sv})", (action, [], data)))

    def count_editors(self):
        return len({window.identifier for window in self.session.desktop.windows()
                    if "New Reminder" in window.title})

    def test_new_opens_the_editor_of_the_running_application(self):
        self.session.start_application()
        process = self.session.bus.process_of(NAME)
        self.assertEqual(self.run_command("new"), "")
        self.wait_for_editor("New Reminder")
        self.assertEqual(self.session.bus.process_of(NAME), process)

    def test_new_starts_the_application(self):
        self.assertEqual(self.run_command("new"), "")
        self.wait_for_editor("New Reminder")
        self.session.desktop.type("tea")
        self.choose_quick_time()
        self.save()
        self.wait_for(lambda: self.texts() == ["tea"], "the reminder")

    def test_two_at_once_open_two_editors_of_one_application(self):
        commands = [subprocess.Popen([PROGRAM, "new"], env=self.session.environment)
                    for _ in range(2)]
        for command in commands:
            self.assertEqual(command.wait(30), 0)
        self.wait_for(lambda: self.count_editors() == 2, "two editors")

    def test_a_command_of_the_desktops_finds_the_alerts(self):
        self.session.start_application()
        signals = self.record()
        self.add("soup", "--at", "2001-01-01 00:00")
        self.wait_for_signal(signals, "AlertOpened")
        for action, shown in (("hide-alerts", False), ("show-alerts", True)):
            self.activate(action)
            self.wait_for(lambda shown=shown: self.session.json("alerts")[0]["shown"] == shown,
                          action)

    def test_actions_open_windows(self):
        self.session.start_application()
        self.activate("new-reminder", desktop_startup_id="x_TIME12", activation_token="token")
        self.wait_for_editor("New Reminder")

    def test_the_preferences_open_by_command_and_by_action(self):
        for ask in (lambda: self.run_command("prefs", "open"),
                    lambda: self.activate("preferences")):
            ask()
            window = self.wait_for(lambda: self.session.desktop.window_titled("Preferences"),
                                   "the preferences")
            self.wait_for(lambda: self.session.desktop.active_window() == window.identifier,
                          "their keyboard")
            self.session.desktop.press("Escape")
            self.wait_for(lambda: not self.session.desktop.window_titled("Preferences"),
                          "their end")

    def test_an_unknown_action_shows_the_menu(self):
        self.session.start_application()
        self.activate("no-such-action")
        self.wait_for(lambda: self.session.desktop.windows(), "the menu")

    def test_quit_asks_and_does_not_keep_the_desktop_waiting(self):
        self.session.start_application()
        signals = self.record()
        self.add("soup", "--at", "2001-01-01 00:00")
        self.wait_for_signal(signals, "AlertOpened")
        before = {window.identifier for window in self.session.desktop.windows()}
        self.activate("quit")
        self.wait_for(lambda: {window.identifier for window in self.session.desktop.windows()}
                      - before, "the question")
        self.assertTrue(self.session.is_running())

    def test_quit_without_alerts_quits(self):
        self.session.start_application()
        self.activate("quit")
        self.assertEqual(self.session.wait_for_end(), 0)

    def test_new_takes_no_words(self):
        self.run_command("new", "tea", status=2)


class WithoutDisplay(SystemTest):
    SESSION = {"display": False}

    def test_new_says_what_is_missing(self):
        self.assertIn("display", self.run_command("new", status=1))


class WithoutBus(SystemTest):
    SESSION = {"bus": False}

    def test_new_says_what_is_missing(self):
        self.assertIn("session bus", self.run_command("new", status=1))


if __name__ == "__main__":
    main()
