#pragma once

#include "settings/CanvasModes.h"

#include <QObject>
#include <QSize>
#include <QString>

class QSettings;

/// The program's persistent settings: read once at first use, each setter writes through at once.
///
/// The store is QSettings under the application's organization and name, which must be set first.
/// Values are read and written on the GUI thread only; creation itself is thread-safe.
class Config : public QObject
{
    Q_OBJECT

public:
    /// The one instance, built at the first call; null after its destruction at process exit.
    static Config *self();

    Config();
    ~Config() override;

    static CanvasModes::SnapshotMode snapshotMode();
    static void setSnapshotMode(CanvasModes::SnapshotMode mode);

    /// Seconds between two pictures of a continuous series.
    static unsigned long long snapshotInterval();
    static void setSnapshotInterval(unsigned long long seconds);

    /// Folder of the snapshots; it need not exist any more.
    static QString snapshotPath();
    static void setSnapshotPath(const QString &path);

    /// Folder of the recordings; it need not exist any more.
    static QString recordPath();
    static void setRecordPath(const QString &path);

    /// Preview size in pixels. Index 0 is 1024 x 768, 1 is 1280 x 720, any other 1920 x 1080.
    static QSize resolution();
    static int resolutionIndex();
    static void setResolutionIndex(int index);

    /// Recording size in pixels, over the same table.
    static QSize recordingResolution();
    static int recordingResolutionIndex();
    static void setRecordingResolutionIndex(int index);

    /// A stored language code. The interface language follows the system locale instead.
    static QString getLanguage();
    static void setLanguage(const QString &language);

    /// Creates the folder "Document Camera/<sub>" in the user's documents and returns its path,
    /// whether or not it could be created.
    static QString defaultSaveDirectory(const QString &sub);

private:
    QSettings *m_settings;
    int m_snapshotMode = 0;
    unsigned long long m_snapshotInterval = 0;
    QString m_snapshotPath;
    QString m_recordPath;
    int m_resolutionIndex = 1;
    int m_recordingResolutionIndex = 1;
    QString m_language;
};
