"""The base of every system test: one session a test, evidence kept when it fails."""

import os
import shutil
import sys
import unittest
from datetime import datetime, timedelta
from pathlib import Path

from session import INTERFACE, PROGRAM, Session
from waiting import wait_for

LOGS = Path(os.environ.get("TOCKWISE_TEST_LOGS", Path(PROGRAM).parents[1] / "tests/system-logs"))
SOON = 6  # seconds: a minute that ends sooner is too close to add a reminder for its end


class SystemTest(unittest.TestCase):
    """SESSION: the arguments of Session for each test of the class."""

    SESSION = {}
    maxDiff = None

    def run(self, result=None):
        self._outcome_so_far = result
        return super().run(result)

    def setUp(self):
        self.session = Session(**self.SESSION)
        self.addCleanup(self._end_session)

    def _end_session(self):
        place = LOGS / self.id().replace("__main__", Path(sys.argv[0]).stem)
        try:
            if self._has_failed():
                self.session.keep(place)
            else:
                shutil.rmtree(place, ignore_errors=True)
        finally:
            self.session.close()

    def _has_failed(self):
        result = self._outcome_so_far
        return any(test is self for test, _ in (*result.failures, *result.errors))

    # Short words for what most tests do.
    def run_command(self, *words, status=0, **options):
        """Runs a command, checks its exit status and returns its stdout."""
        done = self.session.tockwise(*words, **options)
        self.assertEqual(done.returncode, status, f"tockwise {words}: {done.stderr}{done.stdout}")
        if status == 0:
            return done.stdout
        self.assertEqual(done.stdout, "", "a command that failed prints nothing on stdout")
        self.assertEqual(len(done.stderr.strip().splitlines()), 1,
                         f"one line says why: {done.stderr}")
        return done.stderr

    def add(self, text, *options):
        """Adds a reminder; returns its UUID."""
        return self.run_command("add", *options, "--", text).strip()

    def reminders(self):
        return self.session.json("list")

    def texts(self):
        return [reminder["reminderDescriptions"] for reminder in self.reminders()]

    def record(self):
        """Every signal of the application from now on; see Bus.record."""
        return self.session.bus.record(INTERFACE)

    def wait_for(self, condition, what, seconds=10.0):
        return wait_for(condition, what, seconds)

    def wait_for_signal(self, signals, name, seconds=10.0):
        """The time and the arguments of the first signal of that name."""
        def first():
            return next((signal for signal in signals if signal[1] == name), None)
        when, _, arguments = wait_for(first, name, seconds)
        return when, arguments


def next_minute():
    """The next full minute that is not too close, as a local datetime."""
    start = datetime.now() + timedelta(seconds=SOON)
    return start.replace(second=0, microsecond=0) + timedelta(minutes=1)


def main():
    if not os.access(PROGRAM, os.X_OK):
        sys.exit(f"{PROGRAM} is not built")
    unittest.main(module="__main__", verbosity=2)
