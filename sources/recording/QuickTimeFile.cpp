#include "sources/recording/QuickTimeFile.h"

#include "sources/recording/AtomWriter.h"
#include "sources/recording/MovieDisk.h"

#include <algorithm>

namespace
{

/// Size of the atom that only a type makes, and of the header of "mdat" with a size of 64 bits.
constexpr qint64 HEADER = 8;
constexpr qint64 LONG_HEADER = 16;
/// The header of "mdat" begins at a multiple of 16, so that its size is written at one go.
constexpr qint64 MEDIA_OFFSET = 32;
/// New places begin at a multiple of this, so that no sample shares their part of the disk.
constexpr qint64 ALIGNMENT = 4096;
/// Room for samples before new places; at least so many times the index, so that new places cost
/// a fraction of what the samples do.
constexpr qint64 LEAST_GAP = 1 << 20;
constexpr qint64 GAP_OF_INDEX = 8;

/// Makes an atom of whatever follows, up to the end of the file: it is there until it is cut off,
/// or while new places are being made.
void putRest(AtomWriter &out)
{
    out.put32(0);
    out.put("mdat");
}

} // namespace

QuickTimeFile::QuickTimeFile(MovieDisk &disk)
    : m_disk(disk)
    , m_samplesEnd(MEDIA_OFFSET + LONG_HEADER)
{
}

int QuickTimeFile::addTrack(MovieTrack track)
{
    return m_index.addTrack(std::move(track));
}

bool QuickTimeFile::append(const QVector<Chunk> &chunks)
{
    QByteArray bytes;
    for (const Chunk &chunk : chunks)
        bytes += chunk.bytes;
    // What is left before the places is enough for the index at the end of the movie.
    const qint64 end = m_samplesEnd + bytes.size();
    const qint64 leastGap = m_index.size(&m_places.room) + HEADER;
    if (m_places.offset > 0 && end + leastGap > m_places.offset && !makePlaces(end))
        return false;
    if (!m_disk.write(m_samplesEnd, bytes))
        return false;
    for (const Chunk &chunk : chunks) {
        m_index.addChunk(chunk.track, m_samplesEnd, chunk.samples);
        m_samplesEnd += chunk.bytes.size();
    }
    const bool fits = m_places.offset > 0 && m_index.fits(m_places.room);
    return fits ? commit() : makePlaces(m_samplesEnd);
}

bool QuickTimeFile::finish()
{
    const qint64 end = m_samplesEnd + m_index.size(nullptr);
    if (m_places.offset == 0 || end + HEADER > m_places.offset)
        return false;
    AtomWriter out(m_samplesEnd);
    m_index.write(out, {}, nullptr);
    putRest(out);
    return writePieces(out) && m_disk.sync() && leadTo(m_samplesEnd) && m_disk.resize(end) &&
           m_disk.sync();
}

bool QuickTimeFile::writePieces(const AtomWriter &out)
{
    return std::all_of(out.pieces().begin(), out.pieces().end(), [this](const auto &piece) {
        return m_disk.write(piece.offset, piece.bytes);
    });
}

bool QuickTimeFile::writeIndex(Places &places, int number)
{
    Place &place = places.place[number];
    AtomWriter out(place.offset);
    m_index.write(out, place.written, &places.room);
    if (!writePieces(out))
        return false;
    place.written = m_index.counts();
    return true;
}

/// Two new places behind those in use, with the index in the first, and room for samples behind
/// `samplesEnd`. On failure those in use stay so.
bool QuickTimeFile::makePlaces(qint64 samplesEnd)
{
    Places places;
    places.room = m_index.roomToGrow();
    const qint64 size = m_index.size(&places.room);
    const qint64 gap = std::max(LEAST_GAP, GAP_OF_INDEX * size);
    const qint64 behind = std::max(samplesEnd + gap, m_places.end);
    places.offset = (behind + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
    places.place[0].offset = places.offset + HEADER;
    places.place[1].offset = places.place[0].offset + size + HEADER;
    places.end = places.place[1].offset + size + HEADER;
    if (!writePlaces(places) || !m_disk.sync()) {
        // Nothing leads there; should this fail too, the file is only longer than it need be.
        (void)m_disk.resize(m_places.end);
        return false;
    }
    if (!leadTo(places.offset))
        return false;
    m_places = places;
    return true;
}

bool QuickTimeFile::writePlaces(Places &places)
{
    const qint64 size = places.place[1].offset - places.place[0].offset - HEADER;
    AtomWriter out(places.offset);
    out.begin("free");
    out.end();
    out.leaveOut(size);
    out.begin("free"); // hides the second place
    out.leaveOut(size);
    out.end();
    putRest(out);
    return m_disk.resize(places.end) && writePieces(out) && writeIndex(places, 0);
}

/// Writes the index into the other place and makes that the valid one.
bool QuickTimeFile::commit()
{
    const int other = 1 - m_places.inUse;
    if (!writeIndex(m_places, other) || !m_disk.sync())
        return false;
    // An empty atom, or one that hides the first place and the header behind it.
    AtomWriter out(m_places.offset);
    out.begin("free");
    out.leaveOut(other == 0 ? 0 : m_places.place[1].offset - m_places.place[0].offset);
    out.end();
    if (!writePieces(out) || !m_disk.sync())
        return false;
    m_places.inUse = other;
    return true;
}

/// "mdat" ends where the index begins.
bool QuickTimeFile::leadTo(qint64 indexOffset)
{
    AtomWriter out(0);
    out.begin("ftyp");
    out.put("qt  ");
    out.put32(512);
    out.put("qt  ");
    out.end();
    out.begin("free");
    out.zeros(4);
    out.end();
    out.put32(1); // the size follows in 64 bits
    out.put("mdat");
    out.put64(static_cast<std::uint64_t>(indexOffset - MEDIA_OFFSET));
    return writePieces(out) && m_disk.sync();
}
