#!/usr/bin/python3
"""The application on a real Wayland desktop, one that tiles windows; and displays that Qt cannot
use."""

import plistlib

from compositor import Compositor
from harness import SystemTest, main
from panel_menu import PanelMenu, registered_items

PAST = "2001-01-01 00:00"


class Wayland(SystemTest):
    SESSION = {"display": False}

    def setUp(self):
        super().setUp()
        self.compositor = Compositor(self.session)
        self.addCleanup(self.compositor.close)

    def wait_for_window(self, title):
        return self.wait_for(lambda: self.compositor.window(title), title)

    def check_that_nothing_complained(self):
        strange = [line for line in self.session.log().splitlines()
                   if not line.startswith("tockwise: ")]
        self.assertEqual(strange, [])

    def test_the_windows_open(self):
        self.session.start_tray("status-notifier")
        self.session.start_application()
        self.wait_for(lambda: registered_items(self.session), "the tray item")
        PanelMenu(self.session).choose("New Reminder...")
        self.wait_for_window("New Reminder")
        self.run_command("prefs", "open")
        self.wait_for_window("Preferences")
        self.run_command("print")
        self.wait_for_window("Print Preview")
        self.check_that_nothing_complained()

    def test_without_a_tray_the_menu_opens_in_a_window(self):
        self.session.start_application()
        self.wait_for(lambda: {window.floats for window in self.compositor.windows()
                               if window.title == "Tockwise"} == {True, False},
                      "the menu and the hint", 15)
        self.check_that_nothing_complained()

    def test_alerts_float_and_can_be_resized(self):
        self.session.start_tray("status-notifier")
        self.session.start_application()
        self.add("Water the plants", "--at", PAST)
        alert = self.wait_for_window("Water")
        self.assertTrue(alert.floats)
        self.assertLess(alert.width, 640)
        self.assertLess(alert.height, 400)
        self.compositor.command('[title="^Water"] resize set width 700 px height 500 px')
        self.wait_for(lambda: self.compositor.window("Water").width == 700, "the larger alert")
        self.run_command("alerts", "hide")
        self.wait_for(lambda: not self.compositor.window("Water"), "the alert's end")
        self.run_command("alerts", "show")
        self.assertTrue(self.wait_for_window("Water").floats)
        self.check_that_nothing_complained()

    def test_a_desktop_without_hot_keys_is_told(self):
        self.session.start_tray("status-notifier")
        self.session.start_application()
        self.run_command("prefs", "set", "useGlobalHotKeys", "YES")

        def hot_keys():
            return next(check for check in self.session.json("doctor") if check["name"] == "hot keys")
        self.wait_for(lambda: "gives programs no hot keys" in hot_keys()["detail"], "the answer")
        self.assertIn("tockwise new", hot_keys()["remedy"])

    def test_alerts_survive_the_end_of_the_desktop(self):
        self.session.start_tray("status-notifier")
        self.session.start_application()
        self.add("Water the plants", "--at", PAST)
        kept = self.session.home / ".local/state/tockwise/alerts.plist"
        self.wait_for(kept.exists, "the file")
        self.compositor.end()
        self.session.wait_for_end()
        self.assertEqual([alert["reminder"] for alert in plistlib.loads(kept.read_bytes())["alerts"]],
                         ["Water the plants"])


class UnusableDisplay(SystemTest):
    SESSION = {"display": False}

    def check_that_it_says(self, text, **environment):
        done = self.session.tockwise(environment=self.session.environment | environment)
        self.assertEqual(done.returncode, 1)
        last = done.stderr.splitlines()[-1]
        self.assertTrue(last.startswith("tockwise: "), done.stderr)
        self.assertIn(text, last)

    def test_a_compositor_that_is_gone_is_told(self):
        self.check_that_it_says("wayland-gone cannot be used", WAYLAND_DISPLAY="wayland-gone",
                                XDG_SESSION_TYPE="wayland")

    def test_an_x_server_that_is_gone_is_told(self):
        self.check_that_it_says(":0.gone cannot be used", DISPLAY=":0.gone")

    def test_no_display_at_all_is_told(self):
        self.check_that_it_says("no display")


if __name__ == "__main__":
    main()
