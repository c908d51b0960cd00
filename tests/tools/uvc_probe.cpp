// A program that uses the camera, for the tests of the runner: "uvc_probe frames N" prints the
// numbers of N frames, "uvc_probe watch" prints "found" and "gone" as the camera comes and goes
// until it is killed, "uvc_probe exit N" ends with that code.

#include "tests/tools/UvcViewer.h"
#include "tools/virtualcamera/SheetCounter.h"

#include <QImage>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

int printFrames(int count)
{
    UvcViewer viewer;
    if (!viewer.waitUntilFound(true) || viewer.open() != UVC_SUCCESS)
        return 3;
    if (viewer.start(QSize(1280, 720)) != UVC_SUCCESS)
        return 4;
    for (int i = 0; i < count; ++i) {
        const auto frame = viewer.takeFrame();
        const auto number =
            frame ? SheetCounter::read(QImage::fromData(*frame, "JPEG")) : std::nullopt;
        if (!number)
            return 5;
        std::printf("%u\n", *number);
    }
    viewer.stop();
    return 0;
}

[[noreturn]] void watch()
{
    UvcViewer viewer;
    for (bool known = false;; QThread::msleep(5)) {
        const bool found = viewer.find();
        if (found != known)
            std::puts(found ? "found" : "gone");
        known = found;
    }
}

} // namespace

int main(int argc, char *argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const char *what = argc > 1 ? argv[1] : "";
    const int number = argc > 2 ? std::atoi(argv[2]) : 0;
    if (!std::strcmp(what, "frames"))
        return printFrames(number);
    if (!std::strcmp(what, "exit"))
        return number;
    if (!std::strcmp(what, "watch"))
        watch();
    return 2;
}
