"""What takes a teacher several steps, each of which has to succeed: other settings, a recording, a series of
snapshots, a film, a slideshow, a pop-up in which several things are chosen, and a world in which several things fail."""

import os
import time

import model
from desk import LEFT, RIGHT
from model import BOARD, FILM, LIVE, PHOTOGRAPH, canvas, shown_popup
from watch import Patience
from watcher import EFFECT, Impossible, Interrupted, Mismatch

SIZES = [[1024, 768], [1280, 720], [1920, 1080]]
CONTINUOUS = 1


class Tasks:
    def enter(self, mode):
        if self.state["mode"] != mode:
            self.press_button(model.MODE_NAMES[mode])
        self.await_("the mode is " + model.MODE_NAMES[mode], lambda s: s["mode"] == mode)

    def press_button(self, name):
        self.look()
        self.desk.click(*self.target(name))

    def moves(self):
        """Whether the picture of the camera is there, and nothing is about to hold it up."""
        return self.plugged and time.monotonic() > self.upset_until

    def have_panel(self):
        if not model.button(self.look(), "Line"):
            self.press_button("Side panel")
            self.await_("the panel is there", lambda s: model.button(s, "Line"))

    def have_camera(self):
        """The camera is there, and whatever was wrong with it is over."""
        if not self.plugged:
            self.program.command("plug")
            self.plugged = True
            self.upset()
        self.await_camera()
        while time.monotonic() < self.upset_until:
            if self.look()["dialog"]:
                raise Interrupted()
            time.sleep(0.1)

    def have_room(self, folder):
        self.world.empty_disk()
        self.world.rename(folder, False)

    def writable(self, kind):
        return not self.world.is_full() and os.path.isdir(self.state["settings"][kind])

    def written(self, kind):
        """The files in the folder that is set for snapshots or movies."""
        return self.world.files_in(self.state["settings"][kind])

    def await_file(self, kind, there, text):
        """Waits for a file that was not there before, and has something in it."""
        patience = Patience(self.lateness, EFFECT)
        while not [path for path in set(self.written(kind)) - there if os.path.getsize(path)]:
            if self.look()["dialog"]:
                raise Interrupted()
            if patience.ends():
                raise Mismatch(text)
            time.sleep(0.03)

    # Settings ----------------------------------------------------------------------------------

    def settings(self, rng):
        """Other sizes and another way to take snapshots, agreed to or not."""
        self.enter(LIVE)
        self.have_panel()
        before = self.look()
        chosen = {name: rng.randrange(count) for name, count in
                  (("Resolution", 3), ("Recording", 3), ("Capture", 2), ("Time", 2)) if rng.random() < 0.7}
        agrees = rng.random() < 0.6
        self.note("%s %s" % ("OK" if agrees else "Cancel", chosen))
        self.set(chosen, agrees)
        expected = []
        if not agrees:
            expected = [("the settings are as before", lambda s: s["settings"] == before["settings"])]
        same = before["settings"]["width"] == self.look()["settings"]["width"]
        self.finish(expected, before, {"undo", "redo", "scale"} if same else {"all"})

    def set(self, chosen, agrees=True):
        """Chooses entries of the boxes by their numbers."""
        self.press_button("Settings")
        self.await_("the pop-up is open", lambda s: shown_popup(s) == "Settings")
        for name, entry in sorted(chosen.items()):
            self.choose(name, entry)
        self.stand_still()
        button = next(each for each in self.state["buttons"] if each["window"] == "SettingsToolWindow"
                      and each["name"] == ("OK" if agrees else "Cancel"))
        x, y, width, height = button["rect"]
        moves = self.moves() and self.state["settings"]["width"] != SIZES[chosen.get("Resolution", 1)][0]
        self.desk.click(x + width // 2, y + height // 2)
        self.await_("the settings are closed", lambda s: shown_popup(s) is None)
        if not agrees:
            return
        if "Resolution" in chosen:
            width = SIZES[chosen["Resolution"]][0]
            self.await_("the camera is asked for that size", lambda s: s["camera"]["width"] == width
                        and s["settings"]["width"] == width)
        if "Recording" in chosen:
            self.await_("that size is recorded", lambda s: s["camera"]["recordingWidth"]
                        == SIZES[chosen["Recording"]][0])
        if "Capture" in chosen:
            self.await_("snapshots are taken that way",
                        lambda s: s["settings"]["continuous"] == (chosen["Capture"] == CONTINUOUS))
        if "Resolution" in chosen and moves and not canvas(self.state)["frozen"]:
            width = SIZES[chosen["Resolution"]][0]
            self.await_("the camera's pictures have that size", lambda s: canvas(s)["width"] == width,
                        self.return_time())
        self.upset()

    def box(self, name):
        return next((each for each in self.look()["fields"] if each["window"] == "SettingsToolWindow"
                     and each["name"] == name), None)

    def choose(self, name, entry):
        """Turns the wheel over a box until the entry is there, and answers what it asks about."""
        patience = Patience(self.lateness, EFFECT)
        while True:
            box = self.box(name)
            if not box:
                raise Mismatch("there is no box " + name)
            if box["value"] == entry:
                return
            self.stand_still()
            x, y, width, height = box["rect"]
            self.desk.wheel(x + width // 2, y + height // 2, 1 if box["value"] > entry else -1)
            self.await_("the box follows the wheel", lambda s: s["dialog"] or self.box(name)["value"] != box["value"],
                        of_dialog=True)
            if name == "Recording" and self.look()["dialog"]:
                self.agree()
            if patience.ends():
                raise Mismatch("%s does not become the entry %d" % (name, entry))

    def agree(self):
        self.await_("the question has the focus", lambda s: s["dialog"] and s["dialog"]["active"], of_dialog=True)
        self.desk.key("Alt+Y")
        self.await_("the question is answered", lambda s: not s["dialog"], of_dialog=True)

    # Pop-ups -----------------------------------------------------------------------------------

    def choices(self, rng):
        """Several things in one pop-up."""
        self.have_panel()
        name = self.named(rng, lambda row: row["holds"] or row["name"] in ("Settings", "About", "More"), True)
        self.note(name)
        self.desk.click(*self.target(name), number=RIGHT if self.model.commands[name]["holds"] else LEFT)
        self.await_("its pop-up is open", lambda s: shown_popup(s) == name)
        for _ in range(rng.randint(2, 5)):
            if shown_popup(self.look()):
                self.choice(rng)

    # Pictures and movies ----------------------------------------------------------------------

    def record(self, rng):
        self.enter(LIVE)
        self.have_panel()
        self.have_room(self.world.output_folder("movies"))
        self.have_camera()
        if not self.writable("movies") or self.look()["recording"]:
            raise Impossible("nothing to record")
        there = set(self.written("movies"))
        self.press_button("Record video")
        self.await_("it records", lambda s: s["recording"])
        self.await_file("movies", there, "nothing is recorded")
        if rng.random() < 0.5:
            self.note("paused")
            self.press_button("Pause recording")
            self.await_("the recording pauses", lambda s: s["camera"]["paused"])
            time.sleep(rng.choice([0.1, 0.6]))
            self.press_button("Pause recording")
            self.await_("the recording goes on", lambda s: not s["camera"]["paused"])
        time.sleep(rng.choice([0.2, 1.0, 2.5]))
        before = self.look()
        self.press_button("Record video")
        self.finish([("the recording has ended", lambda s: not s["recording"])], before,
                    {"recording", "frozen", "undo", "redo"})

    def series(self, rng):
        """Snapshots a second apart."""
        mode = rng.choice([LIVE, BOARD])
        self.enter(LIVE)
        self.have_panel()
        self.have_room(self.world.output_folder("snapshots"))
        if mode == LIVE:
            self.have_camera()
        self.set({"Capture": CONTINUOUS, "Time": 0})
        self.enter(mode)
        if not self.writable("snapshots"):
            raise Impossible("no room")
        if canvas(self.look())["series"]:
            self.press_button("Take snapshot")
            self.await_("the series has ended", lambda s: not canvas(s)["series"])
        self.press_button("Take snapshot")
        self.await_("a series is taken", lambda s: canvas(s)["series"])
        for _ in range(2):
            self.await_file("snapshots", set(self.written("snapshots")), "the series takes no picture")
        before = self.look()
        self.press_button("Take snapshot")
        self.finish([("the series has ended", lambda s: not canvas(s)["series"])], before, {"series", "undo", "redo"})

    # The world ---------------------------------------------------------------------------------

    def trouble(self, rng):
        """Several things fail at the same time."""
        for kind in rng.sample(["plug", "camera_fault", "sound", "disk", "folder", "screen", "suspend"], 3):
            self.look()
            self.answer_dialogs(rng)
            getattr(self, kind)(rng)

    # Films and photographs --------------------------------------------------------------------

    def ask_for_file(self, name, path):
        self.press_button(name)
        self.await_("there is a dialog", lambda s: s["dialog"] and s["dialog"]["active"], of_dialog=True)
        self.open_file(path)
        self.await_("the dialog is gone", lambda s: not s["dialog"], of_dialog=True)

    def film(self, rng):
        self.enter(FILM)
        name = rng.choice(["lesson.mov", "other.avi"])
        self.note(name)
        self.ask_for_file("Open film", os.path.join(self.world.films, name))
        self.await_("the film is there", lambda s: canvas(s)["width"] == 320)
        if not self.look()["film"]["moving"]:
            self.press_button("Play")
        self.await_("the film moves", lambda s: s["film"]["moving"])
        at = self.look()["film"]["position"]
        self.await_("the film goes on", lambda s: s["film"]["position"] != at)
        ends = rng.choice(["Pause", "Stop"])
        self.note(ends)
        before = self.look()
        self.press_button(ends)
        self.finish([("the film rests", lambda s: not s["film"]["moving"])], before, {"undo", "redo", "scale"})

    def slideshow(self, rng):
        self.enter(PHOTOGRAPH)
        self.world.rename(self.world.photographs, False)
        self.ask_for_file("Open folder of photographs", os.path.join(self.world.photographs, "photo1.jpg"))
        self.await_("a photograph is there", lambda s: s["photographs"]["count"] > 1 and canvas(s)["width"] > 0)
        if not self.look()["photographs"]["playing"]:
            self.press_button("Slideshow")
        self.await_("the slideshow runs", lambda s: s["photographs"]["playing"])
        for _ in range(2):
            at = self.look()["photographs"]["current"]
            self.await_("the next photograph is shown", lambda s: s["photographs"]["current"] != at,
                        EFFECT + self.interval())
        name = rng.choice(["Slideshow", "Next photograph"])
        self.note(name)
        before = self.look()
        self.press_button(name)
        self.finish([("the slideshow rests", lambda s: not s["photographs"]["playing"])], before,
                    {"undo", "redo", "scale"})

    def interval(self):
        return self.state["photographs"]["interval"] / 1000
