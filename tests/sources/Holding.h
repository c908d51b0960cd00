#pragma once

#include "tests/sources/LiveRig.h"

#include <QDir>
#include <QFile>

#include <algorithm>

/// What a process holds.
struct Holding {
    int descriptors = 0;
    int threads = 0;
    long residentKilobytes = 0;
};

inline Holding holding()
{
    Holding now;
    now.descriptors =
        static_cast<int>(QDir("/proc/self/fd").entryList(QDir::Files | QDir::System).size());
    now.threads = static_cast<int>(
        QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                now.residentKilobytes = line.mid(6).trimmed().split(' ').first().toLong();
        }
    }
    return now;
}

/// How many threads there are whose call of a camera may hang, and of the library's for a camera.
inline int cameraThreads()
{
    int count = 0;
    for (const QString &thread : QDir("/proc/self/task").entryList(QDir::Dirs)) {
        QFile name("/proc/self/task/" + thread + "/comm");
        count += name.open(QIODevice::ReadOnly) && name.readAll().trimmed() == "UvcCommands";
    }
    return count;
}

/// What is held once the camera that was replaced has been given back, which takes its own time:
/// the least of half a second, as the keeper opens files of the bus for a moment.
inline Holding settled()
{
    constexpr int OF_ONE_CAMERA = 2;
    constexpr int LOOKS = 10;
    constexpr int BETWEEN_LOOKS_MS = 50;
    (void)QTest::qWaitFor([] { return cameraThreads() <= OF_ONE_CAMERA; }, LiveRig::TIMEOUT_MS);
    Holding least = holding();
    for (int look = 1; look < LOOKS; ++look) {
        QTest::qWait(BETWEEN_LOOKS_MS);
        const Holding now = holding();
        least.descriptors = std::min(least.descriptors, now.descriptors);
        least.threads = std::min(least.threads, now.threads);
        least.residentKilobytes = now.residentKilobytes;
    }
    return least;
}
