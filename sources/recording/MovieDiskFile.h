#pragma once

#include "sources/recording/MovieDisk.h"

#include <sys/stat.h>

#include <QByteArray>

/// A movie's file in a folder.
class MovieDiskFile : public MovieDisk
{
public:
    /// `fileName` in the file system's encoding.
    explicit MovieDiskFile(QByteArray fileName);
    ~MovieDiskFile() override;
    MovieDiskFile(const MovieDiskFile &) = delete;
    MovieDiskFile &operator=(const MovieDiskFile &) = delete;

    /// Makes the file, empty.
    [[nodiscard]] bool open();
    void close();
    /// Any thread after open().
    [[nodiscard]] bool inPlace() const;
    /// What the disk has left for this user; -1 when it does not say. After open().
    [[nodiscard]] qint64 freeBytes() const;
    /// After open().
    [[nodiscard]] qint64 size() const;
    /// Removes the file if the name still leads to it.
    void remove();

    [[nodiscard]] bool write(qint64 offset, const QByteArray &bytes) override;
    [[nodiscard]] bool resize(qint64 size) override;
    [[nodiscard]] bool sync() override;

    /// The error number of the first operation that failed; 0 when none did.
    [[nodiscard]] int error() const { return m_error; }

private:
    bool noteFailure();

    const QByteArray m_fileName;
    int m_descriptor = -1;
    /// What was opened under that name.
    struct stat m_file {
    };
    int m_error = 0;
    bool m_folderSynced = false;
};
