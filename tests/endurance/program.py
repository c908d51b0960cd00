"""The program under the teacher's hands, with its camera, its witness, its disk and its sound."""

import json
import os
import signal
import socket
import subprocess
import time

from watch import companions


class Hung(Exception):
    """The program did not answer at all."""


class Ended(Exception):
    """The program is gone, though nobody told it to end."""


class Witness:
    """Asks the program how its window stands."""

    def __init__(self, path):
        self.path = path
        self.link = None
        self.rest = b""

    def connect(self, alive, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            link = socket.socket(socket.AF_UNIX)
            try:
                link.connect(self.path)
                self.link, self.rest = link, b""
                return
            except OSError:
                link.close()
                if not alive():
                    raise Ended("while it started")
                time.sleep(0.05)
        raise Hung("no window %d s after the start" % seconds)

    def ask(self, what, seconds=60):
        try:
            self.link.settimeout(seconds)
            self.link.sendall(what.encode() + b"\n")
            while b"\n" not in self.rest:
                piece = self.link.recv(1 << 16)
                if not piece:
                    raise Ended("no answer to " + what)
                self.rest += piece
        except socket.timeout:
            raise Hung("no answer for %d s" % seconds)
        except (BrokenPipeError, ConnectionResetError):
            raise Ended("no answer to " + what)
        line, self.rest = self.rest.split(b"\n", 1)
        return json.loads(line)

    def close(self):
        if self.link:
            self.link.close()
        self.link = None


class Program:
    """Started anew for each of its lives; the folders and the settings stay."""

    def __init__(self, binaries, home, log):
        self.binaries = binaries
        self.home = home
        self.log = log
        self.fifo_path = os.path.join(home, "camera-commands")
        self.witness = Witness(os.path.join(home, "run", "witness"))
        self.runner = None
        self.fifo = None
        self.pid = 0
        self.last_delays = {}

    def start(self):
        if os.path.exists(self.fifo_path):
            os.remove(self.fifo_path)
        environment = dict(os.environ, WITNESS_SOCKET=self.witness.path,
                           WITNESS_COMPANIONS=",".join(map(str, companions())))
        command = [os.path.join(self.binaries, "virtualcamera-run"), "--die-with-parent",
                   "--commands", self.fifo_path, "--serial", "ENDURANCE", "--",
                   os.path.join(self.binaries, "watched-camera")]
        self.runner = subprocess.Popen(command, env=environment, stdout=self.log, stderr=self.log)
        self.witness.connect(lambda: self.runner.poll() is None, 60)
        self.fifo = open(self.fifo_path, "w", buffering=1)
        self.pid = self._find()

    def _find(self):
        """The program's own process, below its runner."""
        pids = [self.runner.pid]
        while pids:
            pid = pids.pop()
            with open("/proc/%d/comm" % pid) as file:
                if file.read().strip() == "watched-camera":
                    return pid
            with open("/proc/%d/task/%d/children" % (pid, pid)) as file:
                pids += [int(child) for child in file.read().split()]
        raise Ended("no process")

    def state(self, picture=False):
        return self.witness.ask("picture" if picture else "state")

    def command(self, text):
        self.fifo.write(text + "\n")

    def stopped(self, seconds):
        os.kill(self.pid, signal.SIGSTOP)
        time.sleep(seconds)
        os.kill(self.pid, signal.SIGCONT)

    def end(self, number=signal.SIGTERM):
        """Returns the exit code and for how many seconds the end took; a program that has not ended
        after a minute is killed."""
        began = time.monotonic()
        try:
            os.kill(self.pid, number)
        except ProcessLookupError:
            pass
        return self.wait(began)

    def wait(self, began):
        try:
            while os.path.exists("/proc/%d" % self.pid) and self.runner.poll() is None:
                time.sleep(0.01)
                self.delays()
                if time.monotonic() - began > 60:
                    raise Hung("it does not end")
            took = time.monotonic() - began
            code = self.runner.wait(timeout=60)
        except (Hung, subprocess.TimeoutExpired):
            self.kill()
            raise Hung("it does not end")
        self._forget()
        return code, took

    def kill(self):
        if self.runner and self.runner.poll() is None:
            try:
                os.kill(self.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            try:
                self.runner.wait(timeout=10)
            except subprocess.TimeoutExpired:
                self.runner.kill()
                self.runner.wait()
        self._forget()

    def _forget(self):
        self.witness.close()
        if self.fifo:
            try:
                self.fifo.close()
            except BrokenPipeError:
                pass
            self.fifo = None

    def use(self):
        """What the process holds: descriptors, threads, kilobytes of memory."""
        base = "/proc/%d/" % self.pid
        with open(base + "status") as file:
            fields = dict(line.split(":", 1) for line in file)
        return {"descriptors": len(os.listdir(base + "fd")), "threads": int(fields["Threads"]),
                "memory": int(fields["RssAnon"].split()[0])}

    def writes_below(self, folder):
        """Whether it has a file open there."""
        base = "/proc/%d/fd/" % self.pid
        try:
            return any(os.readlink(base + number).startswith(folder + "/") for number in os.listdir(base))
        except OSError:
            return False

    def delays(self):
        """By thread, seconds ready to run without a processor; of a process that has ended, what was
        read last."""
        found = {}
        base = "/proc/%d/task/" % self.pid
        try:
            for thread in os.listdir(base):
                with open(base + thread + "/schedstat") as file:
                    found[thread] = int(file.read().split()[1]) / 1e9
        except (OSError, IndexError):
            pass
        if found:
            self.last_delays = found
        return dict(self.last_delays)
