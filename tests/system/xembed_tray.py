"""A tray of the older kind (XEmbed) that notes when an icon asks to be docked and when it is
shown. The bench uses it because it costs nothing; the system tests use a real panel."""

import select
import threading
import time
from os import close, pipe, write

from Xlib import X, Xatom, display, error
from Xlib.protocol import event

ICON = 24  # pixels
REQUEST_DOCK = 0
EMBEDDED_NOTIFY = 0


class XEmbedTray(threading.Thread):
    """Runs on its own connection to the display until stop()."""

    def __init__(self, name, x=10, y=10):
        super().__init__(daemon=True)
        self._display = display.Display(name)
        self._wake_out, self._wake_in = pipe()
        self.x, self.y = x, y
        self.docked = []  # (time.monotonic(), window)
        self.shown = []  # (time.monotonic(), window)
        self._make_window()
        self._announce()
        self.start()

    def _make_window(self):
        screen = self._display.screen()
        self._host = screen.root.create_window(
            self.x, self.y, ICON * 8, ICON, 0, screen.root_depth, override_redirect=True,
            background_pixel=screen.white_pixel, event_mask=X.SubstructureNotifyMask)
        self._host.change_property(self._atom("_NET_SYSTEM_TRAY_ORIENTATION"), Xatom.CARDINAL, 32,
                                   [0])
        self._host.change_property(self._atom("_NET_SYSTEM_TRAY_VISUAL"), Xatom.VISUALID, 32,
                                   [screen.root_visual])
        self._host.map()

    def _announce(self):
        screen = self._display.screen()
        selection = self._atom("_NET_SYSTEM_TRAY_S0")
        self._host.set_selection_owner(selection, X.CurrentTime)
        screen.root.send_event(
            event.ClientMessage(window=screen.root, client_type=self._atom("MANAGER"),
                                data=(32, [X.CurrentTime, selection, self._host.id, 0, 0])),
            event_mask=X.StructureNotifyMask)
        self._display.sync()

    def _atom(self, name):
        return self._display.intern_atom(name)

    def run(self):
        opcode = self._atom("_NET_SYSTEM_TRAY_OPCODE")
        while True:
            while self._display.pending_events():
                received = self._display.next_event()
                now = time.monotonic()
                if received.type == X.ClientMessage and received.client_type == opcode:
                    if received.data[1][1] == REQUEST_DOCK:
                        self._dock(received.data[1][2], now)
                elif received.type == X.MapNotify and received.window != self._host:
                    self.shown.append((now, received.window.id))
            ready, _, _ = select.select([self._display, self._wake_out], [], [])
            if self._wake_out in ready:
                return

    def _dock(self, identifier, now):
        self.docked.append((now, identifier))
        icon = self._display.create_resource_object("window", identifier)
        catch = error.CatchError(error.BadWindow, error.BadMatch)
        place = (len(self.docked) - 1) % 8 * ICON
        icon.reparent(self._host, place, 0, onerror=catch)
        icon.configure(x=place, y=0, width=ICON, height=ICON, onerror=catch)
        icon.map(onerror=catch)
        icon.send_event(
            event.ClientMessage(window=identifier, client_type=self._atom("_XEMBED"),
                                data=(32, [X.CurrentTime, EMBEDDED_NOTIFY, 0, self._host.id, 0])),
            event_mask=0, onerror=catch)
        self._display.sync()

    def centre_of_icon(self, index=-1):
        """Where on the screen the icon is that was docked as number index."""
        place = (index % len(self.docked)) % 8
        return self.x + place * ICON + ICON // 2, self.y + ICON // 2

    def stop(self):
        write(self._wake_in, b"x")
        self.join()
        self._display.close()
        close(self._wake_in)
        close(self._wake_out)
