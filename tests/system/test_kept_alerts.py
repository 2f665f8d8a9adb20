#!/usr/bin/python3
"""Alerts outlive the program: those that were open when it was killed or the session ended come
back at the next start, and those that were answered do not."""

import base64
import os
import plistlib
import signal
import stat
import time

from editors import Editors
from harness import SystemTest, main
from pictures import png
from screen import Screen

PINK = (214, 51, 132)  # nothing else on the screen has this colour
PAST = "2001-01-01 00:00"
QUITE = 3  # seconds in which a reminder that is due would have fired


class KeptAlerts(Editors, SystemTest):
    def setUp(self):
        super().setUp()
        self.session.start_application()

    @property
    def file(self):
        return self.session.home / ".local/state/tockwise/alerts.plist"

    def open_alerts(self):
        """Three alerts: one with a picture, one of a repeating reminder, one plain."""
        picture = base64.b64encode(png(60, 40, PINK)).decode()
        page = self.session.folder / "page.html"
        page.write_text("<html><body><p>Tea with <b>milk</b> "
                        f'<img src="data:image/png;base64,{picture}"></p></body></html>',
                        encoding="utf-8")
        self.run_command("add", "--rich", page, "--at", PAST)
        self.add("Water the plants", "--at", PAST, "--every", "day")
        self.add("Walk", "--at", PAST)
        self.wait_for(lambda: len(self.alerts()) == 3, "three alerts")
        for text in ("Tea with milk", "Water", "Walk"):
            self.wait_for(lambda text=text: self.alert(text), text)

    def alerts(self):
        return self.session.json("alerts")

    def kept(self, key="reminder"):
        """The texts in the file, or another value of each alert."""
        if not self.file.exists():
            return []
        return [alert[key] for alert in plistlib.loads(self.file.read_bytes())["alerts"]]

    def picture(self):
        """The picture in the alert, once it is painted and nothing lies on it."""
        def look():
            self.run_command("alerts", "show", "1")
            window = self.alert("Tea with milk")
            area = window and Screen(self.session).area_of(PINK, window)
            return area if area and area.share > 0.99 else None
        area = self.wait_for(look, "the picture", 20)
        return area.width, area.height

    def check_that_they_came_back(self, before, picture):
        signals = self.record()
        self.assertEqual(self.alerts(), before)
        for alert in before:
            self.wait_for(lambda text=alert["text"].split("\ufffc")[0].strip(): self.alert(text),
                          "the window")
        self.assertEqual(self.picture(), picture)
        counts = [reminder["reminderRecent"] for reminder in self.reminders()]
        self.assertEqual(counts, [1, 1, 1])  # none fired again
        self.assertFalse([name for _, name, _ in signals if name == "ReminderFired"])

    def test_alerts_that_were_open_when_the_program_was_killed_come_back(self):
        self.open_alerts()
        before, picture = self.alerts(), self.picture()
        self.wait_for(lambda: len(self.kept()) == 3, "the file")
        self.assertEqual(stat.S_IMODE(self.file.stat().st_mode), 0o600)
        self.session.kill_application()
        self.session.start_application()
        self.check_that_they_came_back(before, picture)
        self.session.kill_application()  # and again
        self.session.start_application()
        self.assertEqual(self.alerts(), before)

    def test_alerts_that_were_open_when_the_session_ended_come_back(self):
        self.open_alerts()
        before, picture = self.alerts(), self.picture()
        self.session.application.terminate()
        self.assertEqual(self.session.wait_for_end(), 0)
        self.session.start_application()
        self.check_that_they_came_back(before, picture)

    def test_an_alert_that_was_dismissed_before_stays_away(self):
        self.open_alerts()
        self.run_command("alerts", "ok", "3")
        self.run_command("alerts", "hide", "2")
        before = self.alerts()
        # Each change is written a moment after it, in one file: the last one is waited for.
        self.wait_for(lambda: self.kept("hidden") == [False, True], "both changes in the file")
        self.session.kill_application()
        self.session.start_application()
        self.assertEqual(self.alerts(), before)
        self.assertEqual([alert["shown"] for alert in before], [True, False])
        self.wait_for(lambda: self.alert("Tea with milk"), "the window")
        self.assertFalse(self.alert("Walk") or self.alert("Water"))

    def test_an_alert_whose_reminder_was_deleted_comes_back(self):
        self.open_alerts()
        self.run_command("clear", "--yes")
        texts = [alert["text"] for alert in self.alerts()]
        self.session.kill_application()
        self.session.start_application()
        self.assertEqual([alert["text"] for alert in self.alerts()], texts)
        self.assertEqual({alert["uuid"] for alert in self.alerts()}, {None})

    def test_the_buttons_of_an_alert_that_came_back_work(self):
        self.open_alerts()
        self.wait_for(lambda: len(self.kept()) == 3, "the file")
        self.session.kill_application()
        self.session.start_application()
        self.run_command("alerts", "again", "1")
        self.wait_for_editor("New Reminder")
        self.session.desktop.press("Escape")
        self.run_command("alerts", "ok", "2")
        self.assertEqual([alert["text"] for alert in self.alerts()], ["Water the plants"])
        self.wait_for(lambda: self.kept() == ["Water the plants"], "the file")

    def test_whoever_quits_with_alerts_open_does_not_see_them_again(self):
        self.open_alerts()
        self.assertEqual(self.session.quit_application(), 0)
        self.assertEqual(self.kept(), [])
        self.session.start_application()
        self.assertEqual(self.alerts(), [])

    def test_a_damaged_file_is_put_aside_and_nothing_else_is_lost(self):
        self.open_alerts()
        self.wait_for(lambda: len(self.kept()) == 3, "the file")
        self.session.kill_application()
        self.file.write_bytes(self.file.read_bytes()[:100])
        self.session.start_application()
        self.assertEqual(self.alerts(), [])
        self.assertEqual(len(self.reminders()), 3)
        self.assertTrue(self.file.with_name("alerts.plist.damaged").exists())
        self.assertIn("Cannot read the kept alerts", self.session.log())

    def test_a_reminder_that_fired_is_told_of_whenever_the_program_is_killed(self):
        """Killed at any moment around the firing, the reminder alerts at the next start."""
        for milliseconds in (0, 5, 20, 60):
            with self.subTest(milliseconds=milliseconds):
                text = f"killed after {milliseconds}"
                signals = self.record()
                self.add(text, "--at", PAST)
                self.wait_for_signal(signals, "ReminderFired")
                time.sleep(milliseconds / 1000)  # not waited for anything: this is the moment
                os.kill(self.session.application.pid, signal.SIGKILL)
                self.session.wait_for_end()
                self.session.start_application()
                self.wait_for(lambda: [alert["text"] for alert in self.alerts()] == [text],
                              "one alert", QUITE)
                self.run_command("alerts", "ok-all")
                self.wait_for(lambda: self.kept() == [], "the file's end")


if __name__ == "__main__":
    main()
