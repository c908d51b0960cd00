// A settings file that anything may have been written into: the program starts with it.

#include "settings/Config.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

/// A home folder of the fuzzer's own, and the settings file in it.
QString settingsFile()
{
    static const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    QCoreApplication::setOrganizationName("Fuzz");
    QCoreApplication::setApplicationName("Settings");
    QDir(home.path()).mkpath("Fuzz");
    return QSettings().fileName();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QString path = settingsFile();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        std::abort();
    file.close();
    const Config settings;
    return 0;
}
