#!/usr/bin/python3
"""The command line carried out by the running application, over D-Bus."""

import subprocess
from datetime import datetime, timezone

from command_line_contract import ALERT_KEYS, DATE, Contract, parse_date
from harness import SystemTest, main
from rich_contract import RichContract
from session import PROGRAM


class WithApplication(Contract, RichContract, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()

    def test_what_was_added_is_on_the_disk_at_once(self):
        self.add("Tea", "--in", "1 Hour")
        self.session.application.kill()
        self.session.wait_for_end()
        self.wait_for(lambda: not self.session.is_running(), "the end on the bus")
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_change_is_announced(self):
        signals = self.record()
        self.add("Tea", "--in", "1 Hour")
        self.wait_for_signal(signals, "QueueChanged")

    def test_a_reminder_that_fell_due_alerts_at_once(self):
        signals = self.record()
        uuid = self.add("Tea", "--at", "2001-01-01 00:00")
        self.assertEqual(self.wait_for_signal(signals, "ReminderFired")[1], (uuid,))
        self.assertEqual(self.wait_for_signal(signals, "AlertOpened")[1], (uuid,))
        (alert,) = self.session.json("alerts")
        self.assertEqual(set(alert), ALERT_KEYS)
        self.assertTrue(DATE.fullmatch(alert.pop("date")))
        self.assertEqual(alert, {"position": 1, "uuid": uuid, "text": "Tea", "shown": True,
                                 "rescheduled": False})
        self.assertEqual(self.reminders()[0]["reminderRecent"], 1)

    def test_alerts_are_dismissed_in_their_order(self):
        for text in ("one", "two", "three"):
            self.add(text, "--at", "2001-01-01 00:00")
            self.wait_for(lambda: text in [each["text"] for each in self.session.json("alerts")],
                          text)
        self.run_command("alerts", "ok", "2")
        self.assertEqual([each["text"] for each in self.session.json("alerts")], ["one", "three"])
        self.run_command("alerts", "ok", "3", status=1)
        self.run_command("alerts", "hide")
        self.wait_for(lambda: not any(each["shown"] for each in self.session.json("alerts")),
                      "hidden alerts")
        self.run_command("alerts", "show")
        self.wait_for(lambda: all(each["shown"] for each in self.session.json("alerts")),
                      "shown alerts")
        self.assertIn("three", self.run_command("alerts"))
        self.run_command("alerts", "ok-all")
        self.wait_for(lambda: self.session.json("alerts") == [], "no alert")
        self.assertEqual(len(self.reminders()), 3)

    def test_the_alert_of_a_repeating_reminder_deletes_it(self):
        self.add("Tea", "--at", "2001-01-01 00:00", "--every", "day")
        self.wait_for(lambda: self.session.json("alerts"), "the alert")
        self.assertIs(self.session.json("alerts")[0]["rescheduled"], True)
        self.assertGreater(parse_date(self.reminders()[0]["reminderQueue"]),
                           datetime.now(timezone.utc))
        asking = subprocess.Popen([PROGRAM, "alerts", "delete", "1"],
                                  env=self.session.environment)
        self.addCleanup(asking.kill)
        box = self.wait_for(self.question, "the question")
        self.session.desktop.activate(box)
        self.wait_for(lambda: self.session.desktop.active_window() == box.identifier, "its focus")
        self.session.desktop.press("Return")
        self.wait_for(lambda: self.session.json("alerts") == [], "no alert")
        self.assertEqual(self.reminders(), [])

    def question(self):
        """The window that is open beside the alerts."""
        others = [window for window in self.session.desktop.windows()
                  if not window.plain and window.role != "alert" and window.width > 100]
        return others[-1] if others else None

    def test_a_second_start_hands_over_to_the_first(self):
        done = self.session.tockwise()
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIsNone(self.session.application.poll())

    def test_quitting_with_alerts_open_asks_and_stays_on_return(self):
        self.add("Tea", "--at", "2001-01-01 00:00")
        self.wait_for(lambda: self.session.json("alerts"), "the alert")
        asking = subprocess.Popen([PROGRAM, "quit"], env=self.session.environment,
                                  stderr=subprocess.DEVNULL)
        self.addCleanup(asking.kill)
        box = self.wait_for(self.question, "the question")
        self.session.desktop.activate(box)
        self.wait_for(lambda: self.session.desktop.active_window() == box.identifier, "its focus")
        self.session.desktop.press("Return")
        self.wait_for(lambda: asking.poll() is not None, "the answer")
        self.assertEqual(asking.returncode, 1)
        self.assertTrue(self.session.is_running())
        self.assertIs(self.session.json("alerts")[0]["shown"], True)

    def test_quit_with_yes_ends_it_although_alerts_are_open(self):
        self.add("Tea", "--at", "2001-01-01 00:00")
        self.wait_for(lambda: self.session.json("alerts"), "the alert")
        self.assertEqual(self.session.quit_application(), 0)
        self.assertFalse(self.session.is_running())

    def test_quit_ends_it_without_a_question_when_nothing_is_open(self):
        self.run_command("quit")
        self.assertEqual(self.session.wait_for_end(), 0)

if __name__ == "__main__":
    main()
