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
    wakes: int  # voluntary context switches of all threads
    cpu: float  # seconds
    written: int  # bytes given to write(): files, pipes and sockets
    stored: int  # bytes that it made the disk take

    def since(self, before):
        return Use(self.wakes - before.wakes, self.cpu - before.cpu,
                   self.written - before.written, self.stored - before.stored)


def use_of(process):
    wakes = nanoseconds = 0
    for task in Path(f"/proc/{process}/task").iterdir():
        wakes += int(_fields(task / "status")["voluntary_ctxt_switches"][0])
        nanoseconds += int((task / "schedstat").read_text().split()[0])
    io = _fields(Path(f"/proc/{process}/io"))
    return Use(wakes, nanoseconds / 1e9, int(io["wchar"][0]), int(io["write_bytes"][0]))


@dataclass(frozen=True)
class Memory:
    shared: float  # MB: the proportional set size (PSS)
    own: float  # MB: anonymous memory (heap, stacks, what was written to)


def memory_of(process):
    rollup = _fields(Path(f"/proc/{process}/smaps_rollup"))
    return Memory(int(rollup["Pss"][0]) / 1024, int(rollup["Anonymous"][0]) / 1024)
