#!/usr/bin/python3
"""Measures the running program, beside a bare Qt tray program, on a display of its own.

process_bench.py --program TOCKWISE --bare BARE_TRAY --out FILE.json [--only NAME] [--idle SECONDS]

FILE gets an array of figures: name, value, unit, limit (null where there is none) and a detail.
"""

import argparse
import contextlib
import json
import os
import statistics
import sys
import threading
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "system"))

STARTS = 10
FIRINGS = 5
FIRST_FIRING = 8  # seconds after the store was written; 10,000 reminders are loaded by then
BETWEEN_FIRINGS = 3
MENU_SECONDS = 20
EDITORS = 7
LONGEST_SETTLING = 20  # seconds
HOUR = 3600
MEASUREMENTS = ["starts", "idle", "firing", "open_menu", "editor"]


def import_harness(program):
    os.environ["TOCKWISE"] = program
    global INTERFACE, PanelMenu, Session, XEmbedTray, wait_for, reminder, write_store, use_of
    global memory_of
    from panel_menu import PanelMenu
    from process_figures import memory_of, use_of
    from session import INTERFACE, Session
    from stores import reminder, write_store
    from waiting import wait_for
    from xembed_tray import XEmbedTray


def far_reminders(count, first=HOUR):
    """The first one an hour away, a third with an advance notice, in the queue's order."""
    start = time.time() + first
    return [reminder(f"Reminder {i}: call the office and ask for the papers of {i % 97}",
                     start + 60 * i + (1800 if i % 3 == 0 else 0),
                     reminderOffsets=[0, 0, 30] if i % 3 == 0 else [0, 0, 0],
                     reminderIntervals=[0, 1, 0, 0] if i % 5 == 0 else [0, 0, 0, 0])
            for i in sorted(range(count), key=lambda i: 60 * i + (1800 if i % 3 == 0 else 0))]


class MapWatch(threading.Thread):
    """Notes when a window of the root appears on the screen."""

    def __init__(self, name):
        super().__init__(daemon=True)
        from Xlib import X, display, error
        self._closed = error.ConnectionClosedError
        self._type = X.MapNotify
        self._display = display.Display(name)
        self._display.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self._display.sync()
        self.mapped = []  # wall-clock times
        self.start()

    def run(self):
        with contextlib.suppress(self._closed):  # the display ends with its session
            while True:
                if self._display.next_event().type == self._type:
                    self.mapped.append(time.time())


class Bench:
    def __init__(self, bare, idle):
        self.bare = bare
        self.idle_seconds = idle
        self.figures = []

    def add(self, name, value, unit, limit=None, detail=""):
        self.figures.append({"name": name, "value": value, "unit": unit, "limit": limit,
                             "detail": detail})

    @contextlib.contextmanager
    def fresh(self, reminders):
        """A session with a tray, and a store that the program has seen once."""
        with Session(sound=True) as session:
            self.tray = XEmbedTray(session.environment["DISPLAY"])
            try:
                write_store(session, reminders)
                self.start(session)
                session.quit_application()
                yield session
            finally:
                self.tray.stop()

    def start(self, session):
        """Starts the program; returns the seconds from exec to its icon."""
        return self.time_icon(lambda: session.start_application())

    def time_icon(self, start):
        before = len(self.tray.shown)
        started = time.monotonic()
        start()
        wait_for(lambda: len(self.tray.shown) > before, "the tray icon", 60)
        return self.tray.shown[before][0] - started

    def start_bare(self, session):
        process = []
        seconds = self.time_icon(lambda: process.append(session.spawn(self.bare)))
        return seconds, process[0]

    def settle(self, process):
        """Waits until the process has done nothing for two seconds, or clearly never will."""
        last = [None, time.monotonic()]
        latest = time.monotonic() + LONGEST_SETTLING

        def is_quiet():
            wakes = use_of(process).wakes
            if wakes != last[0]:
                last[:] = [wakes, time.monotonic()]
            return time.monotonic() - last[1] > 2 or time.monotonic() > latest

        wait_for(is_quiet, "a process at rest", LONGEST_SETTLING + 10)

    def starts(self):
        """Start to tray icon, and the memory then, with and without reminders."""
        bare_times, bare_memory = [], None
        with self.fresh([]) as session:
            for _ in range(STARTS):
                seconds, process = self.start_bare(session)
                bare_times.append(seconds * 1000)
                if bare_memory is None:
                    self.settle(process.pid)
                    bare_memory = memory_of(process.pid)
                process.terminate()
                process.wait()
        bare = statistics.median(bare_times)
        self.add("bare tray program: start to icon", bare, "ms", None,
                 f"best {min(bare_times):.1f} ms")
        self.add("bare tray program: memory (PSS)", bare_memory.shared, "MB", None,
                 f"anonymous {bare_memory.own:.1f} MB")
        for count, start_limit, memory_limit in ((0, None, None),
                                                 (1000, bare * 1.5, bare_memory.shared * 1.5),
                                                 (10000, 100, 40)):
            self.starts_with(count, start_limit, memory_limit)

    def starts_with(self, count, start_limit, memory_limit):
        with self.fresh(far_reminders(count)) as session:
            times, memory = [], None
            for _ in range(STARTS):
                times.append(self.start(session) * 1000)
                if memory is None:
                    self.settle(session.application.pid)
                    memory = memory_of(session.application.pid)
                session.quit_application()
            self.add(f"start to icon, {count:,} reminders", statistics.median(times), "ms",
                     start_limit, f"best {min(times):.1f} ms")
            self.add(f"memory (PSS), {count:,} reminders", memory.shared, "MB", memory_limit,
                     f"anonymous {memory.own:.1f} MB")

    def idle(self):
        """Two minutes of nothing, with 10,000 reminders."""
        with self.fresh(far_reminders(10000)) as session:
            _, bare = self.start_bare(session)
            self.start(session)
            processes = (session.application.pid, bare.pid)
            for process in processes:
                self.settle(process)
            store = session.store.stat().st_mtime_ns
            before = [use_of(process) for process in processes]
            end = time.monotonic() + self.idle_seconds
            wait_for(lambda: time.monotonic() > end, "the end", self.idle_seconds + 10)
            used, of_bare = (use_of(process).since(then)
                             for process, then in zip(processes, before))
            seconds = self.idle_seconds
            self.add("idle, 10,000 reminders: wake-ups a second", used.wakes / seconds, "1/s", 0.05,
                     f"bare program {of_bare.wakes / seconds:.3f}")
            self.add(f"idle, 10,000 reminders: CPU in {seconds} s", used.cpu * 1000, "ms", 3,
                     f"bare program {of_bare.cpu * 1000:.2f} ms")
            self.add("idle, 10,000 reminders: bytes written", used.stored, "bytes", 0,
                     f"{used.written} bytes to files and sockets; store "
                     + ("untouched" if session.store.stat().st_mtime_ns == store else "WRITTEN"))

    def firing(self):
        """From the second at which a reminder is due to its window on the screen."""
        for count in (1000, 10000):
            with self.fresh([]) as session:
                first = int(time.time()) + FIRST_FIRING
                due = [first + BETWEEN_FIRINGS * i for i in range(FIRINGS)]
                write_store(session, [reminder(f"Tea {i}", when) for i, when in enumerate(due)]
                            + far_reminders(count))
                self.start(session)
                watch = MapWatch(session.environment["DISPLAY"])
                signals = session.bus.record(INTERFACE)
                wait_for(lambda: [name for _, name, _ in signals].count("AlertOpened") == FIRINGS,
                         "the alerts", FIRST_FIRING + BETWEEN_FIRINGS * FIRINGS + 10)
                wait_for(lambda: watch.mapped and watch.mapped[-1] >= due[-1], "the last window")
                late = [1000 * (min(at for at in watch.mapped if at >= when) - when)
                        for when in due]
                self.add(f"firing to mapped window, {count:,} reminders", statistics.median(late),
                         "ms", 50, f"best {min(late):.1f} ms, worst {max(late):.1f} ms")
                session.quit_application()

    def open_menu(self):
        """The native menu open in the tray, its countdowns running."""
        with self.fresh(far_reminders(1000)) as session:
            self.start(session)
            process = session.application.pid
            self.settle(process)
            session.desktop.click(*self.tray.centre_of_icon(), button=3)

            def is_open():
                return any(window.plain and window.height > 200
                           for window in session.desktop.windows())

            wait_for(is_open, "the menu")
            opened = use_of(process)
            end = time.monotonic() + MENU_SECONDS
            wait_for(lambda: time.monotonic() > end, "the end", MENU_SECONDS + 10)
            used = use_of(process).since(opened)
            wait_for(is_open, "the menu that was open", 0)
            self.add("menu open, 1,000 reminders: CPU of one core", 100 * used.cpu / MENU_SECONDS,
                     "%", 3, f"{used.wakes / MENU_SECONDS:.1f} wake-ups a second")
            session.desktop.press("Escape")

    def editor(self):
        """From the choice of "New Reminder..." in a panel's menu to the editor on the screen."""
        with Session(tray="status-notifier") as session:
            write_store(session, far_reminders(1000))
            session.start_application()
            session.tockwise("prefs", "set", "showUndoChangesAlert", "NO")
            menu = PanelMenu(session)
            self.settle(session.application.pid)
            watch = MapWatch(session.environment["DISPLAY"])
            took = []
            for _ in range(EDITORS):
                identifier = menu.identifier("New Reminder...")
                seen = len(watch.mapped)
                chosen = time.time()
                menu.click(identifier)
                wait_for(lambda: len(watch.mapped) > seen, "the editor's window")
                took.append(1000 * (watch.mapped[seen] - chosen))
                window = wait_for(lambda: session.desktop.window_titled("New Reminder"),
                                  "the editor")
                wait_for(lambda: session.desktop.active_window() == window.identifier,
                         "the editor's keyboard")
                session.desktop.press("Escape")
                wait_for(lambda: not session.desktop.window_titled("New Reminder"),
                         "the editor's end")
            self.add("editor open from the menu's click", statistics.median(took), "ms", 150,
                     f"first {took[0]:.1f} ms, best {min(took):.1f} ms")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--program", required=True)
    parser.add_argument("--bare", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--only", choices=MEASUREMENTS)
    parser.add_argument("--idle", type=int, default=120, help="seconds of idling")
    arguments = parser.parse_args()
    import_harness(arguments.program)
    bench = Bench(arguments.bare, arguments.idle)
    for name in MEASUREMENTS:
        if arguments.only in (None, name):
            print(f"measuring: {name}", file=sys.stderr)
            getattr(bench, name)()
    Path(arguments.out).write_text(json.dumps(bench.figures, indent=1), encoding="utf-8")


if __name__ == "__main__":
    main()
