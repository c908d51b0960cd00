#include "settings/Preferences.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>
#include <QVariant>

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

/// Invalid when there is none.
QVariant stored(const QString &key)
{
    const QSettings settings = store();
    if (usable(settings))
        return settings.value(key);
    sayThatItFails(settings);
    return {};
}

void keep(const QString &key, const QVariant &value)
{
    QSettings settings = store();
    if (settings.value(key) == value)
        return;
    settings.setValue(key, value);
    settings.sync();
    if (!usable(settings))
        sayThatItFails(settings);
}

} // namespace

int Preferences::number(const QString &key, int otherwise, int least, int most)
{
    bool isNumber = false;
    const int number = stored(key).toInt(&isNumber);
    return isNumber && number >= least && number <= most ? number : otherwise;
}

void Preferences::setNumber(const QString &key, int value)
{
    keep(key, value);
}

QString Preferences::text(const QString &key)
{
    return stored(key).toString();
}

void Preferences::setText(const QString &key, const QString &value)
{
    if (!value.isEmpty() || stored(key).isValid())
        keep(key, value);
}

QString Preferences::fileName()
{
    return store().fileName();
}
