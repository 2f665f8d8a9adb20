#!/usr/bin/python3
"""Hot keys on Wayland: with stand-ins for the desktop's services, first as their states, then in the
running application."""

import os
import subprocess
from pathlib import Path

from editors import Editors
from harness import SystemTest, main
from hot_key_services import IDENTIFIERS, KGlobalAccel, Portal
from session import PROGRAM
from waiting import watch_for

PROBE = os.environ.get("TOCKWISE_HOT_KEYS_PROBE",
                       str(Path(PROGRAM).parents[1] / "tests/hot_keys_probe"))
CONTROL, META = 0x04000000, 0x10000000


class ProbeTest(SystemTest):
    SESSION = {"display": False}
    DESKTOP = "sway"

    def setUp(self):
        super().setUp()
        self.session.environment["XDG_CURRENT_DESKTOP"] = self.DESKTOP
        self.probe = self.session.spawn(PROBE, log="probe", stdin=subprocess.PIPE)
        self.addCleanup(self.probe.stdin.close)
        self.wait_for(self.lines, "the probe")

    def start(self, service, *arguments):
        started = service(self.session, *arguments)
        self.addCleanup(started.close)
        return started

    def say(self, word):
        self.probe.stdin.write(word.encode() + b"\n")
        self.probe.stdin.flush()

    def lines(self):
        return self.session.log("probe").splitlines()

    def wait_for_states(self, expected):
        """expected: the states in their order, or one that all have; with what follows it."""
        if " " not in expected.split("|")[0].strip():
            first, _, rest = expected.partition(" | ")
            expected = " ".join([first] * 4) + (" | " + rest if rest else "")
        self.wait_for(lambda: self.lines()[-1].startswith(expected), expected)
        return self.lines()[-1]


class Services(ProbeTest):
    # Neither.
    def test_nobody_is_asked_before_the_keys_are_wanted(self):
        portal = self.start(Portal)
        watch_for(0.3, lambda: portal.calls, "a call")
        self.assertEqual(self.lines()[0].split(" | ")[0], "off off off off")

    def test_a_desktop_without_services_gives_none(self):
        self.say("on")
        line = self.wait_for_states("unavailable | none")
        self.assertIn("no GlobalShortcuts portal", line)
        self.assertIn("no KGlobalAccel", line)
        self.say("off")
        self.wait_for_states("off | available")

    def test_a_service_that_comes_later_is_asked(self):
        self.say("on")
        self.wait_for_states("unavailable")
        self.start(KGlobalAccel)
        self.wait_for_states("registered | available | KGlobalAccel")

    # The portal.
    def test_the_portal_binds_the_keys(self):
        portal = self.start(Portal)
        self.say("on")
        self.wait_for_states("registered | available | GlobalShortcuts portal")
        self.assertEqual([identifier for identifier, _ in portal.shortcuts], IDENTIFIERS)
        self.assertEqual([options["preferred_trigger"] for _, options in portal.shortcuts],
                         ["CTRL+LOGO+m", "CTRL+LOGO+s", "CTRL+LOGO+h", "CTRL+LOGO+p"])
        self.assertTrue(all(options["description"] for _, options in portal.shortcuts))

    def test_a_portal_that_names_its_own_objects_binds_them_too(self):
        portal = self.start(Portal)
        portal.own_paths = True
        self.say("on")
        self.wait_for_states("registered")
        portal.press("show-alerts")
        self.wait_for(lambda: self.lines()[-1].startswith("pressed 2"), "the key")

    def test_keys_of_the_portal_are_told_by_their_numbers(self):
        portal = self.start(Portal)
        self.say("on")
        self.wait_for_states("registered")
        for number, identifier in enumerate(IDENTIFIERS, 1):
            portal.press(identifier)
            self.wait_for(lambda number=number: self.lines()[-1] == f"pressed {number} leave",
                          identifier)
        before = self.lines()
        portal.press("something-else")
        portal.press("show-alerts", "/another/session")
        watch_for(0.3, lambda: self.lines() != before, "a key")

    def test_a_shortcut_without_a_key_is_taken(self):
        portal = self.start(Portal)
        portal.without_key = ["hide-alerts"]
        portal.bound = IDENTIFIERS[:3]
        self.say("on")
        self.wait_for_states("registered registered taken taken")
        portal.without_key = []
        portal.tell_change()
        self.wait_for_states("registered registered registered taken")

    def test_a_user_who_says_no_is_not_asked_again(self):
        portal = self.start(Portal)
        portal.response = 1
        self.say("on")
        self.assertIn("answered with no", self.wait_for_states("unavailable"))
        calls = len(portal.calls)
        self.say("on")
        watch_for(0.3, lambda: len(portal.calls) != calls, "another question")
        portal.response = 0
        self.say("off")
        self.say("on")
        self.wait_for_states("registered")

    def test_the_keys_are_given_back(self):
        portal = self.start(Portal)
        self.say("on")
        self.wait_for_states("registered")
        self.say("on")
        self.say("off")
        self.wait_for_states("off")
        self.wait_for(lambda: "Close" in portal.methods(), "the session's end")
        self.assertEqual(portal.methods().count("BindShortcuts"), 1)
        before = self.lines()
        portal.press("show-alerts")
        watch_for(0.3, lambda: self.lines() != before, "a key")

    def test_switching_off_while_the_desktop_asks_ends_the_question(self):
        portal = self.start(Portal)
        portal.response = None
        self.say("on")
        self.wait_for(lambda: "BindShortcuts" in portal.methods(), "the question")
        self.wait_for_states("pending")
        self.say("off")
        self.wait_for_states("off")
        self.wait_for(lambda: "Close" in portal.methods(), "the question's end")

    def test_a_portal_that_gives_no_keys_is_none(self):
        portal = self.start(Portal)
        portal.bound = []
        self.say("on")
        self.assertIn("portal gives none", self.wait_for_states("unavailable | none"))
        self.wait_for(lambda: "Close" in portal.methods(), "the session's end")

    def test_a_session_that_the_portal_closes_is_over(self):
        portal = self.start(Portal)
        self.say("on")
        self.wait_for_states("registered")
        portal.close_session()
        self.assertIn("took the keys back", self.wait_for_states("unavailable"))

    def test_a_portal_that_starts_again_is_asked_again(self):
        portal = self.start(Portal)
        self.say("on")
        self.wait_for_states("registered")
        portal.disappear()
        self.wait_for_states("unavailable")
        portal.appear()
        self.wait_for_states("registered")
        self.assertEqual(portal.methods().count("BindShortcuts"), 2)

    def test_a_portal_that_ends_while_it_asks_is_given_up(self):
        portal = self.start(Portal)
        portal.response = None
        self.say("on")
        self.wait_for(lambda: "BindShortcuts" in portal.methods(), "the question")
        portal.disappear()
        self.assertIn("has ended", self.wait_for_states("unavailable"))

    # KGlobalAccel.
    def test_a_portal_without_shortcuts_leaves_them_to_kglobalaccel(self):
        portal = self.start(Portal)
        portal.version = 0
        service = self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered | available | KGlobalAccel")
        self.assertEqual(service.keys, dict(zip(
            IDENTIFIERS, [CONTROL | META | ord(letter) for letter in "MSHP"])))

    def test_kglobalaccel_without_its_compositor_is_none(self):
        service = self.start(KGlobalAccel, False, False)
        self.say("on")
        self.assertIn("no KGlobalAccel", self.wait_for_states("unavailable | none"))
        self.assertEqual(service.calls, [])

    def test_kglobalaccel_knows_what_to_go_back_to(self):
        service = self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered")
        self.assertEqual(service.defaults, service.keys)

    def test_kglobalaccel_of_old_serves_as_well(self):
        service = self.start(KGlobalAccel, True)
        self.say("on")
        self.wait_for_states("registered | available | KGlobalAccel")
        service.press("print-alerts")
        self.wait_for(lambda: self.lines()[-1].startswith("pressed 4"), "the key")

    def test_keys_of_kglobalaccel_are_told_by_their_numbers(self):
        service = self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered")
        service.press("new-reminder", "another.program")
        service.press("something-else")
        service.press("hide-alerts")
        self.wait_for(lambda: self.lines()[-1].startswith("pressed"), "the key")
        self.assertEqual([line for line in self.lines() if line.startswith("pressed")],
                         ["pressed 3 "])

    def test_kglobalaccel_tells_what_is_taken(self):
        service = self.start(KGlobalAccel)
        service.taken = ["show-alerts"]
        self.say("on")
        self.wait_for_states("registered taken registered registered")
        service.tell_change("show-alerts", [CONTROL | ord("J")])
        self.wait_for_states("registered")

    def test_kglobalaccel_is_given_the_keys_back(self):
        service = self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered")
        self.say("off")
        self.wait_for(lambda: service.methods().count("unregister") == 4, "the keys")
        self.wait_for_states("off")

    def test_switching_off_and_on_gets_a_key_that_became_free(self):
        service = self.start(KGlobalAccel)
        service.taken = ["show-alerts"]
        self.say("on")
        self.wait_for_states("registered taken registered registered")
        service.taken = []
        self.say("off")
        self.wait_for_states("off")
        self.say("on")
        self.wait_for_states("registered | available | KGlobalAccel")

    def test_the_keys_stay_ours_when_the_program_ends(self):
        service = self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered")
        self.probe.stdin.close()
        self.wait_for(lambda: service.methods().count("setInactive") == 4, "the keys")
        self.assertNotIn("unregister", service.methods())


class Plasma(ProbeTest):
    DESKTOP = "KDE"

    def test_kglobalaccel_comes_before_the_portal(self):
        portal = self.start(Portal)
        self.start(KGlobalAccel)
        self.say("on")
        self.wait_for_states("registered | available | KGlobalAccel")
        watch_for(0.3, lambda: portal.calls, "a call")

    def test_kglobalaccel_serves_where_the_compositor_is_hidden(self):
        self.start(KGlobalAccel, False, False)
        self.say("on")
        self.wait_for_states("registered | available | KGlobalAccel")

    def test_the_portal_binds_the_keys_without_kglobalaccel(self):
        self.start(Portal)
        self.say("on")
        self.wait_for_states("registered | available | GlobalShortcuts portal")


class Application(Editors, SystemTest):
    SESSION = {}

    def test_a_key_of_the_portal_opens_the_editor(self):
        portal = Portal(self.session)
        self.addCleanup(portal.close)
        self.session.environment["XDG_SESSION_TYPE"] = "wayland"
        self.session.start_application()
        watch_for(0.3, lambda: portal.calls, "a call")
        self.run_command("prefs", "set", "useGlobalHotKeys", "YES")
        self.wait_for(lambda: "BindShortcuts" in portal.methods(), "the keys")
        portal.press("new-reminder")
        self.wait_for_editor("New Reminder")
        self.run_command("prefs", "set", "useGlobalHotKeys", "NO")
        self.wait_for(lambda: "Close" in portal.methods(), "the keys' end")


if __name__ == "__main__":
    main()
