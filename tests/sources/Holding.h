#pragma once

#include "tests/sources/LiveRig.h"

#include <QDir>
#include <QFile>

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

/// What is held once the camera that was replaced has been given back, which takes its own time.
inline Holding settled()
{
    constexpr int OF_ONE_CAMERA = 2;
    (void)QTest::qWaitFor([] { return cameraThreads() <= OF_ONE_CAMERA; }, LiveRig::TIMEOUT_MS);
    return holding();
}
