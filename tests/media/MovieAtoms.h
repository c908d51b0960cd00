#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// Reads the bytes of a QuickTime movie as strictly as the format is written down: what it does not
/// understand is an error.
class MovieAtoms
{
public:
    struct Sample {
        qint64 offset;
        qint64 bytes;
    };

    explicit MovieAtoms(const QByteArray &file);

    /// What is wrong with the file; empty for a movie.
    QString error() const { return m_error; }
    /// The samples of each track, in the order of the tracks.
    const QVector<QVector<Sample>> &tracks() const { return m_tracks; }
    /// Bytes that belong neither to a sample nor to the index nor to a header.
    qint64 spareBytes() const { return m_spareBytes; }

private:
    using Range = QPair<qint64, qint64>;
    struct Atom {
        QByteArray type;
        Range content;
    };

    QVector<Atom> children(Range range);
    Range find(Range range, const char *type);
    quint64 number(qint64 offset, int bytes) const;
    void readTrack(Range track);
    void fail(const QString &error);

    const QByteArray &m_file;
    QString m_error;
    QVector<QVector<Sample>> m_tracks;
    qint64 m_spareBytes = 0;
};
