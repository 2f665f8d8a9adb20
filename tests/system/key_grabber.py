"""Another program that has a hot key."""

from Xlib import X, XK, display


class KeyGrabber:
    """Grabs Control and Super with a letter, or with a key by its code, without any lock, until
    close()."""

    def __init__(self, name, key):
        self._display = display.Display(name)
        code = key if isinstance(key, int) else self._display.keysym_to_keycode(
            XK.string_to_keysym(key))
        self.refusals = []
        self._display.screen().root.grab_key(
            code, X.ControlMask | X.Mod4Mask, False, X.GrabModeAsync, X.GrabModeAsync,
            onerror=self._note)
        self._display.sync()

    def _note(self, error, _request):
        self.refusals.append(error)
        return True  # do not print it

    def close(self):
        self._display.close()
