"""What happens around the program: its window's place, its camera, sound, disk, folders and screens."""

import os
import time

from watcher import Impossible
from world import CAMERA_FAULTS


class Surroundings:
    def resize(self, rng):
        before = self.state
        if before["fullScreen"] or before["maximized"]:
            raise Impossible("full screen")
        width, height = rng.randint(700, 1270), rng.randint(700, 1000)
        self.note("%d x %d" % (width, height))
        self.desk.place(int(before["id"]), rng.randint(0, 20), rng.randint(20, 30), width, height)
        self.finish([], before, {"undo", "redo", "scale"})

    def iconify(self, rng):
        before = self.state
        self.desk.iconify(int(before["id"]))
        time.sleep(rng.choice([0.2, 1.0]))
        self.desk.activate(int(before["id"]))
        self.await_("the window is back", lambda s: s["dialog"] or not s["minimized"] and s["active"] != "")
        self.finish([], before, {"undo", "redo"})

    def plug(self, rng):
        before = self.state
        text = rng.choice(["unplug", "unplug", "unplug dirty"]) if self.plugged else "plug"
        self.note(text)
        self.program.command(text)
        self.plugged = not self.plugged
        self.upset()
        if self.plugged and rng.random() < 0.5:
            self.await_camera()
        self.finish([], before, {"undo", "redo", "recording"})

    def camera_fault(self, rng):
        self.damage(rng.choice(sorted(CAMERA_FAULTS)))

    def hang(self, _):
        """As questions to the camera come right after it, it is the window's own that are not answered."""
        self.damage("hangControls")

    def damage(self, name):
        before = self.state
        self.note(name)
        self.program.command("fault %s %d" % (name, CAMERA_FAULTS[name]))
        if name == "hangControls":
            self.unanswered = CAMERA_FAULTS[name]
        self.upset()
        self.finish([], before, {"undo", "redo", "recording"})

    def silence(self, rng):
        before = self.state
        self.note("the camera sends nothing for a while")
        self.program.command("fault silent 1")
        time.sleep(rng.choice([0.5, 2, 4]))
        self.program.command("fault silent 0")
        self.upset()
        self.finish([], before, {"undo", "redo", "recording"})

    def sound(self, rng):
        before = self.state
        kind = rng.choice(["gone", "late", "stopped"])
        self.note("the sound server is " + kind)
        if kind == "stopped":
            self.world.freeze_sound(True)
            time.sleep(rng.choice([0.5, 3]))
            self.world.freeze_sound(False)
        elif self.world.server.poll() is None:
            self.world.stop_sound()
        else:
            self.world.start_sound()
        self.finish([], before, {"undo", "redo", "recording"})

    def disk(self, rng):
        before = self.state
        if self.world.is_full():
            self.note("the disk has room")
            self.world.empty_disk()
        else:
            self.note("the disk is full")
            self.world.fill_disk()
        self.finish([], before, {"undo", "redo", "recording", "series"})

    def folder(self, rng):
        before = self.state
        folder = rng.choice([self.world.photographs, self.world.output_folder("snapshots"),
                             self.world.output_folder("movies")])
        away = os.path.isdir(folder)
        self.note("%s is %s" % (os.path.basename(folder), "renamed" if away else "back"))
        self.world.rename(folder, away)
        self.finish([], before, {"undo", "redo", "recording", "series"})

    def screen(self, rng):
        before = self.state
        if self.desk.plugged:
            self.note("pulled")
            self.desk.pull_screen(self.desk.plugged[-1])
        else:
            self.note("plugged")
            self.desk.plug_screen("DUMMY1", "1024x768")
        self.finish([], before, {"undo", "redo", "presentation", "scale"})

    def suspend(self, rng):
        before = self.state
        seconds = rng.choice([1, 5])
        self.note("for %d s" % seconds)
        self.program.stopped(seconds)
        self.upset()
        self.excused = True
        try:
            self.await_("it answers", lambda s: True)
        finally:
            self.excused = False
        self.finish([], before, {"undo", "redo", "recording"})
