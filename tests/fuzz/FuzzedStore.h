#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A home folder of the fuzzer's own, into which it writes the settings file of each input. The
/// program has another name each time, as the toolkit remembers by its name and time what a file
/// held.
class FuzzedStore
{
public:
    FuzzedStore()
    {
        qputenv("HOME", m_home.path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", m_home.path().toLocal8Bit());
        QCoreApplication::setOrganizationName("Fuzz");
        QDir(m_home.path()).mkpath("Fuzz");
    }

    /// Makes it the file that `fileName` tells of.
    template <class FileName>
    void write(const std::uint8_t *data, std::size_t size, FileName fileName)
    {
        // Far more than the toolkit remembers.
        constexpr int NAMES = 1000;
        m_number = (m_number + 1) % NAMES;
        QCoreApplication::setApplicationName(QString::number(m_number));
        QFile file(fileName());
        const auto *bytes = reinterpret_cast<const char *>(data);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes, qint64(size)) != qint64(size))
            std::abort();
    }

private:
    QTemporaryDir m_home;
    int m_number = 0;
};
