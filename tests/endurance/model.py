"""What the teacher expects: what every moment has to be like, and what an action changes."""

# Numbers of the program's modes, tools and states.
LIVE, FILM, PHOTOGRAPH, BOARD = range(4)
HAND, FREEHAND, LINE, ARROW, RECTANGLE, CIRCLE, TRIANGLE, ERASER, CLIP, TEXT = range(10)
MODE_NAMES = ["Live", "Film", "Photograph", "Drawing Board"]
CARD_GROUP, KEYS_GROUP = 8, 9
PANEL_GROUPS = 4
WIDTH_STEP, MOST_WIDTH = 3, 12

# Of a canvas, what only the teacher changes.
LASTING = ["tool", "penWidth", "penColor", "fill", "fillColor", "effect", "mask", "frozen", "rotation", "series",
           "board", "fontSize", "textColor", "writes", "text"]
# Of a canvas that has no source, what nobody else changes.
STANDING = ["undo", "redo", "scale"]


def canvas(state):
    return state["canvases"][state["mode"]]


def shown_popup(state):
    popup = state["popUp"]
    return popup.get("command", "?") if popup and popup["visible"] else None


def button(state, name):
    """The button of a command, if it is seen."""
    for each in state["buttons"]:
        if each["command"] == name:
            return each
    return None


class Model:
    def __init__(self, commands):
        self.commands = {row["name"]: row for row in commands}
        self.tools = {row["tool"]: row["name"] for row in commands if row["tool"] >= 0}

    # Every moment ------------------------------------------------------------------------------

    def breaches(self, state):
        """What is wrong with a moment, whatever came before."""
        found = []

        def hold(condition, text):
            if not condition:
                found.append(text)

        def checked(name, on):
            seen = button(state, name)
            if seen and seen["checkable"]:
                hold(seen["checked"] == bool(on), "%s is %schecked" % (name, "" if seen["checked"] else "not "))

        mode, shown = state["mode"], canvas(state)
        for number, name in enumerate(MODE_NAMES):
            checked(name, number == mode)
        for tool, name in self.tools.items():
            checked(name, tool == shown["tool"])
        checked("Mask", shown["mask"] != 0)
        checked("Freeze", shown["frozen"])
        checked("Record video", state["recording"])
        checked("Pause recording", state["camera"]["paused"])
        checked("Presentation", state["presentation"]["open"])
        checked("Hold the presentation", state["presentation"]["held"])
        checked("Black presentation", state["presentation"]["blank"])
        checked("Take snapshot", shown["series"])
        if mode == PHOTOGRAPH:
            checked("Slideshow", state["photographs"]["playing"])
        for each in state["buttons"]:
            if each["name"] == "Record video" and not each["command"]:
                hold(each["checked"] == state["recording"], "the red button beside the picture is wrong")
        hold(state["recording"] == state["camera"]["requested"], "recording, and the camera was not asked")
        for name, on in (("Undo", shown["undo"]), ("Redo", shown["redo"]),
                         ("Hold the presentation", state["presentation"]["open"])):
            seen = button(state, name)
            if seen:
                hold(seen["gray"] != bool(on), "%s is %sgray" % (name, "" if seen["gray"] else "not "))
        for each in state["buttons"]:
            row = self.commands.get(each["command"])
            if row and row["group"] < PANEL_GROUPS:
                hold(each["enabled"] == bool(row["modes"] >> mode & 1), each["command"] + " in this mode")
            elif row:
                hold(row["modes"] >> mode & 1, each["command"] + " is seen in this mode")
        popup = shown_popup(state)
        if popup in self.commands:
            hold(self.commands[popup]["modes"] >> mode & 1, "the pop-up of %s in this mode" % popup)
        hold(state["active"] or state["minimized"], "no window has the focus")
        focus = state["focus"]
        if focus:
            hold(focus["visible"], "the focus is on a hidden %s \"%s\"" % (focus["class"], focus["name"]))
            hold(focus["enabled"], "the focus is on a disabled %s \"%s\"" % (focus["class"], focus["name"]))
        hold(state["film"]["moving"] is False or mode == FILM, "a film moves in another mode")
        return found

    # What an action leaves alone ---------------------------------------------------------------

    def strays(self, before, after, may):
        """What changed though the action has no business with it; `may` names what it may change."""
        if "all" in may:
            return []
        found = []
        for name in ("mode", "recording", "fullScreen", "presentation"):
            if name not in may and before[name] != after[name]:
                found.append("%s: %s became %s" % (name, before[name], after[name]))
        for mode in range(4):
            names = LASTING + (STANDING if mode == BOARD else [])
            for name in names:
                if name in may and mode == before["mode"]:
                    continue
                if name == "frozen" and "recording" in may:
                    continue
                was, became = before["canvases"][mode][name], after["canvases"][mode][name]
                if was != became:
                    found.append("%s of %s: %s became %s" % (name, MODE_NAMES[mode], was, became))
        return found

    # Commands ----------------------------------------------------------------------------------

    def after(self, name, before):
        """What a command leads to: a list of (text, question to a state), and what it may change."""
        row = self.commands[name]
        was, mode = canvas(before), before["mode"]
        expected, may = [], {"undo", "redo"}

        def expect(text, question):
            expected.append((text, question))

        def closed(unless=None):
            expect("the pop-up is closed", lambda s: shown_popup(s) in (None, unless))

        def of_canvas(key, value):
            expect("%s is %s" % (key, value), lambda s: canvas(s)[key] == value)
            may.add(key)

        if row["tool"] >= 0:
            of_canvas("tool", row["tool"])
            closed(name if row["popUp"] else None)
            may |= {"writes", "text"}
            if was["writes"] and row["tool"] != TEXT:
                expect("the text is taken over", lambda s: not canvas(s)["writes"])
        elif name == "Fill background":
            closed(name)
        elif name == "Effect":
            # Only holding it does something.
            pass
        elif name == "Mask":
            closed(name)
            may.add("mask")
            expect("the mask is switched", lambda s: (canvas(s)["mask"] != 0) != (was["mask"] != 0))
        elif name in ("Zoom in", "Zoom out"):
            closed()
            may.add("scale")
            sign = 1 if name == "Zoom in" else -1
            expect("it is zoomed that way", lambda s: mode == LIVE or
                   sign * canvas(s)["scale"] >= sign * was["scale"] - 1e-6)
        elif name == "Reset zoom":
            closed()
            may.add("scale")
            expect("the zoom is as at first", lambda s: canvas(s)["width"] <= 0 or
                   abs(canvas(s)["scale"] - canvas(s)["minimumScale"]) < 1e-6)
        elif name == "Rotate":
            may |= {"scale"}
            of_canvas("rotation", (was["rotation"] + 1) % 4)
            closed()
        elif name == "Freeze":
            of_canvas("frozen", not was["frozen"])
            closed()
        elif name == "Record video":
            may |= {"recording", "frozen"}
            closed()
            if before["recording"]:
                expect("the recording has ended", lambda s: not s["recording"])
            else:
                expect("it records or says why not", lambda s: s["recording"] or s["dialog"])
        elif name == "Pause recording":
            if before["recording"]:
                expect("the recording pauses or goes on", lambda s: not s["recording"] or
                       s["camera"]["paused"] != before["camera"]["paused"])
        elif name == "Take snapshot":
            may.add("series")
            closed()
            series = before["settings"]["continuous"] and not was["series"]
            expect("a series begins or ends", lambda s: canvas(s)["series"] == series)
        elif name in ("Settings", "About", "More"):
            expect("the pop-up is open", lambda s: shown_popup(s) == name)
        elif name == "All keys":
            expect("the keys are listed", lambda s: shown_popup(s) == "More")
        elif name == "Print":
            closed()
            expect("there is a dialog", lambda s: s["dialog"])
        elif row["group"] == 4:
            number = MODE_NAMES.index(name)
            may.add("mode")
            expect("the mode is " + name, lambda s: s["mode"] == number)
            if number != mode:
                closed()
        elif name == "Open film" or name == "Open folder of photographs":
            expect("there is a dialog", lambda s: s["dialog"])
        elif name == "Pause" or name == "Stop":
            closed()
            expect("the film rests", lambda s: name == "Stop" or not s["film"]["moving"])
        elif name in ("Volume", "Thumbnails", "Slideshow interval"):
            closed()
            on = not (button(before, name) or {"checked": False})["checked"]
            expect("its button is switched", lambda s: (button(s, name) or {"checked": None})["checked"] == on)
            expect("its slider follows", lambda s: on == any(
                field["name"] == name and field["window"] == "MainWindow" for field in s["fields"]))
        elif name in ("Previous photograph", "Next photograph"):
            closed()
            count, place = before["photographs"]["count"], before["photographs"]["current"]
            steps = 1 if name == "Next photograph" else -1
            expect("it is the photograph beside", lambda s: not count or before["photographs"]["playing"] or
                   s["photographs"]["count"] != count or
                   s["photographs"]["current"] in (min(max(place + steps, 0), count - 1), (place + steps) % count))
            expect("the slideshow rests", lambda s: not s["photographs"]["playing"])
        elif name == "Slideshow":
            expect("the slideshow runs or rests", lambda s:
                   s["photographs"]["playing"] != before["photographs"]["playing"])
        elif name == "Erase all":
            closed()
            may |= {"writes", "text"}
        elif name in ("Undo", "Redo"):
            may |= {"text", "writes"}
            back = "redo" if name == "Undo" else "undo"
            if was[name.lower()] and not was["writes"]:
                expect("it can be taken back", lambda s: canvas(s)[back])
        elif name == "Presentation":
            may.add("presentation")
            expect("the class sees it or not", lambda s: s["presentation"]["open"] != before["presentation"]["open"])
        elif name in ("Hold the presentation", "Black presentation"):
            may.add("presentation")
            part = "held" if name.startswith("Hold") else "blank"
            if before["presentation"]["open"]:
                expect("it is " + part + " or no longer", lambda s:
                       s["presentation"][part] != before["presentation"][part])
        elif name == "Side panel":
            open_now = button(before, "Line") is not None
            expect("the panel is there or not", lambda s: (button(s, "Line") is not None) != open_now)
        elif name == "Full screen":
            may.add("fullScreen")
            expect("it fills the screen or not", lambda s: s["fullScreen"] != before["fullScreen"])
        elif name == "Close the pop-up or leave the full screen":
            may |= {"fullScreen", "presentation"}
            if shown_popup(before):
                closed()
            elif before["fullScreen"]:
                expect("the full screen is left", lambda s: not s["fullScreen"])
            elif before["presentation"]["open"]:
                expect("the presentation is closed", lambda s: not s["presentation"]["open"])
        elif name == "Next mask":
            may.add("mask")
            expect("another mask", lambda s: canvas(s)["mask"] != was["mask"])
        elif name == "Next effect":
            of_canvas("effect", (was["effect"] + 1) % 4)
        elif name.endswith(" pen") and row["group"] == KEYS_GROUP:
            if name in ("Thinner pen", "Thicker pen"):
                step = WIDTH_STEP if name == "Thicker pen" else -WIDTH_STEP
                of_canvas("penWidth", min(max(was["penWidth"] + step, WIDTH_STEP), MOST_WIDTH))
            else:
                colours = {"Black pen": "#000000", "Red pen": "#ff0000", "Yellow pen": "#ffff00", "Blue pen": "#0000ff"}
                of_canvas("penColor", colours[name])
        else:
            closed()
        return expected, may

    # Keys --------------------------------------------------------------------------------------

    @staticmethod
    def key_is_taken(state, key):
        """Whether what has the focus needs the key itself; None when that cannot be told."""
        focus = state["focus"]
        if state["active"] not in ("MainWindow",) and not state["active"].endswith("ToolWindow"):
            return None
        if not focus:
            return None if state["active"] != "MainWindow" else False
        in_popup = focus["window"] != "MainWindow"
        arrow = key in ("Left", "Right", "Up", "Down")
        kind = focus["kind"]
        if kind == "text":
            return True
        if kind == "area":
            return arrow or key in ("PgUp", "PgDown")
        if key in ("PgUp", "PgDown"):
            return False
        if kind == "field":
            return True
        if kind == "slider":
            return arrow
        if kind == "button":
            return key == "Space" or (in_popup and arrow)
        if in_popup and key == "Esc":
            return None
        return False
