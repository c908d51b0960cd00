#pragma once

#include "sources/camera/CameraKeeper.h"
#include "tests/sources/LiveRig.h"

#include <QElapsedTimer>

#include <cstdio>

/// A program's live source with its keeper.
struct KeptRig : LiveRig {
    CameraKeeper keeper{*source};

    bool waitForState(CameraStatus::State state)
    {
        return QTest::qWaitFor([this, state] { return keeper.status().state == state; },
                               TIMEOUT_MS);
    }
};

inline bool check(bool good, const char *what)
{
    if (!good)
        std::printf("not so: %s\n", what);
    return good;
}
/// Ends a life that does not go as it should.
#define CHECK(condition)                                                                           \
    do {                                                                                           \
        if (!check(condition, #condition))                                                         \
            return false;                                                                          \
    } while (false)

/// Plugs the camera in and says how long the picture took; negative when it stayed away.
inline qint64 plugAndWait(VirtualCamera &camera, KeptRig &rig)
{
    const std::uint8_t before = rig.source->cameraLink().address;
    const auto again = [&rig, before] {
        const CameraLink link = rig.source->cameraLink();
        return link.address != before && link.frames > 0;
    };
    QElapsedTimer timer;
    timer.start();
    if (!check(camera.plug(), "plugged in"))
        return -1;
    if (!QTest::qWaitFor(again, LiveRig::TIMEOUT_MS)) {
        const CameraLink link = rig.source->cameraLink();
        std::printf("state %d, address %d before and %d now, gone %d, opened with %d, stream %d, "
                    "pending %d, %lld frames\n",
                    static_cast<int>(rig.keeper.status().state), before, link.address, link.gone,
                    link.openResult, link.streamResult, link.streamPending,
                    static_cast<long long>(link.frames));
        return -1;
    }
    const qint64 elapsedMs = timer.elapsed();
    std::printf("picture again after %lld ms\n", static_cast<long long>(elapsedMs));
    return elapsedMs;
}
