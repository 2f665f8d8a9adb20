#!/usr/bin/python3
"""A StatusNotifierItem host, as the panel of a desktop is one; runs until it is ended.

It keeps the list of registered items in the watcher's property, and answers Introspect, as the
toolkits of the items require.
"""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_PATH = "/StatusNotifierWatcher"
WATCHER_XML = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
<signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
<signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


class Watcher:
    def __init__(self):
        self.items = {}  # "name/path" -> unique name of its owner
        self.connection = None

    def own(self):
        Gio.bus_own_name(Gio.BusType.SESSION, WATCHER, Gio.BusNameOwnerFlags.NONE,
                         self._acquired, self._named, None)

    def _acquired(self, connection, _name):
        self.connection = connection
        interface = Gio.DBusNodeInfo.new_for_xml(WATCHER_XML).interfaces[0]
        connection.register_object(WATCHER_PATH, interface, self._call, self._get, None)
        connection.signal_subscribe(
            "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
            "/org/freedesktop/DBus", None, Gio.DBusSignalFlags.NONE, self._owner_changed)

    def _named(self, _connection, _name):
        self._emit("StatusNotifierHostRegistered", None)

    def _emit(self, signal, arguments):
        self.connection.emit_signal(None, WATCHER_PATH, WATCHER, signal, arguments)

    def _call(self, _connection, sender, _path, _interface, method, parameters, invocation):
        if method == "RegisterStatusNotifierItem":
            given = parameters.unpack()[0]
            item = sender + given if given.startswith("/") else given + "/StatusNotifierItem"
            self.items[item] = sender
            self._emit("StatusNotifierItemRegistered", GLib.Variant("(s)", (item,)))
        invocation.return_value(None)

    def _get(self, _connection, _sender, _path, _interface, name):
        return {
            "RegisteredStatusNotifierItems": GLib.Variant("as", list(self.items)),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
            "ProtocolVersion": GLib.Variant("i", 0),
        }[name]

    def _owner_changed(self, _connection, _sender, _path, _interface, _signal, parameters):
        name, _old, new = parameters.unpack()
        if new == "":
            for item in [item for item, owner in self.items.items() if owner == name]:
                del self.items[item]
                self._emit("StatusNotifierItemUnregistered", GLib.Variant("(s)", (item,)))


if __name__ == "__main__":
    Watcher().own()
    GLib.MainLoop().run()
