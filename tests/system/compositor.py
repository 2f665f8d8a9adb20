"""A Wayland desktop without a screen: sway, which tiles windows and lets dialogs float."""

import json
import os
import shutil
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

from waiting import wait_for

NOBODY = "65534"
CONFIGURATION = """xwayland disable
output HEADLESS-1 resolution 1280x800
"""


@dataclass(frozen=True)
class Tile:
    title: str
    floats: bool
    x: int
    y: int
    width: int
    height: int


class Compositor:
    """Sway for a session without a display, whose programs are on Wayland from now on."""

    def __init__(self, session):
        self._session = session
        self._folder = Path(tempfile.mkdtemp(prefix="tockwise-sway-", dir="/tmp"))
        try:
            self._start()
        except BaseException:
            self.close()
            raise

    def _start(self):
        folder = self._folder
        (folder / "config").write_text(CONFIGURATION, encoding="utf-8")
        environment = {"PATH": os.environ["PATH"], "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder),
                       "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
                       "WLR_LIBINPUT_NO_DEVICES": "1"}
        words = ["sway", "--config", folder / "config"]
        if os.geteuid() == 0:  # which it refuses to be
            for path in (folder, folder / "config"):
                os.chown(path, int(NOBODY), int(NOBODY))
            words = ["setpriv", "--reuid", NOBODY, "--regid", NOBODY, "--clear-groups",
                     "--pdeathsig", "KILL", *words]
        self._session.spawn(*words, log="sway", environment=environment, cwd=folder)
        self._socket = wait_for(lambda: next(folder.glob("sway-ipc.*"), None), "sway", 20)
        display = wait_for(
            lambda: next((path for path in folder.glob("wayland-*") if path.is_socket()), None),
            "the display")
        self._session.environment |= {"WAYLAND_DISPLAY": str(display), "XDG_SESSION_TYPE": "wayland",
                                      "XDG_CURRENT_DESKTOP": "sway"}

    def _ask(self, *words):
        done = subprocess.run(["swaymsg", "--raw", "--socket", self._socket, *words],
                              capture_output=True, encoding="utf-8", timeout=20, check=True)
        return json.loads(done.stdout)

    def command(self, text):
        self._ask(text)

    def windows(self):
        found = []

        def visit(node):
            if node.get("pid"):
                place = node["rect"]
                found.append(Tile(node["name"] or "", node["type"] == "floating_con", place["x"],
                                  place["y"], place["width"], place["height"]))
            for child in node.get("nodes", []) + node.get("floating_nodes", []):
                visit(child)

        visit(self._ask("--type", "get_tree"))
        return found

    def window(self, title):
        """The first window whose title begins with that, or None."""
        return next((window for window in self.windows() if window.title.startswith(title)), None)

    def end(self):
        self._session.end("sway")

    def close(self):
        self.end()
        shutil.rmtree(self._folder, ignore_errors=True)
