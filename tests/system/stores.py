"""Preferences stores written from outside, with another property list writer than ours."""

import os
import plistlib
import uuid
from datetime import datetime, timedelta, timezone

DISTANT_PAST = datetime(1, 1, 1)
BLANK_EXTRA = {"days": [True] * 7, "times": [0, 0, 0, 0]}


def utc(seconds):
    """A property list's date: UTC, without saying so."""
    return datetime.fromtimestamp(seconds, timezone.utc).replace(tzinfo=None)


def reminder(text, due, **fields):
    """One reminder as key -> element; due in seconds since 1970."""
    now = datetime.now(timezone.utc).replace(tzinfo=None) - timedelta(minutes=1)
    return {
        "reminderQueue": utc(due),
        "reminderDateTimeCreated": now,
        "reminderDateTimeFired": DISTANT_PAST,
        "reminderDateTimeModified": now,
        "reminderRecent": 0,
        "reminderUUID": str(uuid.uuid4()).upper(),
        "reminderDescriptions": text,
        "reminderRTFs": b"",
        "reminderTypes": "regular",
        "reminderIntervals": [0, 0, 0, 0],
        "reminderTasks": {"nil": "nil"},
        "reminderExtras": BLANK_EXTRA,
        "reminderOffsets": [0, 0, 0],
        "reminderSendEmail": False,
        "reminderSendSMS": False,
        "importedUIDs": "",
    } | fields


def write_store(session, reminders, **settings):
    """Makes the session's store hold the reminders and the settings, and nothing else."""
    columns = {key: [each[key] for each in reminders] for key in reminder("", 0)}
    write_root(session, columns | {"dataVersion": "0.1.0"} | settings)


def write_root(session, root):
    session.store.parent.mkdir(parents=True, mode=0o700, exist_ok=True)
    with open(session.store, "wb") as file:
        plistlib.dump(root, file, fmt=plistlib.FMT_BINARY)
    os.chmod(session.store, 0o600)


def read_store(session):
    with open(session.store, "rb") as file:
        return plistlib.load(file)
