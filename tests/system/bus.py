"""A private message bus and our connection to it."""

import time
from pathlib import Path

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>{kind}</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def write_configuration(folder, kind):
    """The configuration file of a bus of that kind ("session" or "system"), which activates the
    services of the folder KIND-services: none at first. Returns it and the bus's address."""
    socket = Path(folder, f"{kind}-bus")
    services = Path(folder, f"{kind}-services")
    services.mkdir(exist_ok=True)
    path = Path(folder, f"{kind}-bus.conf")
    path.write_text(CONFIGURATION.format(kind=kind, socket=socket, services=services), encoding="utf-8")
    return path, f"unix:path={socket}"


class Bus:
    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def close(self):
        if not self._connection.is_closed():
            self._connection.close_sync(None)

    def call(self, name, path, interface, method, arguments=None, seconds=10, start=False):
        """The unpacked results of the method; arguments is a GLib.Variant of a tuple. start: the
        bus may start who has the name."""
        flags = Gio.DBusCallFlags.NONE if start else Gio.DBusCallFlags.NO_AUTO_START
        reply = self._connection.call_sync(name, path, interface, method, arguments, None, flags,
                                           int(seconds * 1000), None)
        return reply.unpack()

    def set_environment_of_services(self, environment):
        """What the bus starts from now on has these variables; it looks for services anew."""
        bus = "org.freedesktop.DBus"
        path = "/org/freedesktop/DBus"
        self.call(bus, path, bus, "UpdateActivationEnvironment",
                  GLib.Variant("(a{ss})", (environment,)))
        self.call(bus, path, bus, "ReloadConfig")

    def property(self, name, path, interface, key):
        return self.call(name, path, "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (interface, key)))[0]

    def never_answer(self, name, path, interface, method):
        """Takes the name and a list to which every call of that method (without arguments) is
        appended, while wait_for() runs. None is answered."""
        calls = []
        node = Gio.DBusNodeInfo.new_for_xml(
            f"<node><interface name='{interface}'><method name='{method}'/></interface></node>")
        self._connection.register_object(path, node.interfaces[0],
                                         lambda *call: calls.append(call), None, None)
        self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                  "RequestName", GLib.Variant("(su)", (name, 0)))
        return calls

    def owner(self, name):
        """The unique name of the owner of name, or None."""
        try:
            return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "GetNameOwner", GLib.Variant("(s)", (name,)))[0]
        except GLib.Error as error:
            if Gio.DBusError.get_remote_error(error) == "org.freedesktop.DBus.Error.NameHasNoOwner":
                return None
            raise

    def process_of(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]

    def emit(self, path, interface, signal, arguments):
        self._connection.emit_signal(None, path, interface, signal, arguments)
        self._connection.flush_sync(None)

    def record(self, interface):
        """A list to which every signal of the interface is appended, as (wall-clock time, name,
        arguments), while wait_for() or watch_for() run."""
        signals = []

        def received(_connection, _sender, _path, _interface, name, parameters):
            signals.append((time.time(), name, parameters.unpack()))

        self._connection.signal_subscribe(None, interface, None, None, None,
                                          Gio.DBusSignalFlags.NONE, received)
        # Once the bus has answered something, it has also seen the subscription.
        self.owner("org.freedesktop.DBus")
        return signals
