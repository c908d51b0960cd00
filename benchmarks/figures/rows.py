"""The rows of the table: what is measured, beside what, and what bounds it."""

SIZES = ["1024x768", "1280x720", "1920x1080", "3840x2160"]
FRAME_MS = 1000 / 30


class Row:
    """One line of the table. `cells` are figures by label: (program, figure, yardstick), where the yardstick is
    another figure of the same program, or nothing. `limit` is what the figure should not exceed."""

    def __init__(self, section, name, bound, cells, beside="", unit="µs", limit=""):
        self.section, self.name, self.bound, self.cells = section, name, bound, cells
        self.beside, self.unit, self.limit = beside, unit, limit

    def figures(self):
        """(the name in the table of figures, program, figure, yardstick) of each cell."""
        return [("/".join(part for part in (self.section, self.name, label) if part), *cell)
                for label, cell in self.cells.items()]


def by_size(program, ours, theirs):
    return {size: (program, f"{ours}/{place}", f"{theirs}/{place}") for place, size in enumerate(SIZES)}


def step(name, benchmark, bound):
    return Row("Picture steps", name, bound, by_size("picture_steps", benchmark + "/canvas", benchmark + "/opencv"),
               beside="OpenCV's step")


def frame(name, benchmark, bound, yardstick="copy/one", beside="a copy of the frame"):
    return Row("Whole frames", name, bound, by_size("picture_pipeline", benchmark, yardstick), beside=beside)


SCREENS = ["1920x1080 to 1000x562", "1280x720 to 1000x562", "1280x720 to 1920x1080", "12 to 0.6 megapixels",
           "50 to 0.6 megapixels"]


def scaling(name, theirs, beside, bound):
    return Row("The picture on the screen", name, bound,
               {label: ("screen_scaling", f"canvas/{place}", f"{theirs}/{place}") for place, label in enumerate(SCREENS)},
               beside=beside)


def drawing(name, benchmark, bound):
    return Row("Drawing", name, bound, {"": ("drawing", benchmark, "copyLayer")}, beside="a copy of the layer")


def alone(section, name, program, figure, bound, unit="ms", limit=""):
    return Row(section, name, bound, {"": (program, figure, None)}, unit=unit, limit=limit)


MEMORY = "memory: each byte is read and written once"

ROWS = [
    step("quarter turn", "turn", "cache lines of the other direction; turned in blocks"),
    step("black and white", "grey", MEMORY),
    step("negative", "negative", "memory, for both"),
    step("mosaic", "mosaic", "adding up 64 pixels for one"),
    step("mask: circle", "mask-circle", "memory; their mask is made beforehand"),
    step("mask: rectangle", "mask-rectangle", "memory"),
    step("mask: left half", "mask-left", "memory, for both"),
    step("mask: top half", "mask-top", "memory, for both"),
    step("zoom 2", "zoom-2", "memory of the result"),
    step("zoom 6", "zoom-6", "memory of the result"),
    step("layer with three strokes", "layer", "the tiles that are drawn on; theirs is a copy, as these are opaque"),
    frame("nothing to do", "imageCaptured/plain", "one copy: the caller's buffer holds the answer", "copy/one"),
    frame("black and white", "imageCaptured/grey", "copies in and back"),
    frame("zoomed by 2", "imageCaptured/zoomed", "copies in and back"),
    frame("turned and fitted", "imageCaptured/turned", "caches: beyond 1920x1080 the frames in use do not fit"),
    frame("turn, layer, black and white, zoom, circle", "chain/canvas", "memory of four steps", "chain/opencv",
          "OpenCV's chain"),
    frame("painted into 1000x670", "paintEvent/1000x670", "averaging all pixels; once a result"),
    scaling("beside a copy", "copy", "a copy of the source", "reading the source once when it is large"),
    scaling("beside OpenCV", "opencv", "its area or linear filter", "as above; theirs rounds each step"),
    scaling("beside libyuv", "libyuv, planes", "its box filter", "as above; theirs works on planes"),
    Row("Live", "whole program, 1920x1080", "decoding, then memory: averaging and painting",
        {"": ("live", "program ms", "uvc_mjpeg2rgb alone ms")}, beside="the bare decoding", unit="ms", limit="1.45"),
    Row("Live", "receiving alone", "the system's transfers", {"": ("live", "receiving alone ms", "uvc_mjpeg2rgb alone ms")},
        beside="the bare decoding", unit="ms"),
    alone("Live", "from the last packet to the screen, median", "live", "painted picture median",
          "decoding, then the display server"),
    alone("Live", "the same, 99th percentile", "live", "painted picture p99", "who else runs", limit="33 ms"),
    Row("Live", "frames sent, of those painted", "nothing is left out", {"": ("live", "sent", "painted")},
        beside="painted", unit=""),
    Row("Cameras of other makes", "YUYV 1280x720 to packed RGB", "a second pass, in the cache",
        {"": ("camera_frames", "yuyvToRgb", "libyuvToFourBytes")}, beside="libyuv's one step to four bytes", limit="1.6"),
    alone("Cameras of other makes", "decoding 3840x2160", "camera_frames", "largestMotionJpeg", "the JPEG library",
          unit="µs"),
    alone("Cameras of other makes", "first list of eight cameras", "camera_list", "first", "reading what the system knows"),
    alone("Cameras of other makes", "from a click to the page with eight cameras", "camera_list", "page",
          "building the page", limit="50 ms"),
    alone("Cameras of other makes", "the keeper's thread, % of a core", "camera_keeper", "percent",
          "two looks at the bus a second", unit="%", limit="0.1 %"),
    alone("Cameras of other makes", "from plugging in to the picture", "camera_returns", "picture",
          "the keeper's interval, and the camera's start", unit="s", limit="3.5 s"),
    alone("Cameras of other makes", "the window's longest absence meanwhile", "camera_returns", "away", "one frame's painting",
          limit="50 ms"),
    Row("Skin", "the frame alone", MEMORY, {"": ("skin", "paintFrame", "copyWindowPixels")}, beside="a copy of the window"),
    Row("Skin", "frame and full panel", "blending 28 images",
        {"": ("skin", "paintFrameAndFullPanel", "copyWindowPixels")}, beside="a copy of the window"),
    Row("Skin", "building that panel", "decoding 84 images", {"": ("skin", "buildFullPanel", "copyWindowPixels")},
        beside="a copy of the window"),
    Row("Recording", "the program, shown", "memory: packed RGB and showing it",
        {"": ("recording", "program ms", "command line that also receives ms")},
        beside="GStreamer's command line that also receives", unit="ms", limit="1.15"),
    Row("Recording", "without canvas and window", "the encoder",
        {"": ("recording", "program, not shown ms", "command line that also receives ms")},
        beside="GStreamer's command line that also receives", unit="ms"),
    Row("Recording", "the program, shown, by way of packed RGB too", "the encoder",
        {"": ("recording", "program ms", "command line by way of packed RGB ms")}, beside="the command line that way",
        unit="ms"),
    alone("Recording", "the window away after the key that starts it", "recording_keys", "starts most",
          "the frame in flight", limit="50 ms"),
    alone("Recording", "the window away after the key that pauses it", "recording_keys", "pauses most", "one frame's painting",
          limit="50 ms"),
    alone("Recording", "the window away after the key that resumes it", "recording_keys", "resumes most",
          "one frame's painting", limit="50 ms"),
    alone("Recording", "the window away after the key that stops it", "recording_keys", "stops most", "the frame in flight",
          limit="50 ms"),
    alone("Recording", "from the key to the first picture in the movie", "recording_keys", "first",
          "the camera's new stream, and the microphone", limit="300 ms"),
    alone("Recording", "between two pictures across a pause", "recording_keys", "seam", "the camera's interval",
          limit="100 ms"),
    alone("Recording", "finishing an hour's movie", "movie_end", "end", "writing the index", limit=""),
    alone("Recording", "a save of it, median", "movie_end", "save", "waiting for the disk"),
    alone("Recording", "file over its pictures and sound", "movie_end", "percent", "two places for the index", unit="%"),
    Row("Film", "playing 1920x1080 at 30, cores", "decoding", {"": ("film", "cores", "mpv")},
        beside="mpv, shown nowhere, with its start", unit=""),
    alone("Film", "paused, cores", "film", "paused", "nothing runs", unit=""),
    alone("Film", "first picture of a further film", "film", "first", "building the pipeline"),
    alone("Film", "opening holds the caller up", "film", "blocked", "a lock"),
    alone("Film", "slider to its picture, paused, median", "film", "paused median", "decoding from the key frame"),
    alone("Film", "slider to its picture, playing, median", "film", "playing median", "decoding from the key frame"),
    alone("Film", "getting the library ready", "film", "ready", "loading and a first run of its elements"),
    Row("Window", "start to the painted window", "the toolkit; the graphics driver is left out",
        {"": ("window", "main window elapsed", "bare program elapsed")}, beside="a bare program", unit="ms",
        limit="250 ms more"),
    Row("Window", "the same, processor time", "the toolkit",
        {"": ("window", "main window processor", "bare program processor")}, beside="a bare program", unit="ms"),
    Row("Window", "a mode change, to the painted window", "painting it", {
        "Live": ("window", "Live elapsed", None), "Film": ("window", "Film elapsed", None),
        "Photograph": ("window", "Photograph elapsed", None), "Drawing Board": ("window", "Drawing Board elapsed", None)},
        unit="ms"),
    alone("Window", "resident memory, live 1920x1080", "window", "resident", "frames in use, the toolkit", unit="MB",
          limit="150 MB"),
    Row("Window for the class", "more for a frame", "painting on a processor, and the display server", {
        pictures: ("presentation", f"{size} more", None) for pictures, size in (
            ("1920x1080 on 1920x1080", "1920x1080 1920x1080"), ("1920x1080 on 3840x2160", "1920x1080 3840x2160"),
            ("3840x2160 on 3840x2160", "3840x2160 3840x2160"))}, unit="ms", limit="2, 4 and 4 ms"),
    Row("Window for the class", "a frame with it", "painting it twice", {
        pictures: ("presentation", f"{size} beside", f"{size} alone") for pictures, size in (
            ("1920x1080 on 1920x1080", "1920x1080 1920x1080"), ("1920x1080 on 3840x2160", "1920x1080 3840x2160"),
            ("3840x2160 on 3840x2160", "3840x2160 3840x2160"))}, beside="the canvas alone", unit="ms"),
    Row("Thumbnails", "60 photographs of 12 megapixels to 56x50", "the JPEG library's entropy decoding", {
        name: ("thumbnail_race", "the strip's loader ms", f"{name} ms") for name in (
            "GraphicsMagick", "ImageMagick", "gdk-pixbuf-thumbnailer", "vipsthumbnail")}, beside="each of these", unit="ms"),
    alone("Thumbnails", "500 in the program: first picture", "thumbnail_window", "opened", "decoding it"),
    alone("Thumbnails", "the 9 visible thumbnails", "thumbnail_window", "visible", "decoding them"),
    alone("Thumbnails", "all 500", "thumbnail_window", "all", "decoding them, on one thread"),
    alone("Thumbnails", "the window's longest absence meanwhile", "thumbnail_window", "away", "making buttons"),
    alone("Thumbnails", "10,000 small pictures: opening", "thumbnail_many", "opened", "listing them"),
    alone("Thumbnails", "a step of scrolling", "thumbnail_many", "step", "painting"),
    alone("Thumbnails", "memory", "thumbnail_many", "memory", "a thousand buttons", unit="MB"),
    drawing("short freehand stroke", "shortStroke/mode:1", "the pixels under it"),
    drawing("short line", "shortStroke/mode:2", "the pixels under it"),
    drawing("short arrow", "shortStroke/mode:3", "the pixels under it"),
    drawing("short rectangle", "shortStroke/mode:4", "the pixels under it"),
    drawing("short eraser stroke", "shortStroke/mode:7", "the pixels under it"),
    drawing("stroke through the canvas", "strokeThroughTheCanvas", "events, lock and mapping"),
    drawing("move of a line over most of it", "largeShapeMove/mode:2/filled:0", "tiles that are drawn anew"),
    drawing("move of an arrow over most of it", "largeShapeMove/mode:3/filled:0", "tiles that are drawn anew"),
    drawing("move of a filled rectangle over most of it", "largeShapeMove/mode:4/filled:1", "memory of those tiles"),
    Row("Drawing", "a line, by the picture's width", "the layer leaves the cache; 400 smooth pixels take 2.7 times what hard ones would", {
        width: ("drawing", f"lineByPictureAndLength/width:{width}/length:100", "copyLayer")
        for width in ("640", "1280", "1920", "3840")}, beside="a copy of the layer"),
    drawing("undo and redo of a small shape", "undoAndRedo/stroke", "exchanging its pixels"),
    drawing("the same over the whole layer", "undoAndRedo/wholeLayer", "exchanging all pixels"),
    drawing("the same, unpacked first", "undoAndRedo/wholeLayerPacked", "unpacking, then the same"),
    drawing("erase all and its undo", "eraseAllAndUndo", "moving a handle"),
] + [
    alone("Strokes on the screen", f"{name}, {which}", f"stroke_{work}", f"{work} {figure}", bound, limit=limit)
    for work, name, bound, limit in (
        ("still", "standing picture", "10 ms in which further points are awaited", ""),
        ("live", "live", "the wait for the next frame", "33 ms and a painting"),
        ("recording", "live and recorded", "the next frame, and the encoder beside it", ""),
        ("pinch", "two fingers", "one picture in 16 ms", "40 ms"),
        ("pen", "a pen of 200 points a second", "the next frame", ""))
    for which, figure in (("median", "median"), ("99th percentile", "p99"))
]
