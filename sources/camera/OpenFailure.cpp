#include "sources/camera/OpenFailure.h"

#include "diagnostics/TerminalLines.h"

#include <libuvc/libuvc.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using TerminalLines::Line;

namespace
{

bool isOpen(const struct stat &wanted, const QString &descriptors)
{
    for (const QString &name : QDir(descriptors).entryList(QDir::System | QDir::Files)) {
        struct stat status {
        };
        const QByteArray path = QFile::encodeName(descriptors + '/' + name);
        if (stat(path.constData(), &status) == 0 && status.st_dev == wanted.st_dev &&
            status.st_ino == wanted.st_ino)
            return true;
    }
    return false;
}

} // namespace

QString OpenFailure::nodeOf(int busNumber, int deviceAddress)
{
    return QString::asprintf("/dev/bus/usb/%03d/%03d", busNumber, deviceAddress);
}

QString OpenFailure::holdersOf(const QString &node, const QString &processes)
{
    struct stat wanted {
    };
    if (stat(QFile::encodeName(node).constData(), &wanted) != 0)
        return {};
    QStringList holders;
    for (const QString &number : QDir(processes).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isProcess = false;
        const bool isOther = number.toInt(&isProcess) != getpid();
        const QString process = processes + '/' + number;
        if (!isProcess || !isOther || !isOpen(wanted, process + "/fd"))
            continue;
        QFile name(process + "/comm");
        if (name.open(QIODevice::ReadOnly))
            holders += QStringLiteral("%1 (process %2)")
                           .arg(QString::fromLocal8Bit(name.readAll().trimmed()), number);
    }
    return holders.join(QLatin1String(", "));
}

void OpenFailure::tell(int error, const QString &node)
{
    switch (error) {
    case UVC_ERROR_ACCESS:
        TerminalLines::tell(Line::CameraNotPermitted, {node});
        break;
    case UVC_ERROR_BUSY: {
        const QString holders = holdersOf(node, QStringLiteral("/proc"));
        TerminalLines::tell(Line::CameraTaken,
                            {holders.isEmpty() ? QStringLiteral("another program") : holders});
        break;
    }
    default:
        TerminalLines::tell(Line::CameraNotOpened,
                            {QString::fromLatin1(uvc_strerror(static_cast<uvc_error_t>(error)))});
        break;
    }
}
