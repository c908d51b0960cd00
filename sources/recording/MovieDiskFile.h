#pragma once

#include "sources/recording/MovieDisk.h"

#include <sys/stat.h>

#include <QByteArray>

/// A movie's file in a folder. It is made when the first bytes are written, so that a movie that
/// ends before that, for whatever reason, leaves nothing behind.
class MovieDiskFile : public MovieDisk
{
public:
    /// `fileName` in the file system's encoding.
    explicit MovieDiskFile(QByteArray fileName);
    ~MovieDiskFile() override;
    MovieDiskFile(const MovieDiskFile &) = delete;
    MovieDiskFile &operator=(const MovieDiskFile &) = delete;

    /// Finds out whether the file can be made. An earlier one of that name is left as it is.
    [[nodiscard]] bool open();
    void close();
    /// Whether the name still leads to the file that is being written; before that, whether the
    /// folder is still where it was. After open().
    [[nodiscard]] bool inPlace() const;
    /// What the disk has left for this user; -1 when it does not say. After open().
    [[nodiscard]] qint64 freeBytes() const;
    /// 0 before it is made.
    [[nodiscard]] qint64 size() const;
    /// Removes the file if it was made and the name still leads to it.
    void remove();

    [[nodiscard]] bool write(qint64 offset, const QByteArray &bytes) override;
    [[nodiscard]] bool resize(qint64 size) override;
    [[nodiscard]] bool sync() override;

    /// The error number of the first operation that failed; 0 when none did.
    [[nodiscard]] int error() const { return m_error; }

private:
    [[nodiscard]] bool canBeMade() const;
    [[nodiscard]] bool make();
    bool noteFailure();

    const QByteArray m_fileName;
    const QByteArray m_folderName;
    /// Of the folder, for questions about it.
    int m_folder = -1;
    int m_descriptor = -1;
    int m_error = 0;
    bool m_folderSynced = false;
};
