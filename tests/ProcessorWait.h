#pragma once

#include <QByteArray>
#include <QFile>

/// For how many milliseconds the calling thread has stood ready to run without a processor since it
/// began, as the system counts it; 0 where it does not. What a busy machine takes so is no fault of
/// what is measured.
inline qint64 processorWaitMs()
{
    constexpr qint64 NANOSECONDS = 1000000;
    QFile file("/proc/thread-self/schedstat");
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').value(1).toLongLong() / NANOSECONDS
               : 0;
}
