"""Buttons, keys, pop-ups and sliders."""

import model
from model import canvas, shown_popup
from watcher import Impossible

HOLD = 0.75


class Commands:
    def click(self, rng):
        name = self.named(rng, lambda row: row["group"] != model.KEYS_GROUP, True)
        self.click_on(name, rng)

    def click_on(self, name, rng):
        self.note(name)
        before = self.state
        self.desk.click(*self.target(name), held=rng.choice([0, 0, 0.1]))
        self.settle(name, before)

    def errand(self, rng):
        """Several things in a row that one mode alone has, at times in trouble: what one of them begins, another one
        has to take up or to end."""
        mode = rng.choice([model.LIVE, model.FILM, model.PHOTOGRAPH])
        if self.state["mode"] != mode:
            self.click_on(model.MODE_NAMES[mode], rng)
        trouble = rng.choice([None, None, None, self.disk, self.hang])
        if trouble:
            trouble(rng)
        names = [name for name, row in self.model.commands.items()
                 if row["modes"] == 1 << mode and row["group"] != model.KEYS_GROUP]
        for name in rng.choices(names + ["Take snapshot"], k=4):
            self.answer_dialogs(rng)
            self.click_on(name, rng)

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
        self.clears_the_board(name, expected, may)
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
        may = {"undo", "redo", "writes", "text", "tool"}
        self.clears_the_board(name, expected, may)
        self.finish(expected, before, may)

    @staticmethod
    def clears_the_board(name, expected, may):
        """The pop-up of the board's colour begins with a white board."""
        if name == "Fill background":
            expected.append(("the board is white", lambda s: canvas(s)["board"] == "#ffffff"))
            may.add("board")

    def choice(self, rng):
        """Something in the open pop-up."""
        self.stand_still()
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
