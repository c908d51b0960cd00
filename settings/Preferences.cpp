#include "settings/Preferences.h"

#include "diagnostics/TerminalLines.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>
#include <QVariant>

using TerminalLines::Line;

namespace
{

QSettings store()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope,
                     QCoreApplication::organizationName(),
                     QCoreApplication::applicationName() + " Extras");
}

bool usable(const QSettings &settings)
{
    // A fault in the file is only found when its keys are read.
    (void)settings.allKeys();
    const QFileInfo file(settings.fileName());
    return settings.status() == QSettings::NoError && (!file.exists() || file.isFile());
}

/// Invalid when there is none.
QVariant stored(const QString &key)
{
    const QSettings settings = store();
    if (usable(settings))
        return settings.value(key);
    TerminalLines::tell(Line::SettingsUnreadable, {settings.fileName()});
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
        TerminalLines::tell(Line::SettingsNotWritten, {settings.fileName()});
}

} // namespace

int Preferences::number(const QString &key, int otherwise, int least, int most)
{
    const QVariant value = stored(key);
    if (!value.isValid())
        return otherwise;
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (isNumber && number >= least && number <= most)
        return number;
    TerminalLines::tell(Line::SettingsOutOfRange,
                        {fileName(), QString("%1=%2").arg(key, value.toString())});
    return otherwise;
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
