#!/usr/bin/python3
"""screenshots.py FOLDER: small scenes with the running program, photographed for the README and the
user guide."""

import subprocess
import sys
import time
from contextlib import contextmanager
from pathlib import Path

from panel_menu import PanelMenu
from session import Session
from stores import BLANK_EXTRA, reminder, write_store
from waiting import wait_for

HOUR = 3600
DAY = 24 * HOUR
MARGIN = 16  # pixels of desktop around what is shown
TITLE_BAR = 20
WALLPAPER = (59, 91, 116)  # red, green, blue
TITLE = "Water the plants on the balcony"
BALCONY = f"""<p style="font-size: 16pt"><b>{TITLE}</b></p>
<p>The tomatoes want <b>two cans</b>, the basil <i>a little</i>, and the cactus
<span style="color: #c2185b">nothing at all</span>.</p>
<p>When it rained, see <a href="https://www.example.org/weather">the forecast</a> first.</p>"""
WORKDAYS = {"days": [False, True, True, True, True, True, False], "times": [9, 0, 17, 0]}


def scene():
    now = time.time() // 60 * 60
    return [
        reminder("Tea is ready: take the leaves out", now),
        reminder("Call Amina about the concert tickets", now + 40 * 60),
        reminder("Stand up and stretch", now + HOUR + 300, reminderIntervals=[0, 0, 1, 0],
                 reminderExtras=WORKDAYS),
        reminder("Water the plants on the balcony", now + 2 * DAY + 3 * HOUR,
                 reminderIntervals=[0, 3, 0, 0], reminderExtras=BLANK_EXTRA),
    ]


def photograph(session, windows, path):
    """What the screen shows where the windows are."""
    left = max(0, min(window.x for window in windows) - MARGIN)
    top = max(0, min(window.y for window in windows) - MARGIN - TITLE_BAR)
    right = max(window.x + window.width for window in windows) + MARGIN
    bottom = max(window.y + window.height for window in windows) + MARGIN
    area = f"{right - left}x{bottom - top}+{left}+{top}"
    subprocess.run(["import", "-window", "root", "-crop", area, "+repage", str(path)],
                   env=session.environment, check=True)


def still(session, find):
    """Waits until the windows that find() returns have come to rest; returns them."""
    seen = []

    def same_twice():
        seen.append(find())
        return len(seen) > 25 and seen[-1] and len(set(map(tuple, seen[-25:]))) == 1

    wait_for(same_twice, "windows that stay as they are", 20)
    return seen[-1]


def frameless(session, title):
    """The window of that title, at rest."""
    return still(session, lambda: [window for window in session.desktop.windows()
                                   if title in window.title])[-1:]


@contextmanager
def painted_desktop(tray="status-notifier"):
    """A session whose program has not been started."""
    with Session(tray=tray) as session:
        session.desktop.paint_background(*WALLPAPER)
        yield session


@contextmanager
def application(session):
    """The program from its start to its end, before which its last window is closed with Escape."""
    session.start_application()
    yield
    session.desktop.press("Escape")
    session.quit_application()


def menu_and_alert(folder):
    with painted_desktop(tray="xembed") as session:
        write_store(session, scene())
        with application(session):
            desktop = session.desktop
            alerts = still(session, lambda: [window for window in desktop.windows()
                                             if window.role == "alert"])
            photograph(session, alerts, folder / "alert.png")
            icon = wait_for(lambda: next((window for window in desktop.windows()
                                          if window.width <= 32 and window.height <= 32), None),
                            "the tray icon")
            desktop.click(icon.x + icon.width // 2, icon.y + icon.height // 2, button=3)
            menu = still(session, lambda: [window for window in desktop.windows()
                                           if window.plain and window.height > 200])
            photograph(session, [*menu, icon], folder / "menu.png")


def writing(folder):
    """The editor in both layouts, and the windows that it opens."""
    with painted_desktop() as session:
        with application(session):
            add_written_reminder(session)
            open_written(PanelMenu(session))
            photograph(session, frameless(session, "Edit Reminder"), folder / "editor.png")
            session.desktop.press("r", "Alt_L")
            photograph(session, frameless(session, "Repeat Options"), folder / "options.png")
        session.tockwise("prefs", "set", "datepicker", "NO")
        session.tockwise("prefs", "set", "showRuler", "YES")
        with application(session):
            open_written(PanelMenu(session))
            photograph(session, frameless(session, "Edit Reminder"), folder / "editor-compact.png")
            session.desktop.press("t", "Alt_L")
            photograph(session, frameless(session, "Task"), folder / "task.png")


def preferences(folder):
    with painted_desktop() as session:
        for key, value in (("emailAddressAD", "amina@example.org"),
                           ("smtpServerNameAD", "smtp.example.org"),
                           ("serverPortAD", "587"), ("authenticationAD", "2"),
                           ("usernameAD", "amina"), ("passwordAD", "not my real one"),
                           ("useADPrefs", "YES")):
            session.tockwise("prefs", "set", key, value)
        with application(session):
            PanelMenu(session).choose("Preferences...")
            frameless(session, "Preferences")
            for panes, name in ((2, "preferences-menu.png"), (4, "preferences-mail.png")):
                for _ in range(panes):
                    session.desktop.press("Next", "Control_L")
                photograph(session, frameless(session, "Preferences"), folder / name)


def opening(folder):
    """A document whose reminders have tasks, as it is opened."""
    now = time.time() // 60 * 60
    tasks = [("Back up the photos", 4, "/home/amina/bin/back-up-photos.sh"),
             ("Stand-up meeting", 0, "meet.example.org/stand-up"),
             ("Write the weekly report", 2, "/home/amina/Documents/weekly report.odt"),
             ("Wake up", 1, "/home/amina/Music/Morning.ogg")]
    with painted_desktop() as session:
        write_store(session, [
            reminder(text, now + (position + 1) * HOUR, reminderTasks={"type": kind, "path": path})
            for position, (text, kind, path) in enumerate(tasks)])
        with application(session):
            PanelMenu(session).choose("Save Reminders...")
            frameless(session, "Save Reminders")
            session.desktop.press("a", "Control_L")
            session.desktop.type("reminders")
            session.desktop.press("Return")
            document = session.home / "reminders.tockwise"
            wait_for(document.exists, "the document")
            session.tockwise(str(document))
            frameless(session, "Tockwise")
            session.desktop.press("Return")
            photograph(session, frameless(session, "Review Tasks"), folder / "review.png")


def printing(folder):
    """The preview of a queue of plain and rich texts."""
    with painted_desktop() as session:
        write_store(session, scene()[1:3])
        with application(session):
            add_written_reminder(session)
            session.tockwise("print")
            photograph(session, frameless(session, "Print Preview"), folder / "print.png")


def open_written(menu):
    menu.choose(next(label for label in menu.labels() if label.startswith(TITLE)), "Show")


def add_written_reminder(session):
    text = Path(session.folder, "balcony.html")
    text.write_text(BALCONY, encoding="utf-8")
    done = session.tockwise("add", "--rich", str(text), "--in", "1 Day", "--every", "day",
                            "--days", "Mon,Tue,Wed,Thu,Fri,Sat", "--before", "0,1,0")
    if done.returncode != 0:
        raise SystemExit(done.stderr)


def main():
    folder = Path(sys.argv[1])
    menu_and_alert(folder)
    writing(folder)
    preferences(folder)
    opening(folder)
    printing(folder)


if __name__ == "__main__":
    main()
