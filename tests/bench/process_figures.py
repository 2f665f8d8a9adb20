"""What /proc tells of a process."""

from dataclasses import dataclass
from pathlib import Path


def _fields(path):
    fields = {}
    for line in path.read_text().splitlines():
        name, _, value = line.partition(":")
        fields[name] = value.split()
    return fields


@dataclass(frozen=True)
class Use:
    """What a process has used since it was started."""
    threads: dict  # thread -> (voluntary context switches, nanoseconds of CPU)
    written: int  # bytes given to write(): files, pipes and sockets
    stored: int  # bytes that it made the disk take

    @property
    def wakes(self):
        return sum(wakes for wakes, _ in self.threads.values())

    @property
    def cpu(self):
        """Seconds."""
        return sum(nanoseconds for _, nanoseconds in self.threads.values()) / 1e9

    def since(self, before):
        """What was used in between, by the threads that are there now."""
        threads = {}
        for thread, (wakes, nanoseconds) in self.threads.items():
            then = before.threads.get(thread, (0, 0))
            threads[thread] = (wakes - then[0], nanoseconds - then[1])
        return Use(threads, self.written - before.written, self.stored - before.stored)


def use_of(process):
    threads = {}
    for task in Path(f"/proc/{process}/task").iterdir():
        try:
            wakes = int(_fields(task / "status")["voluntary_ctxt_switches"][0])
            threads[task.name] = (wakes, int((task / "schedstat").read_text().split()[0]))
        except (FileNotFoundError, ProcessLookupError):
            pass  # the thread has just ended
    io = _fields(Path(f"/proc/{process}/io"))
    return Use(threads, int(io["wchar"][0]), int(io["write_bytes"][0]))


@dataclass(frozen=True)
class Memory:
    shared: float  # MB: the proportional set size (PSS)
    own: float  # MB: anonymous memory (heap, stacks, what was written to)


def memory_of(process):
    rollup = _fields(Path(f"/proc/{process}/smaps_rollup"))
    return Memory(int(rollup["Pss"][0]) / 1024, int(rollup["Anonymous"][0]) / 1024)
