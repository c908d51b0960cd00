#include "settings/Config.h"

#include <QDir>
#include <QGlobalStatic>
#include <QSettings>
#include <QStandardPaths>

namespace
{

Q_GLOBAL_STATIC(Config, globalConfig)

QSize sizeOf(int index)
{
    switch (index) {
    case 0:
        return {1024, 768};
    case 1:
        return {1280, 720};
    default:
        return {1920, 1080};
    }
}

} // namespace

Config *Config::self()
{
    return globalConfig();
}

Config::Config()
    : m_settings(new QSettings(this))
{
    m_snapshotMode = m_settings->value("snapshotMode").toInt();
    m_snapshotInterval = m_settings->value("snapshotInterval").toULongLong();
    m_snapshotPath = m_settings->value("snapshotPath", defaultSaveDirectory("images")).toString();
    m_recordPath = m_settings->value("recordPath", defaultSaveDirectory("videos")).toString();
    m_resolutionIndex = m_settings->value("resolution", 1).toInt();
    m_recordingResolutionIndex = m_settings->value("recordingResolution", 1).toInt();
    m_language = m_settings->value("language", "en").toString();
}

Config::~Config() = default;

CanvasModes::SnapshotMode Config::snapshotMode()
{
    return static_cast<CanvasModes::SnapshotMode>(self()->m_snapshotMode);
}

void Config::setSnapshotMode(CanvasModes::SnapshotMode mode)
{
    self()->m_snapshotMode = mode;
    self()->m_settings->setValue("snapshotMode", static_cast<int>(mode));
}

unsigned long long Config::snapshotInterval()
{
    return self()->m_snapshotInterval;
}

void Config::setSnapshotInterval(unsigned long long seconds)
{
    self()->m_snapshotInterval = seconds;
    self()->m_settings->setValue("snapshotInterval", seconds);
}

QString Config::snapshotPath()
{
    return self()->m_snapshotPath;
}

void Config::setSnapshotPath(const QString &path)
{
    self()->m_snapshotPath = path;
    self()->m_settings->setValue("snapshotPath", path);
}

QString Config::recordPath()
{
    return self()->m_recordPath;
}

void Config::setRecordPath(const QString &path)
{
    self()->m_recordPath = path;
    self()->m_settings->setValue("recordPath", path);
}

QSize Config::resolution()
{
    return sizeOf(self()->m_resolutionIndex);
}

int Config::resolutionIndex()
{
    return self()->m_resolutionIndex;
}

void Config::setResolutionIndex(int index)
{
    self()->m_resolutionIndex = index;
    self()->m_settings->setValue("resolution", index);
}

QSize Config::recordingResolution()
{
    return sizeOf(self()->m_recordingResolutionIndex);
}

int Config::recordingResolutionIndex()
{
    return self()->m_recordingResolutionIndex;
}

void Config::setRecordingResolutionIndex(int index)
{
    self()->m_recordingResolutionIndex = index;
    self()->m_settings->setValue("recordingResolution", index);
}

QString Config::getLanguage()
{
    return self()->m_language;
}

void Config::setLanguage(const QString &language)
{
    self()->m_language = language;
    self()->m_settings->setValue("language", language);
}

QString Config::defaultSaveDirectory(const QString &sub)
{
    const QString base =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/Document Camera";
    // The documents folder itself may be missing on a fresh account, hence with parents.
    QDir().mkpath(base + "/" + sub);
    return base + "/" + sub;
}
