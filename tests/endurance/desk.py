"""The teacher's hands: the pointer and the keyboard of an X display, driven as the display server
itself would, and its outputs."""

import ctypes
import ctypes.util
import subprocess
import time

CURRENT_TIME = 0
LEFT, MIDDLE, RIGHT, WHEEL_UP, WHEEL_DOWN = 1, 2, 3, 4, 5

# The toolkit's names of keys, where X has others.
KEYS = {
    "PgUp": "Prior", "PgDown": "Next", "Esc": "Escape", "Del": "Delete", "Space": "space",
    "-": "minus", "=": "equal", "+": "KP_Add", ".": "period", "/": "slash", ":": "colon",
    "_": "underscore", " ": "space", ",": "comma", "!": "exclam", "?": "question", "\n": "Return",
    "(": "parenleft", ")": "parenright",
}
MODIFIERS = {"Ctrl": "Control_L", "Shift": "Shift_L", "Alt": "Alt_L"}
VIEWABLE = 2
SHIFTED = set('ABCDEFGHIJKLMNOPQRSTUVWXYZ:_!?()+"')


class Attributes(ctypes.Structure):
    """The server's of a window."""
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")] + [
        ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong),
        *((name, ctypes.c_int) for name in ("kind", "bit_gravity", "gravity", "store")),
        ("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong), ("saves_under", ctypes.c_int),
        ("colours", ctypes.c_ulong), ("has_colours", ctypes.c_int), ("map_state", ctypes.c_int),
        ("all_events", ctypes.c_long), ("own_events", ctypes.c_long), ("kept_events", ctypes.c_long),
        ("overrides", ctypes.c_int), ("screen", ctypes.c_void_p)]


class Desk:
    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtest = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XStringToKeysym.restype = ctypes.c_ulong
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        if not self.display:
            raise SystemExit("no display")
        self.held_keys = []
        self.held_buttons = []
        self.plugged = []

    def sync(self):
        self.x11.XSync(self.display, 0)

    def move(self, x, y):
        self.xtest.XTestFakeMotionEvent(self.display, -1, int(x), int(y), ctypes.c_ulong(CURRENT_TIME))
        self.sync()

    def button(self, number, down):
        self.xtest.XTestFakeButtonEvent(self.display, number, int(down), ctypes.c_ulong(CURRENT_TIME))
        self.sync()
        (self.held_buttons.append if down else self.held_buttons.remove)(number)

    def click(self, x, y, number=LEFT, held=0.0):
        self.move(x, y)
        self.button(number, True)
        if held:
            time.sleep(held)
        self.button(number, False)

    def drag(self, points):
        self.move(*points[0])
        self.button(LEFT, True)
        for point in points[1:]:
            self.move(*point)
            time.sleep(0.01)
        self.button(LEFT, False)

    def wheel(self, x, y, steps):
        self.move(x, y)
        for _ in range(abs(steps)):
            number = WHEEL_UP if steps > 0 else WHEEL_DOWN
            self.button(number, True)
            self.button(number, False)

    def _key(self, name, down):
        symbol = self.x11.XStringToKeysym(name.encode())
        code = self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(symbol))
        if not code:
            raise ValueError("no key " + name)
        self.xtest.XTestFakeKeyEvent(self.display, code, int(down), ctypes.c_ulong(CURRENT_TIME))
        self.sync()
        (self.held_keys.append if down else self.held_keys.remove)(name)

    @staticmethod
    def names(key):
        """The X names of what is pressed for a key as the toolkit writes it, such as Ctrl+Shift+R."""
        modifiers, last = [], key
        while "+" in last[:-1]:
            modifier, last = last.split("+", 1)
            modifiers.append(MODIFIERS[modifier])
        if modifiers and last == "+":
            return modifiers + ["equal"]
        if last in KEYS:
            return modifiers + [KEYS[last]]
        return modifiers + [last.lower() if len(last) == 1 else last]

    def key(self, key, held=0.0):
        pressed = self.names(key)
        for name in pressed:
            self._key(name, True)
        if held:
            time.sleep(held)
        for name in reversed(pressed):
            self._key(name, False)

    def type(self, text):
        for letter in text:
            name = KEYS.get(letter, letter)
            if letter in SHIFTED:
                self._key("Shift_L", True)
            self._key("plus" if letter == "+" else name, True)
            self._key("plus" if letter == "+" else name, False)
            if letter in SHIFTED:
                self._key("Shift_L", False)

    def let_go(self):
        """Whatever is still held, as by an action that broke off."""
        for name in list(self.held_keys):
            self._key(name, False)
        for number in list(self.held_buttons):
            self.button(number, False)

    def place(self, window, x, y, width, height):
        """As another program asks the window manager for it."""
        self.x11.XMoveResizeWindow(self.display, ctypes.c_ulong(window), int(x), int(y), int(width), int(height))
        self.sync()

    def place_of(self, window):
        """Where the display server shows it: left, top, width and height; None while it does not."""
        seen = Attributes()
        self.x11.XGetWindowAttributes(self.display, ctypes.c_ulong(window), ctypes.byref(seen))
        left, top, child = ctypes.c_int(), ctypes.c_int(), ctypes.c_ulong()
        self.x11.XTranslateCoordinates(self.display, ctypes.c_ulong(window), ctypes.c_ulong(seen.root), 0, 0,
                                       ctypes.byref(left), ctypes.byref(top), ctypes.byref(child))
        return [left.value, top.value, seen.width, seen.height] if seen.map_state == VIEWABLE else None

    def iconify(self, window):
        self.x11.XIconifyWindow(self.display, ctypes.c_ulong(window), 0)
        self.sync()

    def activate(self, window):
        subprocess.run(["xdotool", "windowmap", str(window), "windowactivate", str(window)],
                       stderr=subprocess.DEVNULL, timeout=60)

    def picture(self, folder):
        """Keeps what the screen shows, if there is a folder for it."""
        if folder:
            subprocess.run(["import", "-window", "root", folder + "/screen.png"], stderr=subprocess.DEVNULL)

    def focus(self):
        """Which window has the keyboard, as the display server and the window manager say, and which are on the
        screen."""
        said = subprocess.run("xdotool getwindowfocus -f getwindowname; xdotool getwindowfocus -f;"
                              "xprop -root _NET_ACTIVE_WINDOW; xdotool getmouselocation;"
                              "xwininfo -root -tree | grep -v '1x1+\\|10x10+'",
                              shell=True, capture_output=True, text=True)
        return " ".join(said.stdout.split())

    def plug_screen(self, output, mode):
        subprocess.run(["xrandr", "--addmode", output, mode], stderr=subprocess.DEVNULL)
        place = ["--right-of", (self.plugged or ["DUMMY0"])[-1]]
        subprocess.run(["xrandr", "--output", output, "--mode", mode] + place, check=True)
        subprocess.run(["xrandr"], stdout=subprocess.DEVNULL)
        self.plugged.append(output)

    def pull_screen(self, output):
        self.plugged.remove(output)
        subprocess.run(["xrandr", "--output", output, "--off"], check=True)
        subprocess.run(["xrandr"], stdout=subprocess.DEVNULL)
