"""Stand-ins for what gives hot keys on Wayland: the GlobalShortcuts portal and KGlobalAccel, as they
were seen to behave (xdg-desktop-portal-kde and kwin_wayland of Plasma 5.27). They answer while wait_for() or watch_for() run."""

from gi.repository import Gio, GLib

IDENTIFIERS = ["new-reminder", "show-alerts", "hide-alerts", "print-alerts"]

PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
PORTAL_XML = """<node>
<interface name='org.freedesktop.portal.GlobalShortcuts'>
<method name='CreateSession'><arg type='a{sv}'/><arg type='o' direction='out'/></method>
<method name='BindShortcuts'><arg type='o'/><arg type='a(sa{sv})'/><arg type='s'/>
<arg type='a{sv}'/><arg type='o' direction='out'/></method>
<property name='version' type='u' access='read'/>
</interface></node>"""
SESSION_XML = """<node><interface name='org.freedesktop.portal.Session'>
<method name='Close'/></interface></node>"""

KDE = "org.kde.kglobalaccel"
KWIN = "org.kde.KWin"
KDE_PATH = "/kglobalaccel"
KDE_COMPONENT = "/component/com_quillstone_Tockwise"
COMPONENT = "com.quillstone.Tockwise"
IS_DEFAULT = 8  # a flag of setShortcutKeys
KDE_XML = """<node><interface name='org.kde.KGlobalAccel'>
<method name='doRegister'><arg type='as'/></method>
<method name='setInactive'><arg type='as'/></method>
<method name='unregister'><arg type='s'/><arg type='s'/><arg type='b' direction='out'/></method>
<method name='getComponent'><arg type='s'/><arg type='o' direction='out'/></method>
<method name='setShortcut'><arg type='as'/><arg type='ai'/><arg type='u'/>
<arg type='ai' direction='out'/></method>
{new}</interface></node>"""
KDE_NEW = """<method name='setShortcutKeys'><arg type='as'/><arg type='a(ai)'/><arg type='u'/>
<arg type='a(ai)' direction='out'/></method>"""


class Service:
    """A name on the bus. calls: (method, arguments) of every call."""

    NAME = None

    def __init__(self, session):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.connection = Gio.DBusConnection.new_for_address_sync(
            session.environment["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        self.calls = []

    def export(self, path, xml):
        node = Gio.DBusNodeInfo.new_for_xml(xml)
        return self.connection.register_object(path, node.interfaces[0], self._called,
                                               lambda *_: GLib.Variant("u", self.version), None)

    def appear(self):
        self.own(self.NAME)

    def own(self, name):
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", (name, 0)), None, Gio.DBusCallFlags.NONE, -1, None)

    def disappear(self):
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReleaseName",
            GLib.Variant("(s)", (self.NAME,)), None, Gio.DBusCallFlags.NONE, -1, None)

    def close(self):
        self.connection.close_sync(None)

    def methods(self):
        return [method for method, _ in self.calls]

    def emit(self, path, interface, name, arguments):
        self.connection.emit_signal(None, path, interface, name, arguments)
        self.connection.flush_sync(None)

    def _called(self, _connection, sender, path, _interface, method, parameters, invocation):
        arguments = parameters.unpack()
        self.calls.append((method, arguments))
        getattr(self, "on_" + method)(invocation, sender, path, *arguments)


class Portal(Service):
    NAME = PORTAL
    version = 1

    def __init__(self, session):
        super().__init__(session)
        self.response = 0  # to BindShortcuts; None: it asks for ever
        self.bound = IDENTIFIERS
        self.without_key = []
        self.own_paths = False  # as old portals have them
        self.session_path = None
        self.shortcuts = None  # as they were asked for
        self.export(PORTAL_PATH, PORTAL_XML)
        self.appear()

    def _path(self, kind, sender, token):
        if self.own_paths:
            return f"{PORTAL_PATH}/{kind}/own{len(self.calls)}"
        return f"{PORTAL_PATH}/{kind}/{sender[1:].replace('.', '_')}/{token}"

    def _respond(self, path, code, results):
        def send():
            self.emit(path, "org.freedesktop.portal.Request", "Response",
                      GLib.Variant("(ua{sv})", (code, results)))
            return GLib.SOURCE_REMOVE
        if self.own_paths:
            GLib.timeout_add(100, send)
        else:
            send()

    def on_CreateSession(self, invocation, sender, _path, options):
        request = self._path("request", sender, options["handle_token"])
        self.session_path = self._path("session", sender, options["session_handle_token"])
        self.export(self.session_path, SESSION_XML)
        if not self.own_paths:  # the answer may come before the path
            self._respond(request, 0, {"session_handle": GLib.Variant("s", self.session_path)})
        invocation.return_value(GLib.Variant("(o)", (request,)))
        if self.own_paths:
            self._respond(request, 0, {"session_handle": GLib.Variant("o", self.session_path)})

    def on_BindShortcuts(self, invocation, sender, _path, session, shortcuts, _window, options):
        assert session == self.session_path
        self.shortcuts = shortcuts
        request = self._path("request", sender, options["handle_token"])
        invocation.return_value(GLib.Variant("(o)", (request,)))
        if self.response is not None:
            self._respond(request, self.response, {"shortcuts": self._bound()})

    def on_Close(self, invocation, *_):
        invocation.return_value(None)

    def _bound(self):
        return GLib.Variant("a(sa{sv})", [
            (each, {"trigger_description": GLib.Variant(
                "s", "" if each in self.without_key else "Press something")})
            for each in self.bound])

    def press(self, identifier, session=None):
        self.emit(PORTAL_PATH, "org.freedesktop.portal.GlobalShortcuts", "Activated",
                  GLib.Variant("(osta{sv})", (session or self.session_path, identifier, 1,
                                              {"activation_token": GLib.Variant("s", "leave")})))

    def tell_change(self):
        self.emit(PORTAL_PATH, "org.freedesktop.portal.GlobalShortcuts", "ShortcutsChanged",
                  GLib.Variant.new_tuple(GLib.Variant("o", self.session_path), self._bound()))

    def close_session(self):
        self.emit(self.session_path, "org.freedesktop.portal.Session", "Closed",
                  GLib.Variant("(a{sv})", ({},)))


class KGlobalAccel(Service):
    NAME = KDE

    def __init__(self, session, is_old=False, compositor=True):
        super().__init__(session)
        self.taken = []  # identifiers whose keys others have
        self.keys = {}  # identifier -> key that was asked for
        self.defaults = {}  # identifier -> key that the settings go back to
        self.without = []  # identifiers that got no key: they have none until they are unregistered
        if compositor:
            self.own(KWIN)
        self.export(KDE_PATH, KDE_XML.format(new="" if is_old else KDE_NEW))
        self.appear()

    def on_doRegister(self, invocation, *_):
        invocation.return_value(None)

    def on_setInactive(self, invocation, *_):
        invocation.return_value(None)

    def on_unregister(self, invocation, _sender, _path, component, identifier):
        if identifier in self.without:
            self.without.remove(identifier)
        invocation.return_value(GLib.Variant("(b)", (component == COMPONENT,)))

    def on_getComponent(self, invocation, *_):
        invocation.return_value(GLib.Variant("(o)", (KDE_COMPONENT,)))

    def on_setShortcutKeys(self, invocation, _sender, _path, action, keys, flags):
        answer = keys
        if flags & IS_DEFAULT:
            self.defaults[action[1]] = keys[0][0][0]
        else:
            self.keys[action[1]] = keys[0][0][0]
            if action[1] in self.taken:
                self.without.append(action[1])
            if action[1] in self.without:
                answer = [([0, 0, 0, 0],)]
        invocation.return_value(GLib.Variant("(a(ai))", (answer,)))

    def on_setShortcut(self, invocation, _sender, _path, action, keys, _flags):
        self.keys[action[1]] = keys[0]
        answer = [] if action[1] in self.taken else keys
        invocation.return_value(GLib.Variant("(ai)", (answer,)))

    def press(self, identifier, component=COMPONENT):
        self.emit(KDE_COMPONENT, "org.kde.kglobalaccel.Component", "globalShortcutPressed",
                  GLib.Variant("(ssx)", (component, identifier, 1)))

    def tell_change(self, identifier, keys):
        self.emit(KDE_PATH, "org.kde.KGlobalAccel", "yourShortcutsChanged",
                  GLib.Variant("(asa(ai))", (
                      [COMPONENT, identifier, "Tockwise", "..."],
                      [([key, 0, 0, 0],) for key in keys])))
