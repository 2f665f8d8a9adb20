#!/usr/bin/python3
"""The hot keys on X11, pressed while another program has the keyboard."""

import subprocess

from editors import Editors
from harness import SystemTest, main
from key_grabber import KeyGrabber
from stores import write_store
from waiting import watch_for
from Xlib import X, Xutil, display

HOT = ("Control_L", "Super_L")
QUIET = 0.7  # seconds in which what must not come would have come


class OtherProgram:
    """A window that has the keyboard and notes the keys that it is given."""

    def __init__(self, name):
        self._display = display.Display(name)
        screen = self._display.screen()
        self.window = screen.root.create_window(
            700, 100, 300, 200, 0, screen.root_depth, X.InputOutput, X.CopyFromParent,
            background_pixel=screen.white_pixel, event_mask=X.KeyPressMask)
        self.window.set_wm_name("Other")
        self.window.set_wm_class("other", "Other")
        self.window.set_wm_hints(flags=Xutil.InputHint, input=1)
        self._keys = 0

    def show(self):
        self.window.map()
        self._display.sync()

    def keys(self):
        """How many keys it was given."""
        while self._display.pending_events():
            self._keys += self._display.next_event().type == X.KeyPress
        return self._keys

    def close(self):
        self._display.close()


class HotKeys(Editors, SystemTest):
    SESSION = {}

    def setUp(self):
        super().setUp()
        write_store(self.session, [], showUndoChangesAlert=False)
        self.desktop = self.session.desktop
        self.other = OtherProgram(self.session.environment["DISPLAY"])
        self.addCleanup(self.other.close)

    def start(self, hot_keys="YES"):
        self.run_command("prefs", "set", "useGlobalHotKeys", hot_keys)
        self.session.start_application()
        if hot_keys == "YES":
            self.wait_for(lambda: self.is_grabbed("m"), "the hot keys")
        self.focus_other()

    def focus_other(self):
        """Gives the other program the keyboard; again, while the window manager is just coming."""
        def has_keyboard():
            window = self.desktop.window_titled("Other", "other")
            if not window:
                self.other.show()
            elif self.desktop.active_window() != window.identifier:
                self.desktop.activate(window)
            else:
                return True
            return False
        self.wait_for(has_keyboard, "its keyboard")

    def is_grabbed(self, letter):
        """Whether another program is refused the key."""
        grabber = KeyGrabber(self.session.environment["DISPLAY"], letter)
        grabber.close()
        return bool(grabber.refusals)

    def press(self, letter):
        self.desktop.press(letter, *HOT)

    def close_editor(self):
        self.desktop.press("Escape")
        self.wait_for(lambda: not self.editor(), "the editor's end")

    def check_that_it_opens_the_editor(self, letter="m"):
        self.focus_other()
        self.press(letter)
        self.wait_for_editor("New Reminder")
        self.close_editor()

    def alerts_shown(self):
        return [alert["shown"] for alert in self.session.json("alerts")]

    def set_layouts(self, layouts, *options):
        subprocess.run(["setxkbmap", layouts, *options], env=self.session.environment, check=True)

    # The setting.
    def test_keys_do_nothing_until_they_are_switched_on(self):
        self.session.start_application()
        self.assertEqual(self.run_command("prefs", "get", "useGlobalHotKeys"), "NO\n")
        self.focus_other()
        self.press("m")
        watch_for(QUIET, self.editor, "an editor")
        self.assertEqual(self.other.keys(), 3, "whoever has the keyboard is given the key")

    def test_the_setting_works_without_a_restart(self):
        self.start("NO")
        self.run_command("prefs", "set", "useGlobalHotKeys", "YES")
        self.wait_for(lambda: self.is_grabbed("m"), "the hot keys")
        self.check_that_it_opens_the_editor()
        self.run_command("prefs", "set", "useGlobalHotKeys", "NO")
        for letter in "mshp":
            self.wait_for(lambda letter=letter: not self.is_grabbed(letter), "the end of a key")
        self.focus_other()
        self.press("m")
        watch_for(QUIET, self.editor, "an editor")

    # What they do.
    def test_the_editor_opens_once_and_has_the_keyboard(self):
        self.start()
        self.press("m")
        self.wait_for_editor("New Reminder")
        self.desktop.type("tea")
        self.choose_quick_time()
        self.save()
        self.wait_for(lambda: self.texts() == ["tea"], "the reminder")
        self.assertFalse(self.editor(), "one press opens one editor")
        self.assertEqual(self.other.keys(), 2, "Control and Super alone are everybody's")

    def test_the_window_manager_is_told_when_the_key_was_pressed(self):
        self.start()
        self.press("m")
        editor = self.wait_for_editor("New Reminder")
        self.assertGreater(self.desktop.user_time(editor), 0)

    def test_a_key_that_is_held_down_acts_once(self):
        self.start()
        self.desktop.hold("a")
        self.wait_for(lambda: self.other.keys() > 1, "a repeated key")
        self.desktop.let_go("a")
        self.desktop.hold("m", *HOT)
        self.wait_for_editor("New Reminder")
        watch_for(1.5, lambda: self.count_editors() > 1, "a second editor")
        self.desktop.let_go("m", *HOT)
        # Nobody presses a key in the millisecond in which it came up.
        watch_for(0.1, lambda: self.count_editors() > 1, "a second editor")
        self.press("m")
        self.wait_for(lambda: self.count_editors() == 2, "the editor of another press")

    def count_editors(self):
        return len({window.identifier for window in self.desktop.windows()
                    if "New Reminder" in window.title})

    def test_alerts_are_shown_and_hidden(self):
        self.start()
        signals = self.record()
        for text in ("soup", "bread"):
            self.add(text, "--at", "2001-01-01 00:00")
        self.wait_for(lambda: self.alerts_shown() == [True, True], "the alerts")
        self.wait_for(lambda: len(signals) >= 2, "the signals")
        self.focus_other()
        self.press("h")
        self.wait_for(lambda: self.alerts_shown() == [False, False], "the alerts' hiding")
        self.assertFalse(self.alert("soup") or self.alert("bread"))
        self.focus_other()
        self.press("s")
        self.wait_for(lambda: self.alerts_shown() == [True, True], "the alerts' return")
        self.wait_for(lambda: self.alert("soup") and self.alert("bread"), "their windows")

    def test_every_key_works_over_an_open_editor(self):
        self.start()
        self.press("m")
        self.wait_for_editor("New Reminder")
        self.press("m")
        self.wait_for(lambda: self.count_editors() == 2, "a second editor")

    # The keyboard.
    def test_locks_do_not_matter(self):
        self.start()
        for locks in (["Caps_Lock"], ["Num_Lock"], ["Caps_Lock", "Num_Lock"]):
            with self.subTest(locks=locks):
                for lock in locks:
                    self.desktop.press(lock)
                self.check_that_it_opens_the_editor()
                for lock in locks:
                    self.desktop.press(lock)

    def test_further_modifiers_make_another_key(self):
        self.start()
        for modifier in ("Shift_L", "Alt_L"):
            self.desktop.press("m", *HOT, modifier)
        self.desktop.press("m", "Control_L")
        self.desktop.press("m", "Super_L")
        watch_for(QUIET, self.editor, "an editor")

    def test_a_layout_without_latin_letters_keeps_the_keys(self):
        self.set_layouts("us,ru", "-option", "grp:caps_toggle")
        self.start()
        self.check_that_it_opens_the_editor()
        self.desktop.press_code(66)  # the key Caps Lock: the next layout
        self.focus_other()
        self.desktop.press_code(58, *HOT)  # M, and the Russian soft sign
        self.wait_for_editor("New Reminder")
        self.close_editor()

    def test_a_key_moves_with_the_layout(self):
        self.set_layouts("us,fr", "-option", "grp:caps_toggle")
        self.start()
        self.desktop.press_code(66)
        # French has its M right of the L, and a comma in the place of the American one.
        self.wait_for(lambda: self.is_code_grabbed(47), "the French M")
        self.assertFalse(self.is_code_grabbed(58))
        self.desktop.press_code(47, *HOT)
        self.wait_for_editor("New Reminder")
        self.close_editor()
        self.desktop.press_code(66)
        self.wait_for(lambda: self.is_code_grabbed(58), "the American M")

    def test_new_layouts_are_followed(self):
        self.start()
        self.set_layouts("fr")
        self.wait_for(lambda: self.is_code_grabbed(47), "the French M")
        self.set_layouts("ru")
        self.wait_for(lambda: self.is_code_grabbed(58), "the place of M")
        self.focus_other()
        self.desktop.press_code(58, *HOT)
        self.wait_for_editor("New Reminder")

    def is_code_grabbed(self, code):
        grabber = KeyGrabber(self.session.environment["DISPLAY"], code)
        grabber.close()
        return bool(grabber.refusals)

    # Other programs.
    def test_a_taken_key_is_left_to_its_owner_and_taken_when_it_is_free(self):
        rival = KeyGrabber(self.session.environment["DISPLAY"], "m")
        self.assertFalse(rival.refusals)
        self.run_command("prefs", "set", "useGlobalHotKeys", "YES")
        self.session.start_application()
        self.wait_for(lambda: self.is_grabbed("s"), "the other keys")
        self.focus_other()
        self.desktop.press("Caps_Lock")  # its owner has it without locks only: still not ours
        self.press("m")
        watch_for(QUIET, self.editor, "an editor")
        self.desktop.press("Caps_Lock")
        rival.close()
        self.run_command("prefs", "set", "showRuler", "NO")  # whatever makes the program look
        self.wait_for(lambda: self.is_grabbed("m"), "the key that was given back")
        self.check_that_it_opens_the_editor()

    def test_the_keys_are_given_back_at_the_end(self):
        self.start()
        self.run_command("quit", "--yes")
        self.assertEqual(self.session.wait_for_end(), 0)
        self.assertFalse(self.is_grabbed("m"))


if __name__ == "__main__":
    main()
