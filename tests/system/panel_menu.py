"""The status menu as a panel that speaks StatusNotifierItem shows it: read and clicked over
D-Bus."""

from gi.repository import GLib

from waiting import wait_for

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
DBUS_MENU = "com.canonical.dbusmenu"


def registered_items(session):
    return session.bus.property(WATCHER, "/StatusNotifierWatcher", WATCHER,
                                "RegisteredStatusNotifierItems")


class PanelMenu:
    """Waits for the tray item of the session, and speaks with its menu."""

    def __init__(self, session):
        self._bus = session.bus
        item = wait_for(lambda: registered_items(session), "the tray item")[0]
        self._name, path = item.split("/", 1)
        self._path = self._bus.property(self._name, "/" + path, ITEM, "Menu")

    def _call(self, method, arguments):
        return self._bus.call(self._name, self._path, DBUS_MENU, method, arguments)

    def _children(self, parent=0):
        """(identifier, properties) of the items below parent."""
        self._call("AboutToShow", GLib.Variant("(i)", (parent,)))
        layout = self._call("GetLayout", GLib.Variant("(iias)", (parent, 1, [])))[1]
        return [(child[0], child[1]) for child in layout[2]]

    @staticmethod
    def _label(properties):
        return properties.get("label", "").replace("__", "_")

    def labels(self, parent=0):
        """The titles of one level, top to bottom."""
        return [self._label(properties) for _, properties in self._children(parent)]

    def identifier(self, *titles):
        """The item reached by those titles, level by level."""
        at = 0
        for title in titles:
            matching = [child for child, properties in self._children(at)
                        if self._label(properties) == title]
            if not matching:
                raise AssertionError(f"{title!r} is not among {self.labels(at)}")
            at = matching[0]
        return at

    def click(self, identifier):
        self._call("Event", GLib.Variant("(isvu)", (identifier, "clicked",
                                                    GLib.Variant("s", ""), 0)))

    def choose(self, *titles):
        """Clicks the item reached by those titles."""
        self.click(self.identifier(*titles))
