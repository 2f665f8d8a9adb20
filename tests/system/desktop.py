"""What a person does on a display: look at windows, click, press keys."""

from dataclasses import dataclass

from Xlib import X, XK, Xatom, display, error
from Xlib.ext import xtest


@dataclass(frozen=True)
class Window:
    identifier: int
    title: str
    classes: tuple  # WM_CLASS
    role: str
    x: int  # of its upper left corner, on the screen
    y: int
    width: int
    height: int
    plain: bool  # without a window manager's frame: a menu, a tool tip

    def belongs_to(self, name):
        return any(name in each.lower() for each in self.classes)


class Desktop:
    def __init__(self, name):
        self._display = display.Display(name)
        self._root = self._display.screen().root

    def close(self):
        self._display.close()

    def selection_owner(self, name):
        """Whether somebody owns the selection."""
        return self._display.get_selection_owner(self._display.intern_atom(name)) != X.NONE

    def has_window_manager(self):
        atom = self._display.intern_atom("_NET_SUPPORTING_WM_CHECK")
        return self._root.get_full_property(atom, X.AnyPropertyType) is not None

    def _text(self, window, name):
        value = window.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        if value is None:
            return ""
        data = value.value
        return data.decode("utf-8", "replace") if isinstance(data, bytes) else str(data)

    def _describe(self, window):
        geometry = window.get_geometry()
        at = window.translate_coords(self._root, 0, 0)
        return Window(
            identifier=window.id,
            title=self._text(window, "_NET_WM_NAME") or self._text(window, "WM_NAME"),
            classes=tuple(window.get_wm_class() or ()),
            role=self._text(window, "WM_WINDOW_ROLE"),
            x=-at.x, y=-at.y, width=geometry.width, height=geometry.height,
            plain=bool(window.get_attributes().override_redirect))

    def windows(self, belonging_to="tockwise"):
        """The visible windows of a program, lowest first."""
        found = []

        def visit(window):
            try:
                for child in window.query_tree().children:
                    state = child.get_attributes().map_state
                    if state == X.IsUnmapped:
                        continue
                    if state == X.IsViewable and child.get_wm_class():
                        found.append(self._describe(child))
                    visit(child)  # a panel holds the icons of others
            except (error.BadWindow, error.BadDrawable):
                pass  # it went while we looked

        visit(self._root)
        return [window for window in found if window.belongs_to(belonging_to)]

    def window_titled(self, text, belonging_to="tockwise"):
        """The topmost visible window whose title holds the text, or None."""
        matching = [window for window in self.windows(belonging_to) if text in window.title]
        return matching[-1] if matching else None

    def click(self, x, y, button=1):
        xtest.fake_input(self._display, X.MotionNotify, x=x, y=y)
        xtest.fake_input(self._display, X.ButtonPress, button)
        xtest.fake_input(self._display, X.ButtonRelease, button)
        self._display.sync()

    def press(self, key, *modifiers):
        """Presses a key by its keysym name ("Return", "a"), with modifiers held ("Alt_L")."""
        self.press_code(self._code(key), *modifiers)

    def press_code(self, code, *modifiers):
        """Presses a key by its place on the keyboard, whatever the layout makes of it."""
        self.hold(code, *modifiers)
        self.let_go(code, *modifiers)

    def hold(self, key, *modifiers):
        for code in self._codes(key, modifiers):
            xtest.fake_input(self._display, X.KeyPress, code)
        self._display.sync()

    def let_go(self, key, *modifiers):
        for code in reversed(self._codes(key, modifiers)):
            xtest.fake_input(self._display, X.KeyRelease, code)
        self._display.sync()

    def _code(self, key):
        return key if isinstance(key, int) else self._display.keysym_to_keycode(
            XK.string_to_keysym(key))

    def _codes(self, key, modifiers):
        return [self._code(each) for each in (*modifiers, key)]

    def type(self, text):
        """Types small letters, digits and blanks."""
        for character in text:
            self.press("space" if character == " " else character)

    def activate(self, window):
        """Gives the window the keyboard, as a click on a task bar does."""
        from Xlib.protocol import event
        message = event.ClientMessage(
            window=window.identifier, client_type=self._display.intern_atom("_NET_ACTIVE_WINDOW"),
            data=(32, [2, X.CurrentTime, 0, 0, 0]))
        self._root.send_event(
            message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()

    def paint_background(self, red, green, blue):
        """The colour of the screen behind the windows, 0 to 255 each."""
        self._root.change_attributes(background_pixel=red << 16 | green << 8 | blue)
        self._root.clear_area()
        self._display.sync()

    def user_time(self, window):
        """When the window was last used, as its program told the window manager (0: never); in
        milliseconds of the X server."""
        value = self._display.create_resource_object("window", window.identifier).get_full_property(
            self._display.intern_atom("_NET_WM_USER_TIME"), Xatom.CARDINAL)
        return value.value[0] if value is not None and len(value.value) else 0

    def has_icon(self, window):
        """Whether its program gave it one for task lists."""
        value = self._display.create_resource_object("window", window.identifier).get_full_property(
            self._display.intern_atom("_NET_WM_ICON"), Xatom.CARDINAL)
        return value is not None and len(value.value) > 0

    def active_window(self):
        """The identifier of the window that has the keyboard, or 0."""
        value = self._root.get_full_property(
            self._display.intern_atom("_NET_ACTIVE_WINDOW"), Xatom.WINDOW)
        return value.value[0] if value is not None and len(value.value) else 0
