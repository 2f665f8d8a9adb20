"""A real Secret Service in a session of its own."""

from gi.repository import GLib

from waiting import wait_for

SERVICE = "org.freedesktop.secrets"
PATH = "/org/freedesktop/secrets"
INTERFACE = "org.freedesktop.Secret.Service"
COLLECTION = "org.freedesktop.Secret.Collection"
INTERNAL = "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"
MASTER = "opens the keyring"


class Keyring:
    def __init__(self, session):
        self.session = session

    def start(self):
        """Starts the daemon, its one collection unlocked."""
        master = self.session.folder / "master"
        master.write_text(MASTER, encoding="utf-8")
        self.session.spawn("sh", "-c", "exec gnome-keyring-daemon --foreground --unlock "
                           f"--components=secrets < '{master}'", log="keyring")
        wait_for(lambda: self.session.bus.owner(SERVICE), "the keyring")
        wait_for(lambda: self.collection() != "/" and not self.is_locked(), "its collection")

    def end(self):
        self.session.end("keyring")
        wait_for(lambda: not self.session.bus.owner(SERVICE), "the keyring's end")

    def _call(self, path, interface, method, arguments):
        return self.session.bus.call(SERVICE, path, interface, method, arguments)

    def collection(self):
        return self._call(PATH, INTERFACE, "ReadAlias", GLib.Variant("(s)", ("default",)))[0]

    def is_locked(self):
        return self.session.bus.property(SERVICE, self.collection(), COLLECTION, "Locked")

    def lock(self):
        self._call(PATH, INTERFACE, "Lock", GLib.Variant("(ao)", ([self.collection()],)))
        wait_for(self.is_locked, "the locked keyring")

    def unlock(self):
        """As logging in does: without asking."""
        _, session = self._call(PATH, INTERFACE, "OpenSession",
                                GLib.Variant("(sv)", ("plain", GLib.Variant("s", ""))))
        secret = (session, b"", MASTER.encode(), "text/plain")
        self._call(PATH, INTERNAL, "UnlockWithMasterPassword",
                   GLib.Variant("(o(oayays))", (self.collection(), secret)))
        wait_for(lambda: not self.is_locked(), "the unlocked keyring")

    def items(self):
        """How many secrets there are."""
        return len(self.session.bus.property(SERVICE, self.collection(), COLLECTION, "Items"))
