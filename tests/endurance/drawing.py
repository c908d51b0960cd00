"""What is done to the picture: strokes, texts, zoom, and a snapshot of it."""

import os
import string
import time

import model
from model import BOARD, LIVE, TEXT, canvas, shown_popup
from watch import Patience
from watcher import EFFECT, Impossible, Interrupted, Mismatch


class Drawing:
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

    def write(self, rng):
        """Begins a text, or types into the one that is open."""
        before = self.state
        if not canvas(before)["writes"]:
            self.desk.click(*self.target("Text"))
            self.await_("the text tool is chosen", lambda s: canvas(s)["tool"] == TEXT)
            self.desk.click(*self.point_beside_popup(rng))
            self.await_("a text is open", lambda s: canvas(s)["writes"])
        elif shown_popup(before):
            raise Impossible("a pop-up is open")
        text = "".join(rng.choice(string.ascii_letters + "    .,") for _ in range(rng.randint(1, 8)))
        open_text = canvas(self.look())
        first, after = open_text["marked"]
        # What is marked, as by a drag, is typed over.
        expected = open_text["text"][:first] + text + open_text["text"][after:]
        self.note(text)
        self.desk.type(text)
        self.await_("what was typed is there: " + expected, lambda s: canvas(s)["text"] == expected)
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

    def snapshot(self, rng):
        """A single picture, which has to be there."""
        before = self.state
        if not self.writable("snapshots"):
            raise Impossible("no room")
        there = set(self.written("snapshots"))
        shown = canvas(before)
        button = model.button(before, "Take snapshot")
        moves = before["mode"] != LIVE or self.plugged and time.monotonic() > self.upset_until
        if not button or button["checkable"] or before["settings"]["continuous"] or shown["width"] <= 0 or not moves:
            raise Impossible("a series")
        began = time.time()
        self.desk.click(*self.target("Take snapshot"))
        patience = Patience(self.lateness, EFFECT)
        while not any(path not in there or os.path.getmtime(path) >= began for path in self.written("snapshots")):
            if self.look()["dialog"]:
                raise Interrupted()
            if patience.ends():
                raise Mismatch("there is no snapshot")
            time.sleep(0.03)
