#!/usr/bin/python3
"""The start: commands from the first moment, windows with their icon, and nothing loaded that a
start does not need."""

import time

from editors import Editors
from harness import SystemTest, main
from session import PROGRAM
from stores import reminder, write_store

PAST = "2001-01-01 00:00"
STARTS = 5
# Loaded for the first sound, and for the first thing that is opened.
FOR_LATER = ("libcanberra.so", "libgio-2.0.so")


class StartUp(Editors, SystemTest):
    SESSION = {"tray": "xembed", "sound": True}

    def loaded(self):
        """Those of FOR_LATER that the application has loaded."""
        with open(f"/proc/{self.session.application.pid}/maps", encoding="utf-8") as maps:
            text = maps.read()
        if "libasan" in text:
            self.skipTest("a build for the sanitizers is linked with all its libraries")
        return {library for library in FOR_LATER if library in text}

    def tray_icon(self):
        return next((window for window in self.session.desktop.windows()
                     if window.width <= 32 and window.height <= 32), None)

    def test_commands_from_the_first_moment(self):
        for number in range(STARTS):
            self.session.application = self.session.spawn(PROGRAM, log="tockwise")
            self.add(f"Tea {number}", "--at", "2100-01-01 00:00")
            self.assertEqual(len(self.texts()), number + 1)
            self.wait_for(self.session.is_running, "the application")
            self.assertEqual(self.texts(), [f"Tea {each}" for each in range(number + 1)])
            self.session.quit_application()

    def test_what_is_due_alerts_and_every_window_gets_the_icon(self):
        write_store(self.session, [reminder("Tea", time.time() - 60)])
        self.session.start_application()
        alert = self.wait_for(lambda: self.alert("Tea"), "the alert")
        item = self.wait_for(self.tray_icon, "the icon in the tray")
        for window in (alert, item):
            self.wait_for(lambda window=window: self.session.desktop.has_icon(window), "its icon")

    def test_libraries_come_with_what_needs_them(self):
        self.session.start_application()
        self.wait_for(self.tray_icon, "the icon in the tray")
        self.assertEqual(self.loaded(), set())
        self.add("Tea", "--at", PAST)
        self.wait_for(lambda: "libcanberra.so" in self.loaded(), "the sound of the alert")
        self.add("Tea", "--at", PAST, "--task", "application:nobody-has-this")
        self.wait_for(lambda: self.loaded() == set(FOR_LATER), "the search for the application")


if __name__ == "__main__":
    main()
