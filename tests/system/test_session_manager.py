#!/usr/bin/python3
"""Logging out and in again where a session manager of X11 runs: xfce4-session."""

import shutil
from pathlib import Path

from editors import Editors
from gi.repository import GLib
from harness import SystemTest, main
from session import PROGRAM

XFCONF = Path("/usr/share/dbus-1/services/org.xfce.Xfconf.service")  # keeps its settings
MANAGER = "org.xfce.SessionManager"
MANAGER_PATH = "/org/xfce/SessionManager"
IDLE = 0  # state of a client
PAST = "2001-01-01 00:00"
LOG_OUT = GLib.Variant("(bb)", (False, True))  # without a dialog, and save the session
# A session that was never saved starts the program.
SETTINGS = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-session" version="1.0">
  <property name="general" type="empty">
    <property name="FailsafeSessionName" type="string" value="Failsafe"/>
  </property>
  <property name="sessions" type="empty"><property name="Failsafe" type="empty">
    <property name="IsFailsafe" type="bool" value="true"/>
    <property name="Count" type="int" value="1"/>
    <property name="Client0_Command" type="array"><value type="string" value="{PROGRAM}"/></property>
  </property></property>
  <property name="startup" type="empty">
    <property name="ssh-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
    <property name="gpg-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
  </property>
</channel>
"""


class SessionManager(Editors, SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        session = self.session
        settings = session.home / ".config/xfce4/xfconf/xfce-perchannel-xml"
        settings.mkdir(parents=True)
        (settings / "xfce4-session.xml").write_text(SETTINGS, encoding="utf-8")
        shutil.copy(XFCONF, session.folder / "session-services")
        session.environment["XDG_CONFIG_DIRS"] = str(session.folder / "no-system-settings")
        session.bus.set_environment_of_services(session.environment)

    def log_in(self):
        self.manager = self.session.spawn("xfce4-session")
        self.wait_for(self.session.is_running, "the application", 30)
        self.wait_for(self.is_settled, "the session")

    def ask(self, path, interface, method, arguments=None):
        return self.session.bus.call(MANAGER, path, interface, method, arguments)[0]

    def is_settled(self):
        """Whether the program has told the manager what that asks of every new one."""
        for path in self.ask(MANAGER_PATH, "org.xfce.Session.Manager", "ListClients"):
            told = self.ask(path, "org.xfce.Session.Client", "GetAllSmProperties")
            if PROGRAM in told.get("RestartCommand", []):
                return self.ask(path, "org.xfce.Session.Client", "GetState") == IDLE
        return False

    def log_out(self):
        """Nobody answers anything."""
        self.session.bus.call(MANAGER, MANAGER_PATH, "org.xfce.Session.Manager", "Logout", LOG_OUT)
        self.wait_for(lambda: not self.session.is_running(), "the application's end")
        self.wait_for(lambda: self.manager.poll() is not None, "the session's end", 20)

    def restart_commands(self):
        """Those of the program in the saved session."""
        saved = list((self.session.home / ".cache/sessions").glob("xfce4-session-*"))
        lines = saved[0].read_text(encoding="utf-8").splitlines() if saved else []
        return [line.split("=", 1)[1] for line in lines if "RestartCommand=" in line and PROGRAM in line]

    def test_all_comes_back_with_the_session(self):
        self.log_in()
        self.add("Water the plants", "--at", PAST)
        self.wait_for(lambda: self.alert("Water"), "the alert")
        self.run_command("new")
        self.wait_for_editor("New Reminder")
        self.session.desktop.type("half a text")
        self.log_out()
        self.assertEqual(self.restart_commands(), [PROGRAM])
        self.log_in()
        self.assertEqual([alert["text"] for alert in self.session.json("alerts")], ["Water the plants"])
        self.wait_for(lambda: self.session.desktop.window_titled("Tockwise"), "the question")
        self.session.desktop.press("Return")  # go on with what was written
        self.wait_for_editor("New Reminder")
        self.choose_quick_time()
        self.save()
        self.assertIn("half a text", self.texts())

    def test_what_starts_at_login_is_not_started_twice(self):
        self.log_in()
        entries = self.session.home / ".config/autostart"
        entries.mkdir()
        (entries / "tockwise.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Tockwise\nExec={PROGRAM}\n", encoding="utf-8")
        self.log_out()
        self.assertEqual(self.restart_commands(), [])


if __name__ == "__main__":
    main()
