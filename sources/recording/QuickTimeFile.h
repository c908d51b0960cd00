#pragma once

#include "sources/recording/MovieIndex.h"

#include <QByteArray>
#include <QVector>

class AtomWriter;
class MovieDisk;

/// Writes a QuickTime movie so that the file is one at every moment, whichever write is the last
/// that reaches the disk.
///
///     ftyp | mdat: the samples, then room for more | either of two places for the index | mdat
///
/// New samples are written behind the others, and the index that names them into the place that is
/// not in use; when both are on the disk, four bytes in front of the places make the other one
/// valid. A place holds room for about a minute, so that a commit writes what has been added alone,
/// however long the movie is. When the samples come near the places or a place is full, two new
/// ones are made further on, and the size of "mdat" leads to them; the last "mdat" is empty, or
/// what is not valid yet. At the end the index is written right behind the samples, "mdat" is made
/// to lead to it, and the rest is cut off.
///
/// One thread at a time.
class QuickTimeFile
{
public:
    struct Chunk {
        int track = 0;
        QVector<MovieSample> samples;
        /// The bytes of all samples, one after the other.
        QByteArray bytes;
    };

    /// `disk` outlives the file and is empty.
    explicit QuickTimeFile(MovieDisk &disk);

    /// Returns the track's number, from 0. A track is in the movie from its first sample on.
    int addTrack(MovieTrack track);

    /// Appends the chunks and makes them part of the movie. On failure the movie stays what it was;
    /// it can still be finished.
    [[nodiscard]] bool append(const QVector<Chunk> &chunks);

    /// Leaves nothing in the file but samples and index. On failure the file stays a movie, only
    /// larger. Nothing can be appended afterwards.
    bool finish();

    /// Whether the file is a movie with at least one picture by now.
    [[nodiscard]] bool isMovie() const { return m_places.offset > 0 && m_index.hasPictures(); }

private:
    struct Place {
        qint64 offset = 0;
        /// What has been written there.
        MovieIndex::Counts written;
    };
    struct Places {
        /// Where the bytes are that make one of the two valid; 0 while there are none.
        qint64 offset = 0;
        qint64 end = 0;
        MovieIndex::Counts room;
        Place place[2];
        int inUse = 0;
    };

    [[nodiscard]] bool writePieces(const AtomWriter &out);
    [[nodiscard]] bool writeIndex(Places &places, int number);
    [[nodiscard]] bool writePlaces(Places &places);
    [[nodiscard]] bool makePlaces(qint64 samplesEnd);
    [[nodiscard]] bool commit();
    [[nodiscard]] bool leadTo(qint64 indexOffset);

    MovieDisk &m_disk;
    MovieIndex m_index;
    qint64 m_samplesEnd;
    Places m_places;
};
