#pragma once

#include <QJsonObject>
#include <QString>

class VirtualCamera;

/// Carries out commands given as a line of text.
class CameraConsole
{
public:
    explicit CameraConsole(VirtualCamera &camera);

    /// False for a line that makes no sense; `message` then says why. Else it is the answer, if
    /// there is one.
    [[nodiscard]] bool run(const QString &line, QString &message);

private:
    [[nodiscard]] bool plug(QString &message);
    [[nodiscard]] bool setFault(const QString &name, const QString &count, QString &message);
    [[nodiscard]] bool setParameter(const QString &id, const QString &value, QString &message);
    [[nodiscard]] bool writeStatistics(const QString &path, QString &message);
    [[nodiscard]] QJsonObject statistics() const;

    VirtualCamera &m_camera;
};
