"""Another program's drag: offers files and drops them on a window, as XDND has it."""

from pathlib import Path

from Xlib import X, display
from Xlib.protocol import event

from clipboard_owner import ClipboardOwner
from waiting import wait_for

VERSION = 5
MIME_TYPE = "text/uri-list"


class DragSource(ClipboardOwner):
    """paths: the files that are dragged."""

    def __init__(self, name, paths):
        uris = "".join(Path(path).as_uri() + "\r\n" for path in paths)
        self._messages = []
        self._sender = display.Display(name)
        super().__init__(name, {MIME_TYPE: uris.encode()}, "XdndSelection")

    def received(self, message):
        if message.type == X.ClientMessage:
            self._messages.append((message.client_type, list(message.data[1])))

    def _send(self, target, kind, *data):
        window = self._sender.create_resource_object("window", target)
        words = [self._window.id, *data]
        window.send_event(event.ClientMessage(
            window=target, client_type=self._sender.intern_atom(kind),
            data=(32, words + [0] * (5 - len(words)))))
        self._sender.sync()

    def _answer_of(self, kind):
        atom = self._sender.intern_atom(kind)
        wait_for(lambda: any(name == atom for name, _ in self._messages), kind)
        return [data for name, data in self._messages if name == atom][-1]

    def drag_over(self, window):
        """Moves to the middle of the window; whether it would take the drop there."""
        self._messages.clear()
        x, y = window.x + window.width // 2, window.y + window.height // 2
        self._send(window.identifier, "XdndEnter", VERSION << 24,
                   self._sender.intern_atom(MIME_TYPE))
        self._send(window.identifier, "XdndPosition", 0, x << 16 | y, X.CurrentTime,
                   self._sender.intern_atom("XdndActionCopy"))
        return bool(self._answer_of("XdndStatus")[1] & 1)

    def leave(self, window):
        self._send(window.identifier, "XdndLeave")

    def drop_on(self, window):
        """Drops after drag_over(); whether the drop was taken."""
        self._send(window.identifier, "XdndDrop", 0, X.CurrentTime)
        return bool(self._answer_of("XdndFinished")[1] & 1)

    def stop(self):
        super().stop()
        self._sender.close()
