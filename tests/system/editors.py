"""The editor's window, and what a user does in it: for tests of the running program."""


class Editors:
    """Beside SystemTest."""

    def editor(self, title=" Reminder"):
        return self.session.desktop.window_titled(title)

    def alert(self, text):
        return next((window for window in self.session.desktop.windows()
                     if text in window.title and window.role == "alert"), None)

    def wait_for_editor(self, title):
        editor = self.wait_for(lambda: self.editor(title), "the editor")
        self.wait_for(lambda: self.session.desktop.active_window() == editor.identifier,
                      "the editor's keyboard")
        return editor

    def save(self):
        self.session.desktop.press("Return", "Control_L")
        self.wait_for(lambda: not self.editor(), "the editor's end")

    def choose_quick_time(self, position=1):
        """The quick time at that position of the list."""
        desktop = self.session.desktop
        desktop.press("q", "Alt_L")
        self.wait_for(self.pop_up, "the quick times")
        for _ in range(position):
            desktop.press("Down")
        desktop.press("Return")
        self.wait_for(lambda: not self.pop_up(), "the quick times' end")

    def pop_up(self):
        """The open menu or list; the tray's icon is as plain, and smaller."""
        return next((window for window in self.session.desktop.windows()
                     if window.plain and window.width > 100 and window.height > 100), None)
