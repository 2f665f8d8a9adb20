"""What is on the clipboard, read as another program reads it."""

import select
import time

from Xlib import X, display

KEPT = "TOCKWISE_TEST"


class ClipboardReader:
    """Its own connection to the display; close() ends it."""

    def __init__(self, name):
        self._display = display.Display(name)
        screen = self._display.screen()
        self._window = screen.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent,
                                                 event_mask=X.PropertyChangeMask)
        self._selection = self._atom("CLIPBOARD")
        self._place = self._atom(KEPT)

    def close(self):
        self._display.close()

    def _atom(self, name):
        return self._display.intern_atom(name)

    def _wait(self, wanted, seconds=10):
        """The next event that is wanted; None when none comes."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            while self._display.pending_events():
                event = self._display.next_event()
                if wanted(event):
                    return event
            select.select([self._display], [], [], 0.1)
        return None

    def _convert(self, target):
        """The property that holds the contents; None when there are none of that type."""
        if self._display.get_selection_owner(self._selection) == X.NONE:
            return None
        self._window.convert_selection(self._selection, self._atom(target), self._place,
                                       X.CurrentTime)
        self._display.flush()
        answer = self._wait(lambda event: event.type == X.SelectionNotify)
        if answer is None or answer.property == X.NONE:
            return None
        return self._window.get_full_property(self._place, X.AnyPropertyType)

    def types(self):
        """The types that are offered, [] when the clipboard is empty."""
        found = self._convert("TARGETS")
        return [self._display.get_atom_name(atom) for atom in found.value] if found else []

    def read(self, target):
        """The contents as bytes; None when there are none of that type."""
        found = self._convert(target)
        if found is None or found.property_type != self._atom("INCR"):
            return found and bytes(found.value)
        contents = b""
        while True:  # piece by piece
            self._window.delete_property(self._place)
            self._display.flush()
            if self._wait(lambda event: event.type == X.PropertyNotify
                          and event.state == X.PropertyNewValue) is None:
                raise AssertionError("the clipboard's owner stopped in the middle")
            piece = self._window.get_full_property(self._place, X.AnyPropertyType)
            if piece is None or not piece.value:
                return contents
            contents += bytes(piece.value)
