#pragma once

#include <QtGlobal>

#include <sys/resource.h>

/// The resident memory of the process when it was largest, in MB.
inline qint64 largestMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}
