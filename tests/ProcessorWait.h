#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// For how many nanoseconds a thread, named by its folder below /proc, has stood ready to run
/// without a processor since it began, as the system counts it; 0 where it does not, and of one
/// that has ended. What a busy machine takes so is no fault of what is measured.
inline qint64 processorWaitNs(const QString &thread = QStringLiteral("thread-self"))
{
    QFile file("/proc/" + thread + "/schedstat");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
}
