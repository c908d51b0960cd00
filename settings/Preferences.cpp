#include "settings/Preferences.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>

namespace
{

QSettings store()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope,
                     QCoreApplication::organizationName(),
                     QCoreApplication::applicationName() + " Extras");
}

/// Tells the terminal that the file cannot be read or written; once a process is enough.
void sayThatItFails(const QSettings &settings)
{
    static bool said = false;
    if (said)
        return;
    said = true;
    qDebug("The preferences in %s cannot be used.", qPrintable(settings.fileName()));
}

bool usable(const QSettings &settings)
{
    const QFileInfo file(settings.fileName());
    return settings.status() == QSettings::NoError && (!file.exists() || file.isFile());
}

} // namespace

int Preferences::number(const QString &key, int otherwise, int least, int most)
{
    const QSettings settings = store();
    if (!usable(settings)) {
        sayThatItFails(settings);
        return otherwise;
    }
    bool isNumber = false;
    const int stored = settings.value(key).toInt(&isNumber);
    return isNumber && stored >= least && stored <= most ? stored : otherwise;
}

void Preferences::setNumber(const QString &key, int value)
{
    QSettings settings = store();
    if (settings.value(key) == QVariant(value))
        return;
    settings.setValue(key, value);
    settings.sync();
    if (!usable(settings))
        sayThatItFails(settings);
}

QString Preferences::fileName()
{
    return store().fileName();
}
