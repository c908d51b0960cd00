#include "tools/virtualcamera/run/CameraConsole.h"

#include "sources/camera/CameraParameters.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStringList>

CameraConsole::CameraConsole(VirtualCamera &camera)
    : m_camera(camera)
{
}

bool CameraConsole::run(const QString &line, QString &message)
{
    QStringList words = line.simplified().split(' ', Qt::SkipEmptyParts);
    message.clear();
    if (words.isEmpty())
        return true;
    const QString verb = words.takeFirst();
    if (verb == QLatin1String("plug"))
        return plug(message);
    if (verb == QLatin1String("unplug")) {
        words.value(0) == QLatin1String("dirty") ? m_camera.unplugDirty() : m_camera.unplug();
        return true;
    }
    if (verb == QLatin1String("fault"))
        return setFault(words.value(0), words.value(1, QStringLiteral("1")), message);
    if (verb == QLatin1String("parameter"))
        return setParameter(words.value(0), words.value(1), message);
    if (verb == QLatin1String("stats"))
        return writeStatistics(words.value(0), message);
    message = QStringLiteral("unknown command: %1").arg(line);
    return false;
}

bool CameraConsole::plug(QString &message)
{
    if (m_camera.plug())
        return true;
    message = QStringLiteral("the camera could not be plugged in");
    return false;
}

bool CameraConsole::setFault(const QString &name, const QString &count, QString &message)
{
    bool isNumber = false;
    const int value = count.toInt(&isNumber);
    std::atomic<int> *fault = findFault(m_camera.faults(), name.toLatin1().constData());
    if (fault && isNumber) {
        *fault = value;
        return true;
    }
    message = QStringLiteral("no such fault: %1 %2").arg(name, count);
    return false;
}

bool CameraConsole::setParameter(const QString &id, const QString &value, QString &message)
{
    bool idIsNumber = false, valueIsNumber = false;
    const quint64 idNumber = id.toULongLong(&idIsNumber, 0);
    const quint64 valueNumber = value.toULongLong(&valueIsNumber, 0);
    if (idIsNumber && valueIsNumber) {
        m_camera.overrideParameter(idNumber, valueNumber);
        return true;
    }
    message = QStringLiteral("no such parameter: %1 %2").arg(id, value);
    return false;
}

bool CameraConsole::writeStatistics(const QString &path, QString &message)
{
    const QByteArray json = QJsonDocument(statistics()).toJson(QJsonDocument::Compact) + '\n';
    if (path.isEmpty()) {
        message = QString::fromUtf8(json).trimmed();
        return true;
    }
    QSaveFile file(path); // renamed into place: a reader never sees half of it
    if (file.open(QIODevice::WriteOnly) && file.write(json) == json.size() && file.commit())
        return true;
    message = QStringLiteral("cannot write %1").arg(path);
    return false;
}

QJsonObject CameraConsole::statistics() const
{
    namespace P = CameraParameter;
    const CameraStatistics now = m_camera.statistics();
    const auto number = [](std::uint64_t value) { return static_cast<qint64>(value); };
    QJsonArray deliveries;
    for (const FrameDelivery &delivery : now.deliveries)
        deliveries.append(QJsonArray{number(delivery.frame), qint64{delivery.monotonicNs}});
    return {
        {"plugged", now.plugged},
        {"streaming", now.streaming},
        {"openHandles", now.openHandles},
        {"streamWidth", now.streamWidth},
        {"streamHeight", now.streamHeight},
        {"framesSent", number(now.framesSent)},
        {"framesOverrun", number(now.framesOverrun)},
        {"bytesSent", number(now.bytesSent)},
        {"lastFrame", number(now.lastFrame)},
        {"ioctls", number(now.ioctls)},
        {"controlTransfers", number(now.controlTransfers)},
        {"stalledTransfers", number(now.stalledTransfers)},
        {"brightness", number(m_camera.parameter(P::BRIGHTNESS))},
        {"opticalZoomPercent", number(m_camera.parameter(P::OPTICAL_ZOOM_PERCENT))},
        {"digitalZoom", number(m_camera.parameter(P::DIGITAL_ZOOM))},
        {"deliveries", deliveries},
    };
}
