"""What every action needs: to look at the program, to wait for it, and to find what to point at."""

import time

import model
from model import LIVE, canvas, shown_popup
from watch import Lateness, Patience

# Seconds, on a machine that is not late.
ANSWER = 0.3
EFFECT = 5.0
PICTURE = 4.0
RETURN = 12.0
# So long the program waits for a camera that does not answer.
UNANSWERED = 5.0


class Mismatch(Exception):
    """The program shows something else than it should."""


class Interrupted(Exception):
    """A dialog came that the action has not asked for, as when a recording breaks off."""


class Impossible(Exception):
    """The action has no place at this moment."""


class Watcher:
    def __init__(self, program, desk, world, tell):
        self.program, self.desk, self.world, self.tell = program, desk, world, tell
        self.model = None
        self.lateness = Lateness(program)
        self.plugged = False
        self.upset_until = 0.0
        # How many questions the camera will leave unanswered, at the most.
        self.unanswered = 0
        self.state = None
        self.notes = []

    # The program's life ------------------------------------------------------------------------

    def begin(self):
        self.program.start()
        self.lateness.begin()
        self.model = model.Model(self.program.witness.ask("commands")["commands"])
        self.program.command("plug")
        self.plugged, self.upset_until, self.unanswered = True, 0.0, 0
        self.upset()
        self.await_("the window is there", lambda s: s.get("shown") and s["active"] == "MainWindow", 20)
        self.await_camera()

    def summary(self):
        """The last moment that was looked at, without what is in order anyway."""
        state = {name: value for name, value in (self.state or {}).items() if name not in ("buttons", "fields")}
        shown = state.pop("canvases", None)
        if shown:
            state["canvas"] = shown[state["mode"]]
        return str(state)

    def return_time(self):
        return RETURN + UNANSWERED * self.unanswered

    def upset(self):
        self.upset_until = max(self.upset_until, time.monotonic() + self.return_time())

    # Looking -----------------------------------------------------------------------------------

    def look(self, picture=False):
        self.state = self.program.state(picture)
        if self.state.get("ratio", 1) != 1:
            raise Mismatch("everything is drawn at %s times its size" % self.state["ratio"])
        waited, machine = self.state.get("waited", 0) / 1000, self.state.get("machine", 0) / 1000
        if self.excused:
            return self.state
        self.lateness.note_wait(waited, machine)
        if waited - machine > ANSWER:
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

    def await_camera(self):
        """Waits for frames of the camera, which has then been asked all that it leaves unanswered."""
        first = self.look()["camera"]["frames"]
        self.await_("the camera's pictures come", lambda s: s["camera"]["silentMs"] < 500
                    and s["camera"]["frames"] not in (0, first), self.return_time())
        self.unanswered = 0

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

    # Pointing ----------------------------------------------------------------------------------

    def stand_still(self):
        """Waits until the window is seen where it says it stands: a window manager shows, moves and resizes it later
        than the program asks for it, and what is pointed at meanwhile is missed."""
        def places(state):
            return [state["window"], canvas(state)["rect"]] + [each["rect"] for each in state["buttons"]]
        seen = []

        def stands(state):
            before = list(seen)
            seen[:] = places(state)
            return state["minimized"] or before == seen and self.desk.place_of(int(state["id"])) == state["window"]
        self.await_("the window stands still", stands)

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
        self.stand_still()
        seen = model.button(self.state, name)
        if not seen or not seen["enabled"] or seen["gray"]:
            raise Impossible(name)
        if not seen["reached"]:
            # Something lies over it, such as a pop-up.
            raise Impossible(name + " is covered")
        x, y, width, height = seen["rect"]
        return x + width // 2, y + height // 2

    def point(self, rng):
        x, y, width, height = canvas(self.state)["rect"]
        return x + rng.randrange(20, max(21, width - 20)), y + rng.randrange(20, max(21, height - 90))

    def point_beside_popup(self, rng):
        """The pop-up of a tool that is chosen once more stays open."""
        while True:
            x, y = self.point(rng)
            if not shown_popup(self.state):
                return x, y
            left, top, width, height = self.state["popUp"]["rect"]
            if not (left <= x < left + width and top <= y < top + height):
                return x, y

    def middle(self):
        x, y, width, height = canvas(self.state)["rect"]
        return x + width // 2, y + height // 2

    def note(self, text):
        self.notes.append(text)

    def finish(self, expected, before, may):
        self.await_all(expected, before, may)

    def settle(self, name, before):
        expected, may = self.model.after(name, before)
        self.finish(expected, before, may)
