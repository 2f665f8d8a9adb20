"""Keyed archives written and read with another property list library than ours, in the layout
that the programs of other systems give them."""

import plistlib
from dataclasses import dataclass
from plistlib import UID

DISTANT_PAST = -63114076800.0  # as other systems have it: two days before ours


@dataclass(frozen=True)
class Date:
    """An instant, in seconds since 2001-01-01 00:00 UTC."""
    seconds: float


@dataclass(frozen=True)
class CalendarDate(Date):
    """The older kind, which carries a format."""


@dataclass(frozen=True)
class Mutable:
    """A text or data of a mutable class."""
    value: object


CHAINS = {
    "NSDate": ["NSDate", "NSObject"],
    "NSCalendarDate": ["NSCalendarDate", "NSDate", "NSObject"],
    "NSArray": ["NSArray", "NSObject"],
    "NSMutableArray": ["NSMutableArray", "NSArray", "NSObject"],
    "NSDictionary": ["NSDictionary", "NSObject"],
    "NSMutableDictionary": ["NSMutableDictionary", "NSDictionary", "NSObject"],
    "NSMutableString": ["NSMutableString", "NSString", "NSObject"],
    "NSMutableData": ["NSMutableData", "NSData", "NSObject"],
}


class Writer:
    """mutable: whether collections are of the mutable classes."""

    def __init__(self, mutable=False):
        self._prefix = "NSMutable" if mutable else "NS"
        self._objects = ["$null"]
        self._known = {}

    def archive(self, root):
        return plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver",
                               "$top": {"root": self._encode(root)}, "$objects": self._objects},
                              fmt=plistlib.FMT_BINARY, sort_keys=False)

    def _encode(self, value):
        if value is None:
            return UID(0)
        if isinstance(value, (bool, int, float, str, bytes)):
            return self._scalar(value)
        uid = UID(len(self._objects))
        self._objects.append(None)  # before its fields, which come behind it
        self._objects[uid.data] = self._record(value)
        return uid

    def _scalar(self, value):
        key = (type(value), value)
        if key not in self._known:
            self._known[key] = UID(len(self._objects))
            self._objects.append(value)
        return self._known[key]

    def _record(self, value):
        if isinstance(value, CalendarDate):
            return {"NS.time": value.seconds, "NS.format": self._encode("%Y-%m-%d %H:%M:%S %z"),
                    "$class": self._class("NSCalendarDate")}
        if isinstance(value, Date):
            return {"NS.time": value.seconds, "$class": self._class("NSDate")}
        if isinstance(value, Mutable):
            kind = "Data" if isinstance(value.value, bytes) else "String"
            return {f"NS.{kind.lower()}": value.value, "$class": self._class(f"NSMutable{kind}")}
        if isinstance(value, dict):
            return {"NS.keys": [self._encode(key) for key in value],
                    "NS.objects": [self._encode(each) for each in value.values()],
                    "$class": self._class(self._prefix + "Dictionary")}
        return {"NS.objects": [self._encode(each) for each in value],
                "$class": self._class(self._prefix + "Array")}

    def _class(self, name):
        if name not in self._known:
            self._known[name] = UID(len(self._objects))
            self._objects.append({"$classname": name, "$classes": CHAINS[name]})
        return self._known[name]


def archive(root, mutable=False):
    return Writer(mutable).archive(root)


def unarchive(data):
    """The root as plain values; dates as Date. Checks the envelope and every class on the way."""
    outer = plistlib.loads(data)
    assert set(outer) == {"$version", "$archiver", "$top", "$objects"}, set(outer)
    assert outer["$version"] == 100000 and outer["$archiver"] == "NSKeyedArchiver"
    assert list(outer["$top"]) == ["root"]
    objects = outer["$objects"]
    assert objects[0] == "$null"

    def decode(uid):
        value = objects[uid.data]
        if not isinstance(value, dict):
            return None if uid.data == 0 else value
        classes = objects[value["$class"].data]["$classes"]
        assert classes[0] == objects[value["$class"].data]["$classname"]
        assert classes == CHAINS[classes[0]], classes
        if "NSDate" in classes:
            return Date(value["NS.time"])
        if "NSDictionary" in classes:
            return {decode(key): decode(each)
                    for key, each in zip(value["NS.keys"], value["NS.objects"], strict=True)}
        if "NSArray" in classes:
            return [decode(each) for each in value["NS.objects"]]
        return value.get("NS.string", value.get("NS.data"))

    return decode(outer["$top"]["root"])
