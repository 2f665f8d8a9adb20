"""A print service of one's own: a CUPS scheduler with one printer that keeps what it is sent."""

import os
import pwd
import subprocess
from dataclasses import dataclass
from pathlib import Path

from waiting import wait_for

CUPS = Path("/usr/lib/cups")
PRINTER = "Kept"

BACKEND = """#!/bin/sh
# arguments: job, user, title, copies, options[, file]
[ $# = 0 ] && {{ echo 'direct kept "Kept" "Keeps its jobs"'; exit 0; }}
printf '%s\\n' "$3" > "{jobs}/$1.title"
cat ${{6:+"$6"}} > "{jobs}/$1.part" && mv "{jobs}/$1.part" "{jobs}/$1.pdf"
"""

FILES = """ServerRoot {folder}/etc
ServerBin {folder}/bin
DataDir /usr/share/cups
DocumentRoot {folder}/root
RequestRoot {folder}/spool
CacheDir {folder}/cache
StateDir {folder}/state
TempDir {folder}/tmp
ErrorLog {folder}/error_log
AccessLog {folder}/access_log
PageLog {folder}/page_log
User {user}
Group {group}
SystemGroup {system_group}
FileDevice Yes
"""

SCHEDULER = """Listen {socket}
Browsing No
BrowseLocalProtocols none
DefaultAuthType None
LogLevel info
WebInterface No
IdleExitTimeout 0
ErrorPolicy abort-job
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
"""


@dataclass(frozen=True)
class Job:
    title: str
    path: Path


class PrintService:
    """Starts with the session's environment, which names it from then on; ends with the session."""

    def __init__(self, session):
        self._session = session
        self._folder = session.folder / "cups"
        self._jobs = self._folder / "jobs"
        socket = self._folder / "socket"
        for name in ("bin/backend", "jobs", "spool", "cache", "state", "root", "etc", "tmp"):
            (self._folder / name).mkdir(parents=True)
        self._write_files(socket)
        session.environment["CUPS_SERVER"] = str(socket)
        session.spawn("/usr/sbin/cupsd", "-f", "-c", self._folder / "etc/cupsd.conf", "-s",
                      self._folder / "etc/cups-files.conf", log="cupsd")
        wait_for(self._is_ready, "the print service")
        self._administrate("-p", PRINTER, "-E", "-v", "kept:/", "-m", "raw")
        self._administrate("-d", PRINTER)

    def _write_files(self, socket):
        user, group, system_group = "lp", "lp", "root"
        if os.getuid() == 0:  # the jobs are then handled by a user with few rights
            self._session.folder.chmod(0o711)
            os.chown(self._jobs, pwd.getpwnam("lp").pw_uid, -1)
        else:
            user = pwd.getpwuid(os.getuid()).pw_name
            group = system_group = self._group_name(os.getgid())
        for name in ("filter", "daemon", "cgi-bin", "notifier", "monitor", "driver", "command"):
            if (CUPS / name).exists():
                (self._folder / "bin" / name).symlink_to(CUPS / name)
        backend = self._folder / "bin/backend/kept"
        backend.write_text(BACKEND.format(jobs=self._jobs), encoding="utf-8")
        backend.chmod(0o755)
        (self._folder / "etc/cups-files.conf").write_text(
            FILES.format(folder=self._folder, user=user, group=group, system_group=system_group),
            encoding="utf-8")
        (self._folder / "etc/cupsd.conf").write_text(SCHEDULER.format(socket=socket),
                                                     encoding="utf-8")

    @staticmethod
    def _group_name(identifier):
        import grp
        return grp.getgrgid(identifier).gr_name

    def _run(self, *words):
        return subprocess.run(words, env=self._session.environment, capture_output=True,
                              encoding="utf-8", check=False, timeout=20)

    def _is_ready(self):
        return "is running" in self._run("lpstat", "-r").stdout

    def _administrate(self, *options):
        done = self._run("lpadmin", *options)
        if done.returncode != 0:
            raise AssertionError(f"lpadmin {options}: {done.stderr}")

    def jobs(self):
        """What was printed so far, oldest first."""
        return [Job(path.with_suffix(".title").read_text(encoding="utf-8").rstrip("\n"), path)
                for path in sorted(self._jobs.glob("*.pdf"), key=lambda path: int(path.stem))]
