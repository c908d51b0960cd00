#pragma once

#include "sources/recording/MovieTrack.h"

#include <vector>

/// The atom "moov" of a QuickTime movie: what is shown when, and where in the file it lies.
class MovieIndex
{
public:
    using Counts = std::vector<MovieTrack::Counts>;

    /// Returns the track's number, from 0.
    int addTrack(MovieTrack track);
    void addChunk(int track, qint64 offset, const QVector<MovieSample> &samples);

    [[nodiscard]] bool hasPictures() const;
    /// The entries in each table of each track.
    [[nodiscard]] Counts counts() const;
    /// See MovieTrack::roomToGrow.
    [[nodiscard]] Counts roomToGrow() const;
    [[nodiscard]] bool fits(const Counts &room) const;

    /// Size of the atom in bytes with that room; nullptr for no more than needed.
    [[nodiscard]] qint64 size(const Counts *room) const;
    /// See MovieTrack::write. `written` may be empty for nothing. A track without samples is left
    /// out.
    void write(AtomWriter &out, const Counts &written, const Counts *room) const;

private:
    std::vector<MovieTrack> m_tracks;
};
