"""Reminders documents written and read from outside."""

import uuid

from keyed_archives import DISTANT_PAST, Date, archive, unarchive

KEYS = [
    "importedUIDs", "reminderDateTimeCreated", "reminderDateTimeFired",
    "reminderDateTimeModified", "reminderRecent", "reminderUUID", "reminderQueue",
    "reminderTypes", "reminderIntervals", "reminderDescriptions", "reminderRTFs",
    "reminderSendEmail", "reminderSendSMS", "reminderTasks", "reminderExtras", "reminderOffsets",
]
DUE = Date(946684800.25)  # 2031


def reminder(text, **fields):
    """One reminder as key -> element, as other systems archive it."""
    return {
        "importedUIDs": "",
        "reminderDateTimeCreated": Date(700000000.5),
        "reminderDateTimeFired": Date(DISTANT_PAST),
        "reminderDateTimeModified": Date(700000001.0),
        "reminderRecent": False,
        "reminderUUID": str(uuid.uuid4()).upper(),
        "reminderQueue": DUE,
        "reminderTypes": "regular",
        "reminderIntervals": [0, 0, 0, 0],
        "reminderDescriptions": text,
        "reminderRTFs": b"",
        "reminderSendEmail": False,
        "reminderSendSMS": False,
        "reminderTasks": {"nil": "nil"},
        "reminderExtras": {"days": [True] * 7, "times": [0, 0, 0, 0]},
        "reminderOffsets": [0, 0, 0],
    } | fields


def dictionary(reminders):
    return {key: [each[key] for each in reminders] for key in KEYS}


def document(reminders, mutable=False):
    return archive(dictionary(reminders), mutable)


def rows(data):
    """The reminders of a document, as dictionaries; checks that it is one."""
    root = unarchive(data)
    assert list(root) == KEYS, list(root)
    assert len({len(array) for array in root.values()}) == 1
    return [dict(zip(KEYS, row, strict=True)) for row in zip(*root.values(), strict=True)]
