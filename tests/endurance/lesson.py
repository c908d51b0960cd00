"""The lesson: actions drawn from a seed, done to the program, and looked at."""

import os
import random
import string
import time

import model
from model import BOARD, FILM, LIVE, PHOTOGRAPH, TEXT, canvas, shown_popup
from program import Ended, Hung
from watch import Lateness, Patience
from world import CAMERA_FAULTS

# Seconds, on a machine that is not late.
ANSWER = 0.3
EFFECT = 5.0
PICTURE = 4.0
RETURN = 12.0
HOLD = 0.75


class Mismatch(Exception):
    """The program shows something else than it should."""


class Interrupted(Exception):
    """A dialog came that the action has not asked for, as when a recording breaks off."""


class Impossible(Exception):
    """The action has no place at this moment."""


class Lesson:
    def __init__(self, program, desk, world, seed, tell):
        self.program, self.desk, self.world = program, desk, world
        self.seed, self.tell = seed, tell
        self.model = None
        self.lateness = Lateness(program)
        self.plugged = False
        self.upset_until = 0.0
        self.state = None
        self.notes = []
        # Cameras of this life that did not answer.
        self.hung = 0
        self.number = 0
        self.done = {}

    # The program's life ------------------------------------------------------------------------

    def begin(self):
        self.program.start()
        self.hung = 0
        self.lateness.begin()
        self.model = model.Model(self.program.witness.ask("commands")["commands"])
        self.program.command("plug")
        self.plugged, self.upset_until = True, 0.0
        self.upset()
        self.await_("the window is there", lambda s: s.get("shown") and s["active"] == "MainWindow", 20)
        self.await_camera(RETURN)

    def summary(self):
        """The last moment that was looked at, without what is in order anyway."""
        state = {name: value for name, value in (self.state or {}).items() if name not in ("buttons", "fields")}
        shown = state.pop("canvases", None)
        if shown:
            state["canvas"] = shown[state["mode"]]
        return str(state)

    def upset(self, seconds=RETURN):
        self.upset_until = max(self.upset_until, time.monotonic() + seconds)

    # Looking -----------------------------------------------------------------------------------

    def look(self, picture=False):
        self.state = self.program.state(picture)
        if self.state.get("ratio", 1) != 1:
            raise Mismatch("everything is drawn at %s times its size" % self.state["ratio"])
        waited, machine = self.state.get("waited", 0) / 1000, self.state.get("machine", 0) / 1000
        self.lateness.note_wait(waited, machine)
        if waited - machine > ANSWER and not self.excused:
            raise Mismatch("the window answered after %.0f ms, %.0f of them the machine's"
                           % (waited * 1000, machine * 1000))
        return self.state

    # After the process was stopped as a whole, nobody could answer.
    excused = False

    def await_(self, text, question, seconds=EFFECT, of_dialog=False):
        """Looks until the answer is yes. A machine that is late gets the time that it was late."""
        patience = Patience(self.lateness, seconds)
        while True:
            state = self.look()
            if question(state):
                return state
            if state["dialog"] and not of_dialog:
                raise Interrupted()
            if patience.ends():
                raise Mismatch("not within %.1f s: %s" % (seconds, text))
            time.sleep(0.02)

    def await_all(self, expected, before, may):
        """Waits for what an action leads to, and for a moment without a breach."""
        patience = Patience(self.lateness, EFFECT)
        while True:
            state = self.look()
            wrong = [text for text, question in expected if not question(state)]
            dialog = bool(state["dialog"])
            if wrong and dialog and not before["dialog"]:
                raise Interrupted()
            if not wrong and not dialog:
                wrong = self.model.breaches(state) + self.model.strays(before, state, may)
            if not wrong:
                return
            if patience.ends():
                raise Mismatch("; ".join(wrong))
            time.sleep(0.02)

    def await_camera(self, seconds):
        """Waits for frames of the camera."""
        first = self.look()["camera"]["frames"]
        self.await_("the camera's pictures come", lambda s: s["camera"]["silentMs"] < 500
                    and s["camera"]["frames"] not in (0, first), seconds)

    def see_picture(self):
        """The live picture moves, if it can."""
        state = self.look()
        live = state["canvases"][LIVE]
        if (state["mode"] != LIVE or not self.plugged or live["frozen"] or time.monotonic() < self.upset_until
                or state["dialog"]):
            return
        plain = live["mask"] == 0 and live["scale"] <= live["minimumScale"] + 1e-6 and live["effect"] != 3
        key = "picture" if plain else "paintings"
        first = canvas(self.look(True))[key]
        patience = Patience(self.lateness, PICTURE)
        while canvas(self.look(True))[key] == first:
            if patience.ends():
                raise Mismatch("the picture has stood still for %.0f s" % PICTURE)
            time.sleep(0.03)

    # Dialogs -----------------------------------------------------------------------------------

    def answer_dialogs(self, rng):
        for attempt in range(8):
            state = self.state = self.look()
            if not state["dialog"]:
                return
            dialog = state["dialog"]
            if not dialog["active"]:
                state = self.await_("the dialog has the focus",
                                    lambda s: not s["dialog"] or s["dialog"]["active"], of_dialog=True)
                if not state["dialog"]:
                    return
            self.note("dialog %s \"%s\" %s" % (dialog["class"], dialog["title"], dialog["text"]))
            if dialog["file"] and attempt < 2 and rng.random() < 0.85:
                self.open_file(self.choose_file(rng))
                continue
            elif attempt < 3 and rng.random() < 0.6 and not dialog["file"]:
                self.desk.key("Return")
            else:
                self.desk.key("Esc")
            patience = Patience(self.lateness, EFFECT)
            same = [dialog["class"], dialog["text"]]
            while not patience.ends():
                state = self.look()
                if not state["dialog"] or [state["dialog"]["class"], state["dialog"]["text"]] != same:
                    break
                time.sleep(0.03)
            else:
                if dialog["file"] and attempt < 6:
                    continue
                raise Mismatch("the dialog \"%s\" does not go" % dialog["title"])
        raise Mismatch("dialogs without end")

    def open_file(self, path):
        """Types the name of a file into its dialog. What completes the name may take a Return."""
        self.desk.type(path + "\n")
        patience = Patience(self.lateness, EFFECT)
        pressed = time.monotonic()
        while True:
            state = self.look()
            if not state["dialog"] or not state["dialog"]["file"]:
                return
            if patience.ends():
                raise Mismatch("the dialog for files does not go")
            if time.monotonic() - pressed > 1:
                # What completes names has taken the Return, or the text as well.
                self.desk.key("Ctrl+A")
                self.desk.type(path + "\n")
                pressed = time.monotonic()
            time.sleep(0.03)

    def choose_file(self, rng):
        mode = self.state["mode"]
        if mode == FILM:
            folder = self.world.films
            return os.path.join(folder, rng.choice(["lesson.mov", "lesson.mov", "other.avi", "broken.mp4"]))
        if mode == PHOTOGRAPH:
            return os.path.join(self.world.photographs, rng.choice(["photo0.jpg", "photo2.jpg", "damaged.png"]))
        return self.world.output_folder(rng.choice(["snapshots", "movies"]))

    # Doing -------------------------------------------------------------------------------------

    def note(self, text):
        self.notes.append(text)

    def step(self, number):
        """Draws and does the action of that number, and looks at what has come of it."""
        self.number = number
        rng = random.Random("%s:%d" % (self.seed, number))
        kinds, weights = zip(*ACTIONS)
        kind = rng.choices(kinds, weights)[0]
        self.notes = []
        began = time.monotonic()
        try:
            self.look()
            self.answer_dialogs(rng)
            self.wake(rng)
            try:
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
            self.tell("%4d %-12s %s: %s" % (number, kind, ", ".join(self.notes), fault))
            raise
        self.tell("%4d %-12s %s: %s (%.1f s)" % (number, kind, ", ".join(self.notes), verdict,
                                                 time.monotonic() - began))

    def wake(self, rng):
        """The window has the focus and stands on the screen."""
        state = self.state
        if state["minimized"] or not (state["active"] == "MainWindow" or state["active"].endswith("ToolWindow")):
            self.desk.activate(int(state["id"]))
            self.await_("the window has the focus", lambda s: s["dialog"] or s["active"] == "MainWindow")
            self.answer_dialogs(rng)
        x, y, width, height = self.state["window"]
        if not self.state["fullScreen"] and (x < 0 or y < 0 or x + width > 1280 or y + height > 1024):
            self.desk.place(int(self.state["id"]), max(10, 1270 - width) // 2, 30, min(width, 1250), min(height, 980))
            self.await_("the window is on the screen", lambda s: s["fullScreen"] or 0 <= s["window"][0] < 600)
        if self.state["list"]:
            self.desk.key("Esc")
            self.await_("the list is closed", lambda s: not s["list"])

    def settle(self, name, before):
        expected, may = self.model.after(name, before)
        self.finish(expected, before, may)

    def finish(self, expected, before, may):
        self.await_all(expected, before, may)

    # Actions -----------------------------------------------------------------------------------

    def named(self, rng, kinds, seen=False):
        """A command; of those with a button rather one that can be clicked."""
        names = [name for name, row in self.model.commands.items() if kinds(row)]
        drawn = rng.sample(names, min(4, len(names)))
        for name in drawn:
            button = model.button(self.state, name)
            if not seen or button and button["reached"] and button["enabled"] and not button["gray"]:
                return name
        return drawn[0]

    def target(self, name):
        seen = model.button(self.state, name)
        if not seen or not seen["enabled"] or seen["gray"]:
            raise Impossible(name)
        if not seen["reached"]:
            # Something lies over it, such as a pop-up.
            raise Impossible(name + " is covered")
        x, y, width, height = seen["rect"]
        return x + width // 2, y + height // 2

    def click(self, rng):
        name = self.named(rng, lambda row: row["group"] != model.KEYS_GROUP, True)
        self.note(name)
        before = self.state
        self.desk.click(*self.target(name), held=rng.choice([0, 0, 0.1]))
        self.settle(name, before)

    def key(self, rng):
        name = self.named(rng, lambda row: row["keys"])
        self.press(rng, name)

    def press(self, rng, name):
        key = rng.choice(self.model.commands[name]["keys"])
        # What no key of an American keyboard gives alone.
        key = {"Shift++": "=", "Shift+-": "-"}.get(key, key)
        held = rng.choice([0, 0, 0, 0, 0.9])
        self.note("%s, %s%s" % (name, key, " held" if held else ""))
        before = self.state
        if before["list"]:
            raise Impossible("a list is open")
        self.desk.key(key, held)
        row = self.model.commands[name]
        if canvas(before)["writes"]:
            may = {"writes", "text", "undo", "redo"}
            if shown_popup(before) or self.model.key_is_taken(before, key) is None:
                may = {"all"}
            expected = []
            if key == "Esc" and not shown_popup(before):
                expected = [("Escape takes the text over", lambda s: not canvas(s)["writes"])]
            self.finish(expected, before, may)
            return
        taken = self.model.key_is_taken(before, key)
        if taken or taken is None or shown_popup(before) in ("Settings", "More") and before["active"] != "MainWindow":
            self.finish([], before, {"all"})
        elif not row["modes"] >> before["mode"] & 1:
            self.other_meaning(key, before)
        elif held and name in ("Previous photograph", "Next photograph", "Zoom in", "Zoom out"):
            self.finish([], before, {"all"})
        else:
            self.settle(name, before)

    def other_meaning(self, key, before):
        """The key belongs to another command in this mode, or to none."""
        for name, row in self.model.commands.items():
            if key in row["keys"] and row["modes"] >> before["mode"] & 1:
                self.settle(name, before)
                return
        self.finish([], before, set())

    def hold(self, rng):
        name = self.named(rng, lambda row: row["holds"], True)
        self.note(name)
        before = self.state
        self.desk.click(*self.target(name), held=HOLD)
        row = self.model.commands[name]
        expected = [("its pop-up is open", lambda s: shown_popup(s) == name)]
        may = {"undo", "redo", "writes", "text"}
        if row["tool"] >= 0:
            expected.append(("its tool is chosen", lambda s: canvas(s)["tool"] == row["tool"]))
            may.add("tool")
        if name == "Mask":
            may.add("mask")
        self.finish(expected, before, may)
        self.look()
        if rng.random() < 0.8:
            self.choice(rng)

    def options(self, rng):
        name = self.named(rng, lambda row: row["holds"], True)
        self.note(name)
        before = self.state
        self.desk.click(*self.target(name), number=3)
        expected = [("its pop-up is open", lambda s: shown_popup(s) == name)]
        self.finish(expected, before, {"undo", "redo", "writes", "text", "tool"})

    def choice(self, rng):
        """Something in the open pop-up."""
        before = self.state
        popup = shown_popup(before)
        if not popup:
            raise Impossible("no pop-up")
        kind = before["popUp"]["class"]
        things = [each for each in before["buttons"] + before["fields"]
                  if each["window"] == kind and each["reached"] and each["enabled"]]
        if not things:
            raise Impossible("nothing to choose")
        thing = rng.choice(things)
        x, y, width, height = thing["rect"]
        self.note("%s: %s" % (popup, thing["name"] or thing.get("class")))
        if "count" in thing:
            self.field(rng, thing)
        else:
            self.desk.click(x + width // 2, y + height // 2)
        expected = []
        if thing["name"].startswith("Line Width: "):
            wide = int(thing["name"].split()[2])
            expected.append(("the pen is %d wide" % wide, lambda s: canvas(s)["penWidth"] == wide))
        self.upset()
        self.finish(expected, before, {"all"})

    def field(self, rng, thing):
        x, y, width, height = thing["rect"]
        if thing["count"]:
            self.desk.wheel(x + width // 2, y + height // 2, rng.choice([-2, -1, 1, 2]))
        else:
            self.desk.click(x + rng.randrange(max(1, width)), y + rng.randrange(max(1, height)))

    def slider(self, rng):
        """Position, volume, interval or strip in the window."""
        things = [each for each in self.state["fields"] if each["window"] == "MainWindow" and each["reached"]]
        thing_at = rng.random()
        if not things:
            raise Impossible("no slider")
        thing = things[int(thing_at * len(things))]
        self.note(thing["name"])
        before = self.state
        self.field(rng, thing)
        self.finish([], before, set())

    def point(self, rng):
        x, y, width, height = canvas(self.state)["rect"]
        return x + rng.randrange(20, max(21, width - 20)), y + rng.randrange(20, max(21, height - 90))

    def board_point(self, rng):
        """Where the picture is, whatever the canvas's shape."""
        x, y, width, height = canvas(self.state)["rect"]
        return x + width * rng.uniform(0.38, 0.62), y + height * rng.uniform(0.38, 0.62)

    def drag(self, rng):
        before = self.state
        points = [self.point(rng) for _ in range(rng.randint(2, 5))]
        self.note("tool %d" % canvas(before)["tool"])
        self.desk.drag(points)
        self.finish([], before, {"undo", "redo", "writes", "text", "scale"})

    def stroke(self, rng):
        """A stroke on the board, taken back, is as if it had not been."""
        before = self.state
        if before["mode"] != BOARD or canvas(before)["writes"] or before["presentation"]["blank"]:
            raise Impossible("not on the board")
        if canvas(before)["tool"] not in (1, 2, 3, 4, 5, 6):
            raise Impossible("no pen")
        self.desk.click(*self.middle(), number=2)
        picture = canvas(self.look(True))["picture"]
        self.desk.drag([self.board_point(rng) for _ in range(3)])
        self.await_("the stroke can be taken back", lambda s: canvas(s)["undo"] and not canvas(s)["redo"])
        self.look()
        if self.model.key_is_taken(self.state, "Z"):
            return
        self.desk.key("Ctrl+Z")
        self.await_("the stroke can be done again", lambda s: canvas(s)["redo"])
        patience = Patience(self.lateness, EFFECT)
        while canvas(self.look(True))["picture"] != picture:
            if patience.ends():
                raise Mismatch("what was taken back is still seen")
            time.sleep(0.03)
        self.finish([], before, {"undo", "redo"})

    def middle(self):
        x, y, width, height = canvas(self.state)["rect"]
        return x + width // 2, y + height // 2

    def write(self, rng):
        """Begins a text, or types into the one that is open."""
        before = self.state
        if not canvas(before)["writes"]:
            self.desk.click(*self.target("Text"))
            self.await_("the text tool is chosen", lambda s: canvas(s)["tool"] == TEXT)
            self.desk.click(*self.point(rng))
            self.await_("a text is open", lambda s: canvas(s)["writes"])
        elif shown_popup(before):
            raise Impossible("a pop-up is open")
        text = "".join(rng.choice(string.ascii_letters + "    .,") for _ in range(rng.randint(1, 8)))
        old = canvas(self.look())["text"]
        self.note(text)
        self.desk.type(text)
        self.await_("what was typed is there", lambda s: len(canvas(s)["text"]) == len(old) + len(text))
        self.finish([], before, {"tool", "writes", "text", "undo", "redo"})

    def write_and_leave(self, rng):
        """A text that is open while the mode changes is not lost."""
        if self.state["mode"] == LIVE or canvas(self.state)["writes"]:
            raise Impossible("not here")
        mode = self.state["mode"]
        blank = canvas(self.look(True))["picture"]
        self.write(rng)
        text = canvas(self.look())["text"]
        other = rng.choice([number for number in range(4) if number != mode])
        self.note("to " + model.MODE_NAMES[other])
        self.desk.click(*self.target(model.MODE_NAMES[other]))
        self.await_("the other mode is there", lambda s: s["mode"] == other)
        self.desk.click(*self.target(model.MODE_NAMES[mode]))
        self.await_("the mode is back", lambda s: s["mode"] == mode)
        shown = canvas(self.look(True))
        kept = shown["writes"] and shown["text"] == text
        # What stands on the board and has its colour is not seen.
        drawn = shown["undo"] and (mode != BOARD or shown["picture"] != blank or shown["board"] == shown["textColor"]
                                   or not text.strip())
        if not kept and (shown["writes"] or not drawn):
            raise Mismatch("the text is lost: %s" % text)

    def turn_wheel(self, rng):
        before = self.state
        x, y = self.middle()
        self.desk.wheel(x, y, rng.choice([-3, -1, 1, 2, 4]))
        self.finish([], before, {"scale", "writes", "text", "undo", "redo"})

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

    def snapshot(self, rng):
        """A single picture, which has to be there."""
        before = self.state
        if self.world.is_full() or not os.path.isdir(self.world.output_folder("snapshots")):
            raise Impossible("no room")
        there = set(self.world.files("snapshots"))
        shown = canvas(before)
        button = model.button(before, "Take snapshot")
        moves = before["mode"] != LIVE or self.plugged and time.monotonic() > self.upset_until
        if not button or button["checkable"] or shown["width"] <= 0 or not moves:
            raise Impossible("a series")
        began = time.time()
        self.desk.click(*self.target("Take snapshot"))
        patience = Patience(self.lateness, EFFECT)
        while not any(path not in there or os.path.getmtime(path) >= began for path in self.world.files("snapshots")):
            self.look()
            if patience.ends():
                raise Mismatch("there is no snapshot")
            time.sleep(0.03)

    # The world ---------------------------------------------------------------------------------

    def plug(self, rng):
        before = self.state
        text = rng.choice(["unplug", "unplug", "unplug dirty"]) if self.plugged else "plug"
        self.note(text)
        self.program.command(text)
        self.plugged = not self.plugged
        self.upset()
        if self.plugged and rng.random() < 0.5:
            self.await_camera(RETURN)
        self.finish([], before, {"undo", "redo", "recording"})

    def camera_fault(self, rng):
        before = self.state
        name = rng.choice(sorted(CAMERA_FAULTS))
        self.note(name)
        self.hung += name == "hangControls"
        self.program.command("fault %s %d" % (name, CAMERA_FAULTS[name]))
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


# The kinds of actions and how often each is drawn.
ACTIONS = [
    ("click", 30), ("key", 25), ("hold", 8), ("options", 3), ("choice", 12), ("drag", 10), ("stroke", 4),
    ("write", 5), ("write_and_leave", 3), ("turn_wheel", 2), ("slider", 4), ("resize", 2), ("iconify", 1),
    ("snapshot", 3), ("plug", 4), ("camera_fault", 4), ("silence", 1), ("sound", 2), ("disk", 2), ("folder", 2),
    ("screen", 2), ("suspend", 0.7),
]
