"""Another program's clipboard: offers bytes under their MIME types until it is stopped."""

import select
import threading
from os import close, pipe, write

from Xlib import X, Xatom, display
from Xlib.protocol import event


class ClipboardOwner(threading.Thread):
    """contents: MIME type -> bytes. Runs on its own connection to the display until stop()."""

    def __init__(self, name, contents, selection="CLIPBOARD"):
        super().__init__(daemon=True)
        self._display = display.Display(name)
        self._wake_out, self._wake_in = pipe()
        self._contents = {self._atom(mime): data for mime, data in contents.items()}
        self._selection = self._atom(selection)
        screen = self._display.screen()
        self._window = screen.root.create_window(0, 0, 1, 1, 0, screen.root_depth)
        self._window.set_selection_owner(self._selection, X.CurrentTime)
        self._display.sync()
        self.start()

    def _atom(self, name):
        return self._display.intern_atom(name)

    def run(self):
        while True:
            while self._display.pending_events():
                received = self._display.next_event()
                if received.type == X.SelectionRequest:
                    self._answer(received)
                else:
                    self.received(received)
            ready, _, _ = select.select([self._display, self._wake_out], [], [])
            if self._wake_out in ready:
                return

    def received(self, message):
        """Any other event, on the thread of its own; for those who derive."""

    def _answer(self, request):
        place = request.property or request.target
        if request.target == self._atom("TARGETS"):
            atoms = [self._atom("TARGETS"), *self._contents]
            request.requestor.change_property(place, Xatom.ATOM, 32, atoms)
        elif request.target in self._contents:
            request.requestor.change_property(place, request.target, 8,
                                              self._contents[request.target])
        else:
            place = X.NONE
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=place))
        self._display.flush()

    def stop(self):
        write(self._wake_in, b"x")
        self.join()
        self._display.close()
        close(self._wake_in)
        close(self._wake_out)
