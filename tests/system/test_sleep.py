#!/usr/bin/python3
"""Sleep and wake, as logind tells of them."""

import time

from gi.repository import GLib

from harness import SystemTest, main
from stores import reminder, write_store
from waiting import watch_for

LOGIN = ("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager")
HOLD = 20  # seconds for which nothing fires after the machine woke


class Sleep(SystemTest):
    SESSION = {"tray": "status-notifier", "logind": True}

    def inhibitors(self):
        """The delays that the application holds, as logind lists them."""
        (held,) = self.session.system_bus.call(*LOGIN, "ListInhibitors")
        return [each for each in held if each[0] == "sleep" and each[3] == "delay"]

    def prepare_for_sleep(self, start):
        self.session.system_bus.call(
            *LOGIN[:2], "org.freedesktop.DBus.Mock", "EmitSignal",
            GLib.Variant("(sssav)", (LOGIN[2], "PrepareForSleep", "b",
                                     [GLib.Variant("b", start)])))

    def test_what_falls_due_asleep_fires_twenty_seconds_after_waking(self):
        due = time.time() + 5
        write_store(self.session, [reminder("Tea", due)])
        self.session.start_application()
        signals = self.record()
        self.wait_for(self.inhibitors, "the delay")
        self.prepare_for_sleep(True)
        self.wait_for(lambda: not self.inhibitors(), "the end of the delay")
        watch_for(due + 2 - time.time(), lambda: self.fired(signals), "a firing while asleep")
        woken = time.time()
        self.prepare_for_sleep(False)
        watch_for(HOLD - 1, lambda: self.fired(signals), "a firing right after waking")
        when, _ = self.wait_for_signal(signals, "ReminderFired", 5)
        self.assertGreaterEqual(when - woken, HOLD - 0.2)
        self.wait_for(self.inhibitors, "the delay for the next sleep")
        self.assertEqual(len(self.fired(signals)), 1)

    def fired(self, signals):
        return [each for each in signals if each[1] == "ReminderFired"]

    def test_everything_is_on_the_disk_before_the_machine_sleeps(self):
        self.session.start_application()
        self.wait_for(self.inhibitors, "the delay")
        self.add("Tea", "--in", "1 Hour")
        self.prepare_for_sleep(True)
        self.wait_for(lambda: not self.inhibitors(), "the end of the delay")
        self.session.application.kill()  # the battery ran out
        self.session.wait_for_end()
        self.wait_for(lambda: not self.session.is_running(), "the end on the bus")
        self.assertEqual(self.texts(), ["Tea"])

    def test_the_command_line_works_while_it_waits(self):
        self.session.start_application()
        self.wait_for(self.inhibitors, "the delay")
        self.prepare_for_sleep(True)
        self.wait_for(lambda: not self.inhibitors(), "the end of the delay")
        self.add("Tea", "--in", "1 Hour")
        self.prepare_for_sleep(False)
        self.assertEqual(self.texts(), ["Tea"])
        self.assertEqual(self.session.quit_application(), 0)

    def test_a_logind_that_is_not_there_does_not_matter(self):
        self.session.end("logind")
        self.wait_for(lambda: not self.session.system_bus.owner(LOGIN[0]), "logind's end")
        self.session.start_application()
        self.add("Tea", "--at", "2001-01-01 00:00")
        self.wait_for(lambda: self.session.json("alerts"), "the alert")


if __name__ == "__main__":
    main()
