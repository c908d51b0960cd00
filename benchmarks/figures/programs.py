"""The benchmarks: how each is run, and the figures in what it says."""

import json
import os
import re
import statistics
import subprocess
import tempfile

HERE = os.path.dirname(os.path.realpath(__file__))
TOP = os.path.normpath(os.path.join(HERE, "../.."))
BIN = os.path.join(TOP, "build/bench/bin")
SCRIPTS = os.path.join(TOP, "benchmarks")
IN_HOME = os.path.join(TOP, "tests/in-test-home")
NUMBER = r"-?[\d.]+"


class Failed(Exception):
    """A benchmark that could not be run."""


def output_of(command, folder):
    """What a command says, errors aside; three quarters of an hour are enough for any."""
    surroundings = dict(os.environ, TURNS="1")
    done = subprocess.run(command, cwd=folder, env=surroundings, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=2700)
    if done.returncode != 0:
        raise Failed(f"{' '.join(command)} gave {done.returncode}: {done.stdout[-2000:]}")
    return done.stdout


def read(text, patterns, heading=None):
    """Figures by name, the median where a line comes several times. A pattern's groups name its figures; the
    group `of` and what `heading` has found last come before the name."""
    found = {}
    under = ""
    for line in text.splitlines():
        title = re.search(heading, line) if heading else None
        if title:
            under = title[1] + " "
        for pattern in patterns:
            for match in re.finditer(pattern.replace("NUMBER", NUMBER), line):
                groups = match.groupdict()
                of = groups.pop("of", None)
                for name, value in groups.items():
                    found.setdefault(under + (of + " " if of else "") + name, []).append(float(value))
    return {name: statistics.median(values) for name, values in found.items()}


class Says:
    """A program whose lines have figures in them."""

    def __init__(self, command, patterns, heading=None):
        self.command, self.patterns, self.heading = command, patterns, heading

    def run(self, folder):
        return read(output_of(self.command, folder), self.patterns, self.heading)


class Steps:
    """A program of Google Benchmark: the least processor time of each step in five repetitions, which are
    interleaved."""

    def __init__(self, program):
        self.program = program

    def run(self, folder):
        with tempfile.NamedTemporaryFile(suffix=".json") as said:
            output_of([IN_HOME, "offscreen", os.path.join(BIN, self.program), "--benchmark_repetitions=5",
                       "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.02",
                       "--benchmark_out=" + said.name, "--benchmark_out_format=json"], folder)
            return self.read(json.load(said))

    @staticmethod
    def read(said):
        found = {}
        for each in said["benchmarks"]:
            if each["run_type"] != "iteration" or each.get("error_occurred"):
                continue
            name = re.sub(r"/(process_time|real_time|repeats:\d+|iterations:\d+|min_time:[\d.]+)", "", each["run_name"])
            in_us = each["cpu_time"] * {"ns": 1e-3, "us": 1, "ms": 1e3, "s": 1e6}[each["time_unit"]]
            found[name] = min(found.get(name, in_us), in_us)
        return found


def script(name, *arguments):
    return [os.path.join(SCRIPTS, name), *arguments]


STROKE = [r"^(?P<of>\w+): NUMBER points, (?P<missing>NUMBER) not shown; .* median (?P<median>NUMBER) ms, "
          r"p99 (?P<p99>NUMBER) ms"]

PROGRAMS = {
    "picture_steps": Steps("bench_picture_steps"),
    "picture_pipeline": Steps("bench_picture_pipeline"),
    "screen_scaling": Steps("bench_screen_scaling"),
    "camera_frames": Steps("bench_camera_frames"),
    "skin": Steps("bench_skin"),
    "drawing": Steps("bench_drawing"),
    "live": Says(script("measure-live", "8"), [
        r"^(?P<of>.*): (?P<ms>NUMBER) ms and (?P<faults>NUMBER) page faults a frame",
        r"last packet to (?P<of>painted picture): median (?P<median>NUMBER) ms, p99 (?P<p99>NUMBER) ms",
        r"(?P<sent>NUMBER) frames sent, NUMBER decoded, (?P<painted>NUMBER) painted"]),
    "presentation": Says(script("measure-presentation", "3"), [
        r"a frame: (?P<alone>NUMBER) ms alone, (?P<beside>NUMBER) ms with the class, (?P<more>NUMBER) ms more",
        r"canvas: .*p99 (?P<canvas_alone>NUMBER) ms alone; .*p99 (?P<canvas_beside>NUMBER) ms with",
        r"the same frame on both: .*p99 (?P<apart>NUMBER),"], heading=r"^pictures and screen: (.*)"),
    "camera_list": Says(script("measure-camera-bus", "list"), [
        r"the first list, of \d+ cameras: (?P<first>NUMBER) ms", r"^a list: median (?P<median>NUMBER), ",
        r"page with all of them: (?P<page>NUMBER) ms"]),
    "camera_keeper": Says(script("measure-camera-bus", "keeper", "8"), [
        r"the keeper's thread: (?P<percent>NUMBER) % of a core"]),
    "camera_returns": Says(script("measure-camera-bus", "returns", "3"), [
        r"from plugging in to the picture: median (?P<picture>NUMBER),",
        r"longest absence in each: median NUMBER, at most (?P<away>NUMBER) ms"]),
    "window": Says(script("measure-window"), [
        r"^(?P<of>bare program|main window|more) +(?P<elapsed>NUMBER) ms, +(?P<processor>NUMBER) ms of processor",
        r"^to (?P<of>\w[\w ]*?) +(?P<elapsed>NUMBER) ms, (?P<processor>NUMBER) ms of processor",
        r"^resident +(?P<resident>NUMBER) MB"]),
    "film": Says(script("measure-film"), [
        r"^play +NUMBER s: (?P<pictures>NUMBER) pictures \(NUMBER a second\), (?P<cores>NUMBER) cores",
        r"^paused NUMBER s: (?P<paused>NUMBER) cores",
        r"^open [2-9]: caller blocked (?P<blocked>NUMBER) ms, first picture after (?P<first>NUMBER) ms",
        r"^seek (?P<of>paused|playing) +median +(?P<median>NUMBER) ms +p90 +(?P<p90>NUMBER) ms",
        r"^ready +after (?P<ready>NUMBER) ms", r"^mpv .* \((?P<mpv>NUMBER) cores\)"]),
    "recording": Says(script("recording", "10", "1"), [
        r"^(?P<of>program|program, not shown|command line by way of packed RGB|command line that also receives): (?P<ms>NUMBER) ms a picture"]),
    "recording_keys": Says(script("measure-recording-keys", "4"), [
        r"^away after the key that (?P<of>\w+): median (?P<median>NUMBER), at most (?P<most>NUMBER) ms",
        r"^from the key to the first picture in the movie, no more than: median (?P<first>NUMBER),",
        r"^between the last picture before the pause .* left out: median (?P<seam>NUMBER),"]),
    "movie_end": Says(script("measure-movie-end"), [
        r"finished 1 in (?P<end>NUMBER) ms; a save (?P<save>NUMBER) ms in the median",
        r": (?P<percent>NUMBER) % more than those"]),
    "thumbnail_race": Says([IN_HOME, "offscreen", os.path.join(BIN, "bench_thumbnails"), "race"], [
        r"^  (?P<of>.*?) +NUMBER pictures a second, +(?P<ms>NUMBER) ms of processor time each"]),
    "thumbnail_window": Says([IN_HOME, "offscreen", os.path.join(BIN, "bench_thumbnails"), "window"], [
        r"opened with the first picture in (?P<opened>NUMBER) ms; .* visible ones after (?P<visible>NUMBER) ms, "
        r"all after (?P<all>NUMBER) ms; .* away for (?P<away>NUMBER) ms"]),
    "thumbnail_many": Says([IN_HOME, "offscreen", os.path.join(BIN, "bench_thumbnails"), "many"], [
        r"open in (?P<opened>NUMBER) ms, a step of scrolling (?P<step>NUMBER) ms, (?P<memory>NUMBER) MB"]),
    "stroke_still": Says(script("measure-stroke", "still", "6"), STROKE),
    "stroke_live": Says(script("measure-stroke", "live", "6"), STROKE),
    "stroke_recording": Says(script("measure-stroke", "recording", "6"), STROKE),
    "stroke_pinch": Says(script("measure-stroke", "pinch", "6"), STROKE),
    "stroke_pen": Says(script("measure-stroke", "pen", "6"), STROKE),
}
