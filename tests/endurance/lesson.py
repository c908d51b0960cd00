"""The lesson: actions drawn from a seed, done to the program, and looked at."""

import random
import time

from commands import Commands
from dialogs import Dialogs
from drawing import Drawing
from program import Ended, Hung
from surroundings import Surroundings
from tasks import Tasks
from watcher import Impossible, Interrupted, Mismatch, Watcher

# The kinds of actions and how often each is drawn.
ACTIONS = [
    ("click", 30), ("key", 25), ("hold", 8), ("options", 3), ("choice", 12), ("drag", 10), ("stroke", 4),
    ("write", 5), ("write_and_leave", 3), ("turn_wheel", 2), ("slider", 4), ("resize", 2), ("iconify", 1),
    ("snapshot", 3), ("plug", 4), ("camera_fault", 4), ("silence", 1), ("sound", 2), ("disk", 2), ("folder", 2),
    ("screen", 2), ("suspend", 0.7),
]


# After so many actions comes an errand, and after so many a task.
ERRANDS, TASKS = 8, 12
TASK_KINDS = [("settings", 3), ("record", 2), ("series", 1), ("film", 1.5), ("slideshow", 1.5), ("choices", 4),
              ("trouble", 3)]


def following(number):
    """The number after that of an action: errands and tasks have those between the whole ones, so that an action keeps
    its own whether there are such or not."""
    whole = int(number)
    if number == whole and whole % ERRANDS == 0:
        return whole + 0.5
    if number < whole + 0.75 and whole % TASKS == 0:
        return whole + 0.75
    return whole + 1


class Lesson(Watcher, Dialogs, Commands, Drawing, Tasks, Surroundings):
    def __init__(self, program, desk, world, seed, tell):
        super().__init__(program, desk, world, tell)
        self.seed = seed
        self.number = 0
        self.done = {}

    @staticmethod
    def kind(number, rng):
        part = number - int(number)
        if part == 0.5:
            return "errand"
        kinds, weights = zip(*(TASK_KINDS if part else ACTIONS))
        return rng.choices(kinds, weights)[0]

    def step(self, number):
        """Draws and does the action of that number, and looks at what has come of it."""
        self.number = number
        rng = random.Random("%s:%s" % (self.seed, number))
        kind = self.kind(number, rng)
        self.notes = []
        began = time.monotonic()
        try:
            self.look()
            self.answer_dialogs(rng)
            try:
                self.wake(rng)
                self.stand_still()
                getattr(self, kind)(rng)
            except Interrupted:
                self.note("interrupted")
            self.desk.let_go()
            self.answer_dialogs(rng)
            self.await_all([], self.state, {"all"})
            if number % 4 == 0:
                self.see_picture()
            self.done[kind] = self.done.get(kind, 0) + 1
            verdict = "ok"
        except Impossible as why:
            self.desk.let_go()
            verdict = "not now: %s" % why
        except (Mismatch, Ended, Hung) as fault:
            self.tell("%4s %-12s %s: %s" % (number, kind, ", ".join(self.notes), fault))
            raise
        self.tell("%4s %-12s %s: %s (%.1f s)" % (number, kind, ", ".join(self.notes), verdict,
                                                 time.monotonic() - began))

    def wake(self, rng):
        """The window has the focus and stands on the screen."""
        state = self.state
        if state["minimized"] or not (state["active"] == "MainWindow" or state["active"].endswith("ToolWindow")):
            self.desk.activate(int(state["id"]))
            self.await_("the window has the focus", lambda s: s["dialog"] or s["active"] == "MainWindow")
            self.answer_dialogs(rng)
        if self.state["covered"]:
            # The window for the class is placed by the window manager, and a teacher takes it out of the way.
            self.desk.activate(int(self.state["id"]))
            self.await_("the window lies above the one for the class", lambda s: not s["covered"])
        x, y, width, height = self.state["window"]
        if not self.state["fullScreen"] and (x < 0 or y < 0 or x + width > 1280 or y + height > 1024):
            self.desk.place(int(self.state["id"]), max(10, 1270 - width) // 2, 30, min(width, 1250), min(height, 980))
            self.await_("the window is on the screen", lambda s: s["fullScreen"] or 0 <= s["window"][0] < 600)
        if self.state["list"]:
            self.desk.key("Esc")
            self.await_("the list is closed", lambda s: not s["list"])
