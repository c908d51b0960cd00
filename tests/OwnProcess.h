#pragma once

#include <QDir>

#include <sys/resource.h>

/// What a test measures of its own process beside its memory.
namespace OwnProcess
{

/// Files, sockets and pipes that are open.
inline int openDescriptors()
{
    return QDir("/proc/self/fd")
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

/// The processor time of all threads so far, in seconds.
inline double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

} // namespace OwnProcess
