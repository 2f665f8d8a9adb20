"""A desktop session of its own for one test: home, buses, display, window manager, tray, sound.

Everything that it starts dies with it, also when the test is killed. The program under test is
the one that the environment variable TOCKWISE names.
"""

import array
import ctypes
import json
import os
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
from pathlib import Path

from bus import Bus, write_configuration
from waiting import wait_for

HERE = Path(__file__).resolve().parent
PROGRAM = os.environ.get("TOCKWISE", str(HERE.parents[1] / "build/release/bin/tockwise"))
NAME = "com.quillstone.Tockwise"
PATH = "/com/quillstone/Tockwise"
INTERFACE = "com.quillstone.Tockwise1"

TRAY_SELECTION = "_NET_SYSTEM_TRAY_S0"
TINT2 = """panel_items = S
panel_position = bottom center horizontal
panel_size = 100% 32
rounded = 0
border_width = 0
background_color = #333333 100
panel_background_id = 1
systray_icon_size = 24
"""
PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None)


def _die_with_parent():
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def _accepts(path):
    """Whether somebody listens on the socket."""
    with socket.socket(socket.AF_UNIX) as probe:
        return probe.connect_ex(str(path)) == 0


class Session:
    """display: an X server with a window manager. tray: "xembed", "status-notifier" or None.
    bus: a session bus. logind: a system bus with a logind. sound: a sound server."""

    def __init__(self, *, display=True, tray=None, bus=True, logind=False, sound=False):
        self.folder = Path(tempfile.mkdtemp(prefix="tockwise-", dir="/tmp"))
        self.logs = self.folder / "logs"
        self.home = self.folder / "home"
        self.desktop = None
        self.bus = None
        self.system_bus = None
        self.application = None
        self._processes = {}  # process -> name of its log
        self._make_environment()
        try:
            if bus:
                self.bus = self._start_bus("session", "DBUS_SESSION_BUS_ADDRESS")
            if logind:
                self.system_bus = self._start_bus("system", "DBUS_SYSTEM_BUS_ADDRESS")
                self._start_logind()
            if display:
                self._start_display()
            if sound:
                self._start_sound()
            if tray:
                self.start_tray(tray)
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _make_environment(self):
        runtime = self.folder / "run"
        for folder in (self.logs, self.home, runtime):
            folder.mkdir(mode=0o700)
        kept = ("PATH", "TZ", "ASAN_OPTIONS", "UBSAN_OPTIONS", "QT_LOGGING_RULES")
        self.environment = {key: os.environ[key] for key in kept if key in os.environ}
        self.environment |= {
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "LANG": "C.UTF-8",
            "NO_AT_BRIDGE": "1",
            "PYTHONDONTWRITEBYTECODE": "1",
            "PULSE_SERVER": f"unix:{runtime}/no-sound",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={runtime}/no-session-bus",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={runtime}/no-system-bus",
        }

    # Where the program keeps its files.
    @property
    def store(self):
        return self.home / ".config/tockwise/com.quillstone.Tockwise.plist"

    @property
    def backups(self):
        return self.home / ".local/state/tockwise/backups"

    def spawn(self, *words, log=None, environment=None, **options):
        """Starts a process that ends with the session; its output goes to logs/LOG.log."""
        name = log or Path(words[0]).name
        with open(self.logs / f"{name}.log", "ab") as output:
            process = subprocess.Popen(
                [str(word) for word in words], env=environment or self.environment,
                stdout=output, stderr=subprocess.STDOUT, preexec_fn=_die_with_parent,
                **{"stdin": subprocess.DEVNULL} | options)
        self._processes[process] = name
        return process

    def end(self, name):
        """Ends the process whose log has that name."""
        for process, log in list(self._processes.items()):
            if log == name and process.poll() is None:
                process.terminate()
                process.wait()

    def log(self, name="tockwise"):
        path = self.logs / f"{name}.log"
        return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""

    def _start_bus(self, kind, variable):
        configuration, address = write_configuration(self.folder, kind)
        self.spawn("dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
                   log=f"{kind}-bus")
        wait_for(lambda: _accepts(self.folder / f"{kind}-bus"), f"the {kind} bus")
        self.environment[variable] = address
        return Bus(address)

    def _start_logind(self):
        self.spawn("/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind",
                   log="logind")
        wait_for(lambda: self.system_bus.owner("org.freedesktop.login1"), "logind")

    def _start_display(self):
        from desktop import Desktop
        number_out, number_in = os.pipe()
        self.spawn("Xvfb", "-displayfd", number_in, "-screen", "0", "1280x800x24", "-nolisten",
                   "tcp", "-noreset", pass_fds=[number_in])
        os.close(number_in)
        with os.fdopen(number_out, "rb", buffering=0) as numbers:
            text = b""
            while not text.endswith(b"\n"):
                ready, _, _ = select.select([numbers], [], [], 20)
                piece = numbers.read(16) if ready else b""
                if not piece:
                    raise AssertionError("Xvfb did not start: " + self.log("Xvfb"))
                text += piece
        self.environment["DISPLAY"] = ":" + text.decode().strip()
        self.environment["QT_QPA_PLATFORM"] = "xcb"
        self.desktop = Desktop(self.environment["DISPLAY"])
        self.spawn("openbox", "--sm-disable")
        wait_for(self.desktop.has_window_manager, "the window manager")

    def start_tray(self, kind):
        if kind == "xembed":
            configuration = self.folder / "tint2rc"
            configuration.write_text(TINT2, encoding="utf-8")
            process = self.spawn("tint2", "-c", configuration)
            wait_for(lambda: self.desktop.selection_owner(TRAY_SELECTION), "the tray")
        else:
            process = self.spawn("/usr/bin/python3", HERE / "status_notifier_host.py",
                                 log="status_notifier_host")
            wait_for(lambda: self.bus.owner("org.kde.StatusNotifierWatcher"), "the tray")
        return process

    def _start_sound(self):
        path = self.folder / "run/sound"
        self.environment["PULSE_SERVER"] = f"unix:{path}"
        self.spawn("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                   "--use-pid-file=no", "-L", "module-null-sink sink_name=speaker", "-L",
                   f"module-native-protocol-unix auth-anonymous=1 socket={path}")
        wait_for(lambda: _accepts(path), "the sound server")

    def record_sound(self):
        """Starts to record what is played, and waits until it does; see loudest_sample()."""
        recording = self.folder / "recording"
        self.spawn("parec", "--device=speaker.monitor", "--format=s16le", "--rate=44100",
                   "--channels=1", "--raw", "--latency-msec=50", recording)
        wait_for(lambda: recording.exists() and recording.stat().st_size > 0, "the recording")

    def loudest_sample(self):
        """Of what was recorded, from 0 to 32768."""
        data = (self.folder / "recording").read_bytes()
        samples = array.array("h", data[:len(data) // 2 * 2])
        return max(map(abs, samples), default=0)

    # The program under test.
    def tockwise(self, *words, seconds=30, environment=None, cwd=None):
        """Runs a command; returns its CompletedProcess with texts."""
        return subprocess.run([PROGRAM, *words], env=environment or self.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8",
                              timeout=seconds, check=False, cwd=cwd, preexec_fn=_die_with_parent)

    def json(self, *words):
        """The JSON value that the command prints; it must succeed."""
        done = self.tockwise(*words, "--json")
        if done.returncode != 0:
            raise AssertionError(f"tockwise {words}: {done.stderr}")
        return json.loads(done.stdout)

    def start_application(self):
        """Starts the application and waits until it can be asked."""
        self.application = self.spawn(PROGRAM, log="tockwise")
        wait_for(lambda: self.is_running() or self.application.poll() is not None,
                 "the application", 20)
        if not self.is_running():
            raise AssertionError("the application did not start: " + self.log())
        return self.application

    def let_the_bus_start_it(self):
        """Whoever calls the application over D-Bus from now on starts it; see quit_application()
        for its end."""
        service = f"[D-BUS Service]\nName={NAME}\nExec={PROGRAM}\n"
        (self.folder / f"session-services/{NAME}.service").write_text(service, encoding="utf-8")
        self.bus.set_environment_of_services(self.environment)

    def is_running(self):
        return bool(self.bus.owner(NAME))

    def quit_application(self):
        """Quits it, questions answered; returns its exit status."""
        done = self.tockwise("quit", "--yes")
        if done.returncode != 0:
            raise AssertionError(f"tockwise quit: {done.stderr}")
        return self.wait_for_end()

    def kill_application(self):
        """Ends it as a crash would."""
        self.application.kill()
        self.wait_for_end()

    def wait_for_end(self):
        wait_for(lambda: self.application.poll() is not None, "the application's end")
        return self.application.returncode

    def screenshot(self, path):
        if self.desktop:
            subprocess.run(["import", "-window", "root", str(path)], env=self.environment,
                           check=False, timeout=20, stderr=subprocess.DEVNULL)

    def keep(self, folder):
        """Copies the logs and the files of the home, and a screenshot, to folder."""
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.logs, folder, symlinks=True)
        shutil.copytree(self.home, Path(folder, "home"), symlinks=True,
                        ignore=shutil.ignore_patterns(".cache"), ignore_dangling_symlinks=True)
        self.screenshot(Path(folder, "screen.png"))
        print(f"logs and screenshot: {folder}", file=sys.stderr)

    def close(self):
        for connection in (self.desktop, self.bus, self.system_bus):
            if connection:
                connection.close()
        for process in reversed(list(self._processes)):
            process.terminate()
        for process in reversed(list(self._processes)):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        for folder, folders, _ in os.walk(self.folder):
            for name in folders:  # what a test made unreadable
                os.chmod(os.path.join(folder, name), 0o700)
        shutil.rmtree(self.folder, ignore_errors=True)
