#pragma once

#include <QByteArray>

/// The file that a movie is written into. One thread at a time.
class MovieDisk
{
public:
    virtual ~MovieDisk() = default;

    /// Writes all of it or fails; the file grows as needed. A failure may leave a part written.
    [[nodiscard]] virtual bool write(qint64 offset, const QByteArray &bytes) = 0;
    /// Makes the file exactly that long; what is new reads as zeros.
    [[nodiscard]] virtual bool resize(qint64 size) = 0;
    /// Returns when everything so far would outlast a power cut.
    [[nodiscard]] virtual bool sync() = 0;
};
