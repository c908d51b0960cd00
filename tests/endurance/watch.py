"""What the machine took for itself, and what the program keeps for itself over time."""

import os
import time

MOST_LATE = 60


def delay_of(pid):
    """Seconds that a process's first thread was ready to run without a processor."""
    try:
        with open("/proc/%d/schedstat" % pid) as file:
            return int(file.read().split()[1]) / 1e9
    except OSError:
        return 0.0


def companions():
    """The processes of this home: display server, window manager, sound server, print server."""
    mark = ("HOME=" + os.environ["HOME"]).encode()
    parents, marked = {}, set()
    for name in os.listdir("/proc"):
        if not name.isdigit():
            continue
        try:
            with open("/proc/%s/stat" % name) as file:
                parents[int(name)] = int(file.read().rsplit(")", 1)[1].split()[1])
            with open("/proc/%s/environ" % name, "rb") as file:
                if mark in file.read().split(b"\0"):
                    marked.add(int(name))
        except OSError:
            pass

    def belongs(pid):
        # A server may have emptied its environment.
        while pid in parents and pid not in marked:
            pid = parents[pid]
        return pid in marked
    return [pid for pid in parents if belongs(pid)]


class Lateness:
    """How long those that take part have waited for a processor: a bound grows by what they waited,
    and by nothing else."""

    def __init__(self, program):
        self.program = program
        self.companions = []
        self.longest_wait = 0.0
        self.longest_machine = 0.0

    def begin(self):
        self.companions = companions()

    def note_wait(self, waited, machine):
        if waited - machine > self.longest_wait:
            self.longest_wait = waited - machine
        self.longest_machine = max(self.longest_machine, machine)

    def reading(self):
        delays = self.program.delays()
        own = delays.pop(str(self.program.pid), 0.0)
        return own, delays, {pid: delay_of(pid) for pid in self.companions}

    def since(self, before):
        return self.between(before, self.reading())

    @staticmethod
    def between(before, after):
        def grown(a, b):
            return max([b[key] - a.get(key, 0.0) for key in b] + [0.0])
        return max(after[0] - before[0], grown(before[1], after[1]), grown(before[2], after[2]))


class Patience:
    """Some seconds, and those that the machine was late meanwhile: those of whoever waited longest."""

    def __init__(self, lateness, seconds):
        self.lateness, self.seconds = lateness, seconds
        self.began = time.monotonic()
        self.before = lateness.reading()

    def ends(self):
        gone = time.monotonic() - self.began
        if gone < self.seconds:
            return False
        return gone > self.seconds + min(self.lateness.since(self.before), MOST_LATE)


class Growth:
    """What the program holds at rest, compared with what it held after all was used once."""

    # By how much each may grow in a life, memory in kilobytes. Blocks are what is allocated and small; pictures are
    # all larger blocks, also those of the camera and of the encoder. Memory, which is what the process has of the
    # machine's, also grows by what the allocator keeps between blocks, and by pictures that are drawn on for the
    # first time.
    ROOM = {"descriptors": 4, "threads": 3, "timers": 3, "objects": 30, "blocks": 10 * 1024, "pictures": 64 * 1024,
            "memory": 80 * 1024}

    def __init__(self, first):
        self.first = first
        self.last = first

    def complaint(self, now):
        self.last = now
        grown = ["%s: %d became %d" % (name, self.first[name], now[name]) for name, room in self.ROOM.items()
                 if now[name] > self.first[name] + room]
        return ", ".join(grown)
