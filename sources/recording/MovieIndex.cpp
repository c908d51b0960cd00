#include "sources/recording/MovieIndex.h"

#include "sources/recording/AtomWriter.h"

#include <algorithm>

namespace
{

/// Units a second of the whole movie's times.
constexpr std::uint32_t MOVIE_SCALE = 90000;

} // namespace

int MovieIndex::addTrack(MovieTrack track)
{
    m_tracks.push_back(std::move(track));
    return static_cast<int>(m_tracks.size()) - 1;
}

void MovieIndex::addChunk(int track, qint64 offset, const QVector<MovieSample> &samples)
{
    m_tracks[static_cast<size_t>(track)].addChunk(offset, samples);
}

bool MovieIndex::hasPictures() const
{
    return std::any_of(m_tracks.begin(), m_tracks.end(), [](const MovieTrack &track) {
        return track.kind() == MovieTrack::Kind::Pictures && !track.isEmpty();
    });
}

MovieIndex::Counts MovieIndex::counts() const
{
    Counts counts;
    for (const MovieTrack &track : m_tracks)
        counts.push_back(track.counts());
    return counts;
}

MovieIndex::Counts MovieIndex::roomToGrow() const
{
    Counts room;
    for (const MovieTrack &track : m_tracks)
        room.push_back(track.roomToGrow());
    return room;
}

bool MovieIndex::fits(const Counts &room) const
{
    const Counts needed = counts();
    if (room.size() != needed.size())
        return false;
    for (size_t track = 0; track < needed.size(); ++track) {
        for (size_t table = 0; table < needed[track].size(); ++table) {
            if (needed[track][table] > room[track][table])
                return false;
        }
    }
    return true;
}

qint64 MovieIndex::size(const Counts *room) const
{
    AtomWriter out(0);
    write(out, counts(), room);
    return out.offset();
}

void MovieIndex::write(AtomWriter &out, const Counts &written, const Counts *room) const
{
    qint64 end = 0;
    for (const MovieTrack &track : m_tracks)
        end = std::max(end, track.end(MOVIE_SCALE));
    out.begin("moov");
    out.begin("mvhd");
    out.put32(1U << 24); // times in 64 bits
    out.zeros(16);
    out.put32(MOVIE_SCALE);
    out.put64(static_cast<std::uint64_t>(end));
    out.put32(0x00010000); // speed
    out.put16(0x0100);     // volume
    out.zeros(10);
    for (const std::uint32_t value :
         {0x00010000U, 0U, 0U, 0U, 0x00010000U, 0U, 0U, 0U, 0x40000000U})
        out.put32(value);
    out.zeros(24);
    out.put32(static_cast<std::uint32_t>(m_tracks.size()) + 1);
    out.end();
    for (size_t n = 0; n < m_tracks.size(); ++n) {
        if (m_tracks[n].isEmpty())
            continue;
        m_tracks[n].write(out, static_cast<int>(n) + 1, MOVIE_SCALE,
                          n < written.size() ? written[n] : MovieTrack::Counts{},
                          room ? &(*room)[n] : nullptr);
    }
    out.end();
}
