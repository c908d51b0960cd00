"""The teacher's answers to the dialogs that come."""

import os
import time

from model import FILM, PHOTOGRAPH
from watch import Patience
from watcher import EFFECT, Mismatch


class Dialogs:
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
