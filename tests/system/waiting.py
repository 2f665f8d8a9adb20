"""Waiting for something to become true, with a deadline and never with a bare sleep."""

import time

from gi.repository import GLib


def wait_for(condition, what, seconds=10.0):
    """Returns the first true value of condition(), which is asked whenever a D-Bus message came
    in and every 20 ms. After the given seconds an AssertionError says what did not come."""
    context = GLib.MainContext.default()
    deadline = time.monotonic() + seconds
    while True:
        while context.iteration(False):
            pass
        value = condition()
        if value:
            return value
        if time.monotonic() >= deadline:
            raise AssertionError(f"{what}: did not come within {seconds:g} s")
        GLib.timeout_add(20, lambda: GLib.SOURCE_REMOVE)
        context.iteration(True)


def watch_for(seconds, condition, what):
    """Asks condition() for the given seconds and fails when it ever becomes true."""
    context = GLib.MainContext.default()
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        GLib.timeout_add(50, lambda: GLib.SOURCE_REMOVE)
        context.iteration(True)
        if condition():
            raise AssertionError(f"{what}: came although it must not")
