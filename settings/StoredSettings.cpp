#include "settings/StoredSettings.h"

#include <QCoreApplication>
#include <QSettings>
#include <QVariant>

#include <limits>

namespace
{

struct Row {
    const char *key;
    qulonglong most;
};

constexpr Row ROWS[] = {
    {"snapshotMode", 1},
    {"snapshotInterval", std::numeric_limits<qulonglong>::max()},
    {"resolution", 2},
    {"recordingResolution", 2},
};

} // namespace

void StoredSettings::nameFiles()
{
    QCoreApplication::setOrganizationName("Quillmark");
    QCoreApplication::setApplicationName("Document Camera");
}

QStringList StoredSettings::outOfRange(const QSettings &settings)
{
    QStringList found;
    for (const Row &row : ROWS) {
        if (!settings.contains(row.key))
            continue;
        const QVariant value = settings.value(row.key);
        bool isNumber = false;
        // A number with a sign is none of these.
        const qulonglong number = value.toString().toULongLong(&isNumber);
        if (!isNumber || number > row.most)
            found += QString("%1=%2").arg(row.key, value.toString());
    }
    return found;
}
