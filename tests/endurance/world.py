"""The world around the program: its disk, its sound, and what goes wrong with both and with the
camera, the folders and the screens."""

import errno
import os
import shutil
import signal
import subprocess

DISK = "160m"

# Faults of the emulated camera that end by themselves, and their counts.
CAMERA_FAULTS = {
    "stallControls": 12, "stallProbes": 1, "hangControls": 2, "truncateFrames": 20, "corruptFrames": 20,
    "emptyFrames": 10, "wrongSizeFrames": 10, "smallSizeFrames": 10, "dropFrames": 30, "errorBitFrames": 10,
    "endpointStalls": 3,
}


def last_atom(path):
    """The type of a movie's last atom: the index, unless there is still room for more behind it."""
    kind, offset, size = b"", 0, os.path.getsize(path)
    with open(path, "rb") as file:
        while offset + 8 <= size:
            file.seek(offset)
            header = file.read(16)
            length, kind = int.from_bytes(header[:4], "big"), header[4:8]
            if length == 1:
                length = int.from_bytes(header[8:], "big")
            if length < 8:
                break
            offset += length
    return kind


class World:
    def __init__(self, home):
        self.home = home
        self.disk = os.path.join(home, "disk")
        self.photographs = os.path.join(home, "photographs")
        self.films = os.path.join(home, "films")
        self.server = None
        # Since the files were looked at last: a movie that found no room is left as it was saved last.
        self.was_full = False
        self.sound_socket = os.path.join(home, "run", "pulse.sock")
        os.environ["PULSE_SERVER"] = "unix:" + self.sound_socket
        for folder in (self.disk, self.films):
            os.makedirs(folder)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=" + DISK, "none", self.disk], check=True)
        for folder in ("snapshots", "movies"):
            os.makedirs(os.path.join(self.disk, folder))
        self.jobs = os.path.join(home, "printer", "jobs")
        self.start_printer()
        self.make_films()
        self.make_photographs()

    # Material ----------------------------------------------------------------------------------

    def make_films(self):
        def film(name, *options):
            subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                            "testsrc=size=320x240:rate=25:duration=20", "-f", "lavfi", "-i",
                            "sine=frequency=440:duration=20", "-shortest", *options,
                            os.path.join(self.films, name)], check=True)
        film("lesson.mov", "-c:v", "mpeg4", "-c:a", "aac")
        film("other.avi", "-c:v", "mjpeg", "-c:a", "pcm_s16le", "-t", "5")
        with open(os.path.join(self.films, "broken.mp4"), "wb") as file:
            file.write(bytes(range(256)) * 40)

    def make_photographs(self):
        os.makedirs(self.photographs)
        for number, (size, colour) in enumerate([("800x600", "red"), ("640x480", "green"),
                                                 ("3000x2000", "blue"), ("200x900", "gray")]):
            subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                            "color=%s:size=%s:rate=1" % (colour, size), "-frames:v", "1",
                            os.path.join(self.photographs, "photo%d.jpg" % number)], check=True)
        with open(os.path.join(self.photographs, "damaged.png"), "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + bytes(1000))

    def settings(self):
        folder = os.path.join(self.home, ".config", "Quillmark")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "Document Camera.conf"), "w") as file:
            file.write("[General]\nsnapshotPath=%s/snapshots\nrecordPath=%s/movies\n" % (self.disk, self.disk))

    # Printer -----------------------------------------------------------------------------------

    def start_printer(self):
        folder = os.path.join(self.home, "printer")
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "mainwindow", "private-print-server")
        self.printer = subprocess.Popen([script, folder], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["CUPS_SERVER"] = os.path.join(folder, "cups.sock")

    # Sound -------------------------------------------------------------------------------------

    def start_sound(self):
        if self.server and self.server.poll() is None:
            return
        if os.path.exists(self.sound_socket):
            os.remove(self.sound_socket)
        self.server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "--disable-shm=yes", "--log-level=0",
             "-L", "module-native-protocol-unix socket=%s auth-anonymous=1" % self.sound_socket,
             "-L", "module-null-sink sink_name=room rate=44100 channels=1",
             "-L", "module-sine-source source_name=microphone rate=44100 frequency=440"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def stop_sound(self):
        if self.server:
            self.freeze_sound(False)
            self.server.kill()
            self.server.wait()

    def freeze_sound(self, frozen):
        if self.server and self.server.poll() is None:
            self.server.send_signal(signal.SIGSTOP if frozen else signal.SIGCONT)

    # Disk and folders --------------------------------------------------------------------------

    def fill_disk(self, left=64 * 1024):
        self.was_full = True
        room = os.statvfs(self.disk)
        free = room.f_bavail * room.f_frsize - left
        if free > 0:
            with open(os.path.join(self.disk, "full"), "ab") as file:
                try:
                    os.posix_fallocate(file.fileno(), file.tell(), free)
                except OSError as full:
                    # What the program has written meanwhile.
                    if full.errno != errno.ENOSPC:
                        raise

    def empty_disk(self):
        path = os.path.join(self.disk, "full")
        if os.path.exists(path):
            os.remove(path)

    def is_full(self):
        return os.path.exists(os.path.join(self.disk, "full"))

    def rename(self, folder, away):
        here, there = folder, folder + ".away"
        if not away:
            here, there = there, here
        if os.path.exists(here) and not os.path.exists(there):
            os.rename(here, there)

    def output_folder(self, kind):
        return os.path.join(self.disk, kind)

    def files(self, kind):
        return self.files_in(self.output_folder(kind))

    @staticmethod
    def files_in(folder):
        if not os.path.isdir(folder):
            return []
        return sorted(os.path.join(folder, name) for name in os.listdir(folder))

    # What was written --------------------------------------------------------------------------

    def complaints(self, hurried):
        """What is wrong with the pictures and movies that were written; they are removed. In a hurry, or on a
        full disk, a movie may be left as it was saved last, which can be played as well."""
        found = []
        hurried, self.was_full = hurried or self.was_full, self.is_full()
        for path in self.files("snapshots") + self.files("movies"):
            found += self.complaint(path)
            if path.endswith(".mov") and not hurried and last_atom(path) != b"moov":
                found.append("%s was not brought to its end" % os.path.basename(path))
            os.remove(path)
        for job in os.listdir(self.jobs):
            if not job.endswith(".part"):
                path = os.path.join(self.jobs, job)
                read = subprocess.run(["pdfinfo", path], capture_output=True, text=True)
                if read.returncode != 0:
                    found.append("the printed page %s: %s" % (job, read.stderr.strip()))
                os.remove(path)
        return found

    @staticmethod
    def complaint(path):
        name = os.path.basename(path)
        if not name.endswith((".jpg", ".mov")):
            return ["%s was left behind" % name]
        decoded = subprocess.run(["nice", "ffmpeg", "-nostdin", "-v", "error", "-i", path, "-fps_mode", "passthrough",
                                  "-enc_time_base", "-1", "-f", "null", "-"],
                                 capture_output=True, text=True)
        if decoded.returncode != 0 or decoded.stderr.strip():
            keep = os.environ.get("KEEP_FOLDER")
            if keep:
                shutil.copy(path, keep)
            return ["%s (%d bytes): %s" % (name, os.path.getsize(path), decoded.stderr.strip()[:300])]
        return []

    def mend(self):
        """Everything as at the start."""
        self.empty_disk()
        for folder in (self.photographs, self.output_folder("snapshots"), self.output_folder("movies")):
            self.rename(folder, False)
        self.freeze_sound(False)
        self.start_sound()

    def end(self):
        self.stop_sound()
        self.printer.terminate()
        self.printer.wait()
        subprocess.run(["umount", "-l", self.disk], stderr=subprocess.DEVNULL)
