"""The program at rest: everything is put back, and what it holds is compared with before."""

import os
import random
import signal
import time

import model
from model import LIVE, canvas, shown_popup
from watch import Growth, Patience
from watcher import EFFECT, RETURN, Interrupted, Mismatch
from world import CAMERA_FAULTS

END = 2.0
HURRY = 0.2
SETTLED = 3.0


class Rest:
    def __init__(self, lesson):
        self.lesson = lesson
        self.growth = None
        self.summaries = []
        self.lives = 0

    def summary(self):
        return "; ".join(self.summaries) or "not reached"

    @staticmethod
    def line(use):
        return ", ".join("%s %d" % (name, use[name]) for name in sorted(use))

    def measure(self):
        """What the program holds, once that no longer falls."""
        lesson = self.lesson
        def now():
            use = lesson.program.use()
            use.update(lesson.program.witness.ask("census"))
            return use
        now()
        time.sleep(0.5)
        least = now()
        patience = Patience(lesson.lateness, SETTLED)
        while not patience.ends():
            time.sleep(0.5)
            use = now()
            least = {name: min(least[name], use[name]) for name in use}
        return least

    def click(self, name):
        lesson = self.lesson
        lesson.look()
        lesson.desk.click(*lesson.target(name))

    def dismiss(self):
        """A key is lost while the window manager hands the focus over."""
        patience = Patience(self.lesson.lateness, EFFECT)
        while shown_popup(self.lesson.look()):
            if patience.ends():
                raise Mismatch("the pop-up does not close")
            self.lesson.desk.key("Esc")
            time.sleep(0.5)

    def enter(self, mode):
        self.click(model.MODE_NAMES[mode])
        self.lesson.await_("the mode is " + model.MODE_NAMES[mode], lambda s: s["mode"] == mode)

    def persist(self, what):
        """Begins anew when a dialog comes, as when a machine is too slow for a recording."""
        for _ in range(8):
            try:
                what()
                return
            except Interrupted:
                self.lesson.answer_dialogs(random.Random(1))
        raise Mismatch("there is always another dialog")

    def come_to_rest(self):
        self.persist(self.put_back)
        self.persist(self.open_files)

    def warm_up(self):
        self.lives += 1
        # The life before may have ended in the midst of everything.
        self.come_to_rest()
        self.persist(self.use_everything)
        self.lesson.answer_dialogs(random.Random(2))
        self.growth = Growth(self.measure())

    def put_back(self):
        """Live, no pop-up, no dialog, no recording, every fault mended."""
        lesson = self.lesson
        desk = lesson.desk
        desk.let_go()
        lesson.world.mend()
        for fault in CAMERA_FAULTS:
            lesson.program.command("fault %s 0" % fault)
        rng = random.Random(1)
        while desk.plugged:
            desk.pull_screen(desk.plugged[-1])
        if not lesson.plugged:
            lesson.program.command("plug")
            lesson.plugged = True
        lesson.look()
        lesson.answer_dialogs(rng)
        lesson.wake(rng)
        for _ in range(6):
            state = lesson.look()
            if not (shown_popup(state) or canvas(state)["writes"] or state["fullScreen"]
                    or state["presentation"]["open"]):
                break
            if shown_popup(state) and state["active"] == "MainWindow":
                desk.click(*lesson.middle(), number=2)
            desk.key("Esc")
            time.sleep(0.2)
        if state["recording"]:
            desk.key("Ctrl+R") if state["mode"] == LIVE else None
        if not model.button(state, "Line"):
            desk.key("F9")
            lesson.await_("the panel is there", lambda s: model.button(s, "Line"))
        desk.place(int(state["id"]), 200, 40, 938, 768)
        lesson.await_("the window is as at first", lambda s: abs(s["window"][2] - 938) <= 2 and s["window"][0] > 150)
        if lesson.look()["mode"] != LIVE:
            self.enter(LIVE)
        if lesson.look()["recording"]:
            self.click("Record video")
            lesson.await_("the recording has ended", lambda s: not s["recording"])
        self.set_as_at_first()
        lesson.upset()
        lesson.upset_until = 0
        lesson.await_camera()
        # The pop-up that was open last stays in memory.
        self.click("About")
        lesson.await_("the pop-up is open", lambda s: shown_popup(s) == "About")
        self.dismiss()

    def set_as_at_first(self):
        lesson = self.lesson
        settings = lesson.look()["settings"]
        if settings["width"] != 1280 or settings["recordingWidth"] != 1280 or settings["continuous"]:
            lesson.set({"Resolution": 1, "Recording": 1, "Capture": 0})
        for mode, shown in enumerate(lesson.look()["canvases"]):
            if shown["series"]:
                self.enter(mode)
                self.click("Take snapshot")
                lesson.await_("the series has ended", lambda s: not canvas(s)["series"])
                self.enter(LIVE)

    def open_files(self):
        """The same film and the same photograph every time, as another one takes another amount of memory."""
        lesson = self.lesson
        for mode, name, path, size in (
                (model.FILM, "Open film", lesson.world.films + "/lesson.mov", {320, 240}),
                (model.PHOTOGRAPH, "Open folder of photographs", lesson.world.photographs + "/photo0.jpg", {800, 600})):
            self.enter(mode)
            lesson.ask_for_file(name, path)
            lesson.await_("its picture is there", lambda s: {canvas(s)["width"], canvas(s)["height"]} == size)
        self.enter(LIVE)

    def use_everything(self):
        """Uses everything once, as what is made at its first use is no growth."""
        lesson = self.lesson
        desk = lesson.desk
        self.enter(model.BOARD)
        self.enter(LIVE)
        for _ in range(2):
            self.click("Record video")
            lesson.await_("it records", lambda s: s["recording"])
            time.sleep(1)
            self.click("Record video")
            lesson.await_("it does not record", lambda s: not s["recording"])
            self.click("Take snapshot")
            for name in ("More", "Settings"):
                self.click(name)
                lesson.await_("the pop-up is open", lambda s: shown_popup(s) == name)
                self.dismiss()
            desk.key("F5")
            lesson.await_("the class sees it", lambda s: s["presentation"]["open"])
            desk.activate(int(lesson.state["id"]))
            lesson.await_("the window has the focus", lambda s: s["active"] == "MainWindow")
            desk.key("F5")
            lesson.await_("the class sees it no more", lambda s: not s["presentation"]["open"])
            lesson.program.command("unplug")
            lesson.plugged = False
            lesson.await_("the camera has gone", lambda s: s["camera"]["silentMs"] > 700)
            self.put_back()

    def compare(self):
        self.come_to_rest()
        complaint = self.growth.complaint(self.measure())
        first, last = self.growth.first, self.growth.last
        self.summaries = self.summaries[-3:]
        self.summaries.append(", ".join("%s %d to %d" % (name, first[name], last[name]) for name in sorted(first)))
        if complaint:
            raise Mismatch("at rest " + complaint)
        self.read_files()

    def read_files(self, hurried=False):
        """What was written is whole, once nothing is being written."""
        patience = Patience(self.lesson.lateness, EFFECT)
        while self.lesson.program.writes_below(self.lesson.world.disk):
            if patience.ends():
                raise Mismatch("a file is still open")
            time.sleep(0.1)
        complaints = self.lesson.world.complaints(hurried)
        if complaints:
            raise Mismatch("; ".join(complaints))

    def end(self):
        """Told to end, also while it records: in time, with the right code, and what it wrote is whole."""
        lesson = self.lesson
        self.come_to_rest()
        self.click("Record video")
        lesson.await_("it records", lambda s: s["recording"])
        movies = lesson.state["settings"]["movies"]
        patience = Patience(lesson.lateness, RETURN)
        while not any(os.path.getsize(path) for path in lesson.written("movies")):
            lesson.look()
            if patience.ends():
                raise Mismatch("nothing is written to " + movies)
            time.sleep(0.1)
        time.sleep(1)
        self.tell_to_end()

    def tell_to_end(self, hurried=False):
        lesson = self.lesson
        before = lesson.lateness.reading()
        code, took = lesson.program.end()
        if code != 128 + signal.SIGTERM:
            raise Mismatch("its exit code is %d" % code)
        late = lesson.lateness.since(before)
        if took > END + late:
            raise Mismatch("its end took %.1f s" % took)
        # It gives the movie half a second, whether it gets a processor meanwhile or not.
        self.read_files(hurried=hurried or late > HURRY)
