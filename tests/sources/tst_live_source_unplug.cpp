#include "tests/sources/CameraLives.h"
#include "tests/sources/LiveRig.h"

#include "sources/camera/CameraParameters.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>

namespace
{

// What the bounded waits of one teardown and one restart add up to at most, with room for a loaded
// machine.
constexpr qint64 TEARDOWN_LIMIT_MS = 10000;
/// Lives mostly wait, so that several run at once on the two processors of a small machine.
constexpr int LIVES_AT_ONCE = 3;

bool letTimePass(int milliseconds)
{
    QTest::qWait(milliseconds); // long enough for the library to have seen the camera leave
    return true;
}

bool deadControlsFailFast(LiveRig &rig)
{
    QElapsedTimer timer;
    timer.start();
    unsigned long value = 3;
    for (int i = 0; i < 20; ++i) {
        if (rig.source->ksPropSet(CameraParameter::VALUE_SELECTOR, &value, sizeof value) >= 0 ||
            rig.source->ksPropGet(CameraParameter::VALUE_SELECTOR, &value, sizeof value) >= 0)
            return false;
    }
    return value == 3 && rig.source->brightness() == 0 && timer.elapsed() < 5000;
}

bool neverThere(VirtualCamera &, LiveRig &rig)
{
    return letTimePass(700) && !rig.source->running();
}

bool leftWhileWaiting(VirtualCamera &camera, LiveRig &rig)
{
    return camera.plug() && letTimePass(1200) && !rig.source->running();
}

bool unpluggedWhileWaiting(VirtualCamera &camera, LiveRig &rig)
{
    if (!camera.plug())
        return false;
    letTimePass(1200);
    pull(camera);
    return letTimePass(2200) && !rig.source->running();
}

bool leftWhileStreaming(VirtualCamera &camera, LiveRig &rig)
{
    return rig.bringUp(camera);
}

bool unpluggedAtTheExit(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    pull(camera);
    return true;
}

bool unpluggedWhileStreaming(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    pull(camera);
    return letTimePass(700) && staysWithoutFrames(rig.sink) && rig.source->running() &&
           deadControlsFailFast(rig);
}

bool resizedAfterTheUnplug(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    pull(camera);
    rig.source->setResolution({1920, 1080});
    rig.source->setResolution(LiveRig::PREVIEW);
    return rig.source->running() && deadControlsFailFast(rig) && staysWithoutFrames(rig.sink);
}

bool recordedAcrossTheUnplug(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    const QTemporaryDir folder;
    rig.source->startRecord(folder.filePath("across.mov"));
    if (!rig.waitForSize(LiveRig::RECORDING))
        return false;
    pull(camera);
    letTimePass(300);
    rig.source->stopRecord();
    return !rig.source->recording() && rig.source->running();
}

bool pluggedInAgain(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    pull(camera);
    letTimePass(300);
    if (!camera.plug())
        return false;
    letTimePass(1200);
    rig.source->startCapture();
    return rig.source->running() && staysWithoutFrames(rig.sink);
}

/// A control that is never answered is given up, and the picture goes on.
bool leftWithoutAnAnswer(VirtualCamera &camera, LiveRig &rig)
{
    if (!rig.bringUp(camera))
        return false;
    camera.faults().hangControls = 1;
    unsigned long value = 3;
    QElapsedTimer timer;
    timer.start();
    if (rig.source->ksPropGet(CameraParameter::VALUE_SELECTOR, &value, sizeof value) >= 0 ||
        timer.elapsed() > 4000)
        return false;
    // Nobody waits a second time for a camera that does not answer.
    timer.start();
    const bool refused =
        rig.source->ksPropSet(CameraParameter::VALUE_SELECTOR, &value, sizeof value) < 0 &&
        rig.source->ksPropGet(CameraParameter::VALUE_SELECTOR, &value, sizeof value) < 0;
    return refused && timer.elapsed() < 500 && value == 3 && rig.waitForFrames(5);
}

const CameraLife<LiveRig> LIVES[] = {
    {"no camera at all", neverThere, false},
    {"left while waiting", leftWhileWaiting, false},
    {"unplugged while waiting", unpluggedWhileWaiting, false},
    {"left while streaming", leftWhileStreaming, false},
    {"left without an answer", leftWithoutAnAnswer, false},
    {"unplugged at the exit", unpluggedAtTheExit, true},
    {"unplugged while streaming", unpluggedWhileStreaming, true},
    {"resized after the unplug", resizedAfterTheUnplug, true},
    {"recorded across the unplug", recordedAcrossTheUnplug, true},
    {"plugged in again", pluggedInAgain, true},
};

/// Every way in which a camera and a program part. The camera outlives the program's end of it, as
/// a real one would.
int live(const char *name)
{
    VirtualCamera camera(rigCamera());
    qint64 teardownMs = 0;
    bool good = false;
    {
        LiveRig rig;
        good = lifeNamed(LIVES, name)(camera, rig);
        QElapsedTimer timer;
        timer.start();
        rig.source.reset();
        teardownMs = timer.elapsed();
    }
    std::printf("teardown took %lld ms\n", static_cast<long long>(teardownMs));
    return good && teardownMs < TEARDOWN_LIMIT_MS ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    return CameraLives::run(LIVES, LIVES_AT_ONCE, &live);
}
