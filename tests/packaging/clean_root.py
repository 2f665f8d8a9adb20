#!/usr/bin/python3
"""Installs a package on a fresh Debian in a folder, uses it as a user would, and removes it.

clean_root.py PACKAGE CACHE: CACHE keeps the fresh system and the packages fetched for it, so that
a second run is quick. Exit status: 0 it works, 1 it does not, 77 it could not be tried here.
"""

import fcntl
import json
import os
import platform
import plistlib
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import urllib.request
from pathlib import Path

MIRROR = os.environ.get("TOCKWISE_DEBIAN_MIRROR", "http://deb.debian.org/debian")
NAME = "com.quillstone.Tockwise"
MIME = "application/vnd.quillstone.tockwise"
# What a desktop has and the package does not bring: a session bus, and who keeps the tables of
# types and of desktop entries when a package adds some.
DESKTOP = ["dbus-daemon", "desktop-file-utils", "hicolor-icon-theme", "libglib2.0-bin",
           "shared-mime-info"]
CANNOT_TRY = 77
STALE = 7 * 24 * 3600  # seconds after which the kept system is made anew
INSIDE = "TOCKWISE_INSIDE_NAMESPACE"


class CannotTry(Exception):
    """The machine does not let us; the text says why."""


def say(text):
    print(f"clean root: {text}", flush=True)


def run(*words, **options):
    """Runs a command that must succeed; returns its stdout."""
    options = {"capture_output": True, "encoding": "utf-8", "timeout": 600} | options
    done = subprocess.run([str(word) for word in words], check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, words))} ended with {done.returncode}:\n"
                             f"{done.stdout or ''}{done.stderr or ''}")
    return done.stdout


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def check_machine():
    if os.geteuid() != 0:
        raise CannotTry("it takes root to make a system in a folder (sudo scripts/package --check)")
    for tool in ("debootstrap", "unshare", "chroot", "Xvfb", "dpkg"):
        if not shutil.which(tool):
            raise CannotTry(f"{tool} is not installed")
    system = platform.freedesktop_os_release()
    if system.get("ID") != "debian" or "VERSION_CODENAME" not in system:
        raise CannotTry("packages made on another system than Debian do not fit a Debian")
    return system["VERSION_CODENAME"]


def enter_namespace():
    """Starts this again where its mounts and its processes end with it."""
    if os.environ.get(INSIDE):
        return
    words = ["unshare", "--mount", "--propagation", "private", "--pid", "--fork", "--kill-child"]
    probe = subprocess.run([*words, "mount", "-t", "tmpfs", "none", "/mnt"], capture_output=True,
                           encoding="utf-8", check=False)
    if probe.returncode != 0:
        raise CannotTry(f"mounting is not allowed here: {probe.stderr.strip()}")
    os.environ[INSIDE] = "1"
    os.execvp(words[0], [*words, sys.executable, "-B", *sys.argv])


class Cache:
    """A fresh system as an archive, and the packages that were fetched."""

    def __init__(self, folder, suite):
        self.folder = folder
        self.suite = suite
        self.packages = folder / "packages"
        self.packages.mkdir(exist_ok=True)
        self.archive = folder / f"{suite}.tar"
        self.lock = open(folder / "lock", "w", encoding="utf-8")
        fcntl.flock(self.lock, fcntl.LOCK_EX) # until the process ends
        for left in folder.glob("root-*"): # by one that was killed; its mounts went with it
            shutil.rmtree(left)

    def new_root(self):
        """A temporary folder for a system."""
        return tempfile.TemporaryDirectory(prefix="root-", dir=self.folder)

    def is_fresh(self):
        return self.archive.exists() and time.time() - self.archive.stat().st_mtime < STALE

    def make(self):
        """The smallest system there is, with what a desktop has, and the list of packages."""
        try:
            urllib.request.urlopen(f"{MIRROR}/dists/{self.suite}/Release", timeout=30).close()
        except OSError as error:
            raise CannotTry(f"{MIRROR} cannot be reached: {error}") from error
        say(f"making a fresh {self.suite} from {MIRROR}")
        with self.new_root() as name:
            root = Path(name)
            run("debootstrap", "--variant=minbase", f"--cache-dir={self.packages}", self.suite, root,
                MIRROR)
            # Nothing here outlives the test: no need to wait for the disk.
            (root / "etc/dpkg/dpkg.cfg.d/unsafe-io").write_text("force-unsafe-io\n")
            system = System(root, self)
            try:
                system.apt("update", "-qq")
                system.apt("install", *DESKTOP)
                run("chroot", root, "useradd", "--create-home", "tester")
            finally:
                system.unmount()
            partial = self.archive.with_suffix(".partial")
            run("tar", "--exclude=./var/cache/apt/archives/*.deb", "-C", root, "-cf", partial, ".")
            partial.rename(self.archive)


class System:
    """A system in a folder: root works in it with apt, a user with the program."""

    def __init__(self, root, cache):
        self.root = root
        self.cache = cache
        self.packages = root / "var/cache/apt/archives"
        root.chmod(0o755) # a temporary folder is closed to the system's own user
        for package in cache.packages.glob("*.deb"):
            if not (self.packages / package.name).exists(): # debootstrap leaves its own there
                os.link(package, self.packages / package.name)
        shutil.copy("/etc/resolv.conf", root / "etc/resolv.conf")
        # Last: whoever gets no system can take the folder away without reaching into /proc.
        run("mount", "-t", "proc", "proc", root / "proc")

    @classmethod
    def unpacked(cls, root, cache):
        run("tar", "-C", root, "-xf", cache.archive)
        return cls(root, cache)

    def unmount(self):
        run("umount", self.root / "proc")

    def apt(self, *words):
        environment = {"DEBIAN_FRONTEND": "noninteractive", "LANG": "C.UTF-8",
                       "PATH": "/usr/sbin:/usr/bin:/sbin:/bin"}
        proxies = {name: os.environ[name] for name in ("http_proxy", "https_proxy")
                   if name in os.environ}
        run("chroot", self.root, "apt-get", "--yes", "--no-install-recommends",
            "-o", "APT::Keep-Downloaded-Packages=true", *words, env=environment | proxies)
        for package in self.packages.glob("*.deb"):
            if not (self.cache.packages / package.name).exists():
                os.link(package, self.cache.packages / package.name)

    def words_of_user(self, *words, **variables):
        settings = {"HOME": "/home/tester", "USER": "tester", "LANG": "C.UTF-8", "TZ": "Europe/Berlin",
                    "PATH": "/usr/bin:/bin", "XDG_RUNTIME_DIR": "/home/tester/.run"} | variables
        return ["chroot", "--userspec=tester:tester", self.root, "env", "-i", "-C", "/home/tester",
                *(f"{name}={value}" for name, value in settings.items()), *words]

    def as_user(self, *words, **variables):
        return run(*self.words_of_user(*words, **variables), timeout=120)


class Display:
    """An X server outside the system, reached through its abstract socket."""

    def __enter__(self):
        number_out, number_in = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(number_in), "-screen", "0", "1024x768x24", "-nolisten", "tcp",
             "-ac"], pass_fds=[number_in], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(number_in)
        with os.fdopen(number_out, "rb") as numbers:
            ready, _, _ = select.select([numbers], [], [], 30)
            number = numbers.readline().strip() if ready else b""
        expect(number, "Xvfb did not start")
        return ":" + number.decode()

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()


def check_command_line(system, version):
    expect(system.as_user("tockwise", "--version") == f"Tockwise {version}\n",
           "it does not say its version")
    uuid = system.as_user("tockwise", "add", "Tea", "--in", "5 Days").strip()
    listed = json.loads(system.as_user("tockwise", "list", "--json"))
    expect([(row["reminderUUID"], row["reminderDescriptions"]) for row in listed] == [(uuid, "Tea")],
           f"the reminder is not listed: {listed}")


# In one session bus: the program is started by the bus, as a click on its icon starts it, and
# answers as itself; at the end nothing runs any more.
SESSION = f"""set -eu
owned() {{
  gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \\
    --method org.freedesktop.DBus.NameHasOwner {NAME}
}}
[ "$(owned)" = '(false,)' ]
gdbus call --session --timeout 60 --dest {NAME} --object-path /com/quillstone/Tockwise \\
  --method org.freedesktop.Application.Activate '{{}}' >&2
[ "$(owned)" = '(true,)' ]
tockwise alerts --json >&2
tockwise menu --json
tockwise quit --yes
"""


def check_application(system):
    with Display() as display:
        output = system.as_user("dbus-run-session", "--", "sh", "-c", SESSION, DISPLAY=display,
                                QT_QPA_PLATFORM="xcb")
    titles = [item["title"] for item in json.loads(output)]
    expect(any("Tea" in title for title in titles), f"the reminder is not in the menu: {titles}")


def check_desktop(system):
    home = system.root / "home/tester"
    system.as_user("tockwise", "save", "list.tockwise")
    shutil.copy(home / "list.tockwise", home / "list") # told by what it holds
    (home / "other").write_bytes(plistlib.dumps({"a": 1}, fmt=plistlib.FMT_BINARY))

    def type_of(name):
        told = system.as_user("gio", "info", "-a", "standard::content-type", name)
        return told.split("standard::content-type: ")[-1].strip()

    expect(type_of("list.tockwise") == MIME, f"a document is {type_of('list.tockwise')}")
    expect(type_of("list") == MIME, f"a document without suffix is {type_of('list')}")
    expect(type_of("other") != MIME, "any property list is taken for a document")
    openers = system.as_user("gio", "mime", MIME)
    expect(f"Default application for “{MIME}”: {NAME}.desktop" in openers,
           f"documents are not opened by the program: {openers}")


def check_files(system):
    """What the package lists is there, and is what it should be."""
    listed = run("chroot", system.root, "dpkg", "-L", "tockwise").split()
    for path in listed:
        expect((system.root / path[1:]).exists(), f"{path} is not there")
    entry = (system.root / f"usr/share/dbus-1/services/{NAME}.service").read_text()
    expect("Exec=/usr/bin/tockwise\n" in entry, f"the bus would start another program: {entry}")
    missing = re.findall(r".*not found.*", system.as_user("ldd", "/usr/bin/tockwise"))
    expect(not missing, f"libraries are missing: {missing}")
    known = system.as_user("/sbin/ldconfig", "-p")
    for library in ("libcanberra.so.0", "libgio-2.0.so.0"):  # loaded when they are needed
        expect(library in known, f"{library} is missing")


def check_nothing_left(system):
    """After the purge there is only what the user wrote."""
    kept = system.root / f"home/tester/.config/tockwise/{NAME}.plist"
    expect(kept.exists(), "the user's reminders are gone")
    places = [system.root / place for place in ("etc", "usr", "opt", "var/lib")]
    named = run("find", *places, "-iname", "*tockwise*", "-not", "-path", "*/var/lib/apt/*")
    expect(not named, f"files are left: {named}")
    found = subprocess.run(
        ["grep", "-rliI", "tockwise", system.root / "etc", system.root / "usr/share",
         system.root / "var/lib/dpkg"], capture_output=True, encoding="utf-8", check=False).stdout
    # dpkg keeps the state before its last change, and the name of what it once knew of.
    left = [line for line in found.splitlines()
            if not re.search(r"/var/lib/dpkg/(status-old|available)", line)]
    expect(not left, f"tables still name it: {left}")


def step(name, function, *arguments):
    start = time.monotonic()
    function(*arguments)
    say(f"{name}: {time.monotonic() - start:.1f} s")


def try_package(package, cache):
    version = run("dpkg-deb", "-f", package, "Version").strip().rsplit("-", 1)[0]
    with cache.new_root() as name:
        system = System.unpacked(Path(name), cache)
        try:
            shutil.copy(package, system.root / "tmp/tockwise.deb")
            step("installed", system.apt, "install", "/tmp/tockwise.deb")
            step("files", check_files, system)
            step("command line", check_command_line, system, version)
            step("application", check_application, system)
            step("type of documents", check_desktop, system)
            step("removed", system.apt, "purge", "tockwise")
            check_nothing_left(system)
        finally:
            system.unmount()
    say("installs, works and goes away again")


def main():
    package, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    not_run = folder / "not-run.txt"
    not_run.unlink(missing_ok=True)
    try:
        suite = check_machine()
        enter_namespace()
        cache = Cache(folder, suite)
        if not cache.is_fresh():
            step("fresh system", cache.make)
        try_package(package, cache)
    except CannotTry as reason:
        say(f"NOT RUN: {reason}")
        not_run.write_text(f"{reason}\n", encoding="utf-8") # scripts/test tells it at its end
        return CANNOT_TRY
    except AssertionError as failure:
        say(f"FAILED: {failure}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
