#include "sources/recording/MovieTrack.h"

#include "sources/recording/AtomWriter.h"

#include <QtEndian>

#include <algorithm>

namespace
{

enum { Durations, Keys, Chunks, Sizes, Offsets };

/// Version 1 of an atom counts time in 64 bits.
constexpr std::uint32_t LONG_TIMES = 1U << 24;
constexpr std::uint32_t LANGUAGE_UNDETERMINED = 0x55C4;

void putMatrix(AtomWriter &out)
{
    constexpr std::uint32_t ONE = 0x00010000;
    for (const std::uint32_t value : {ONE, 0U, 0U, 0U, ONE, 0U, 0U, 0U, 0x40000000U})
        out.put32(value);
}

void putHandler(AtomWriter &out, const char *kind, const char *subtype, const QByteArray &name)
{
    out.begin("hdlr");
    out.put32(0);
    out.put(QByteArray(kind, 4));
    out.put(QByteArray(subtype, 4));
    out.zeros(12);
    out.put8(static_cast<std::uint8_t>(name.size()));
    out.put(name);
    out.end();
}

void putDataReference(AtomWriter &out)
{
    constexpr std::uint32_t IN_THIS_FILE = 1;
    out.begin("dinf");
    out.begin("dref");
    out.put32(0);
    out.put32(1);
    out.begin("url ");
    out.put32(IN_THIS_FILE);
    out.end();
    out.end();
    out.end();
}

} // namespace

MovieTrack::MovieTrack(Kind kind, std::uint32_t timeScale, QByteArray description,
                       std::uint32_t usualDuration, int pictureWidth, int pictureHeight)
    : m_kind(kind)
    , m_timeScale(timeScale)
    , m_description(std::move(description))
    , m_pictureWidth(pictureWidth)
    , m_pictureHeight(pictureHeight)
    , m_lastDuration(usualDuration)
{
}

void MovieTrack::addChunk(qint64 offset, const QVector<MovieSample> &samples)
{
    ++m_chunks;
    const auto count = static_cast<std::uint32_t>(samples.size());
    if (count != m_samplesInLastChunk) {
        for (const std::uint32_t value : {m_chunks, count, 1U})
            m_tables[Chunks].add(value);
        m_samplesInLastChunk = count;
    }
    m_tables[Offsets].add(static_cast<std::uint32_t>(offset >> 32));
    m_tables[Offsets].add(static_cast<std::uint32_t>(offset));
    for (const MovieSample &sample : samples) {
        if (m_samples == 0) {
            m_firstTime = sample.time;
        } else {
            removeDuration();
            m_lastDuration =
                static_cast<std::uint32_t>(std::max<qint64>(1, sample.time - m_lastTime));
            addDuration(m_lastDuration);
        }
        m_lastTime = m_samples == 0 ? sample.time : m_lastTime + m_lastDuration;
        addDuration(m_lastDuration);
        ++m_samples;
        m_tables[Sizes].add(sample.bytes);
        if (sample.key && m_kind == Kind::Pictures)
            m_tables[Keys].add(m_samples);
    }
}

MovieTrack::Counts MovieTrack::counts() const
{
    Counts counts{};
    for (int n = 0; n < TABLES; ++n)
        counts[static_cast<size_t>(n)] = m_tables[static_cast<size_t>(n)].count();
    return counts;
}

MovieTrack::Counts MovieTrack::roomToGrow() const
{
    // Sound has 44100 / 1024 packets a second, a camera not as many pictures; a file is appended to
    // about twice a second.
    constexpr int SAMPLES_A_MINUTE = 60 * 44;
    constexpr int CHUNKS_A_MINUTE = 60 * 4;
    Counts room = counts();
    for (size_t n = 0; n < TABLES && !isEmpty(); ++n) {
        const bool ofChunks = n == Chunks || n == Offsets;
        room[n] += std::max(ofChunks ? CHUNKS_A_MINUTE : SAMPLES_A_MINUTE, room[n] / 4);
    }
    return room;
}

qint64 MovieTrack::end(std::uint32_t scale) const
{
    return isEmpty() ? 0 : scaled(m_lastTime + m_lastDuration, scale);
}

qint64 MovieTrack::scaled(qint64 time, std::uint32_t scale) const
{
    return (time * scale + m_timeScale / 2) / m_timeScale;
}

void MovieTrack::Table::add(std::uint32_t value)
{
    char bytes[4];
    qToBigEndian(value, bytes);
    entries.append(bytes, 4);
}

void MovieTrack::Table::write(AtomWriter &out, int written, const int *room) const
{
    const int kept = std::clamp(written, 0, count()) * entrySize;
    out.begin(type);
    out.put32(0);
    if (qstrncmp(type, "stsz", 4) == 0)
        out.put32(0); // the samples differ in size
    out.put32(static_cast<std::uint32_t>(count()));
    out.leaveOut(kept);
    out.put(entries.mid(kept));
    out.end();
    if (!room)
        return;
    out.begin("free");
    out.leaveOut(static_cast<qint64>(*room - count()) * entrySize);
    out.end();
}

/// Durations are counted in runs of the same.
void MovieTrack::addDuration(std::uint32_t duration)
{
    QByteArray &entries = m_tables[Durations].entries;
    char *last = entries.isEmpty() ? nullptr : entries.data() + entries.size() - 8;
    if (last && qFromBigEndian<std::uint32_t>(last + 4) == duration) {
        qToBigEndian(qFromBigEndian<std::uint32_t>(last) + 1, last);
        return;
    }
    m_tables[Durations].add(1);
    m_tables[Durations].add(duration);
}

void MovieTrack::removeDuration()
{
    QByteArray &entries = m_tables[Durations].entries;
    char *last = entries.data() + entries.size() - 8;
    const auto count = qFromBigEndian<std::uint32_t>(last);
    if (count > 1)
        qToBigEndian(count - 1, last);
    else
        entries.chop(8);
}

void MovieTrack::write(AtomWriter &out, int id, std::uint32_t movieScale, const Counts &written,
                       const Counts *room) const
{
    constexpr std::uint32_t SHOWN = 0x7;
    const bool sound = m_kind == Kind::Sound;
    const qint64 start = scaled(m_firstTime, movieScale);
    out.begin("trak");
    out.begin("tkhd");
    out.put32(LONG_TIMES | SHOWN);
    out.zeros(16);
    out.put32(static_cast<std::uint32_t>(id));
    out.zeros(4);
    out.put64(static_cast<std::uint64_t>(end(movieScale)));
    out.zeros(12);
    out.put16(sound ? 0x0100 : 0);
    out.zeros(2);
    putMatrix(out);
    out.put32(static_cast<std::uint32_t>(m_pictureWidth) << 16);
    out.put32(static_cast<std::uint32_t>(m_pictureHeight) << 16);
    out.end();
    if (start > 0) {
        out.begin("edts");
        out.begin("elst");
        out.put32(LONG_TIMES);
        out.put32(2);
        // Nothing up to the first sample, then all of them.
        for (const auto &[duration, mediaTime] :
             {std::pair(start, static_cast<qint64>(-1)),
              std::pair(end(movieScale) - start, static_cast<qint64>(0))}) {
            out.put64(static_cast<std::uint64_t>(duration));
            out.put64(static_cast<std::uint64_t>(mediaTime));
            out.put32(0x00010000);
        }
        out.end();
        out.end();
    }
    writeMedia(out, written, room);
    out.end();
}

void MovieTrack::writeMedia(AtomWriter &out, const Counts &written, const Counts *room) const
{
    const bool sound = m_kind == Kind::Sound;
    out.begin("mdia");
    out.begin("mdhd");
    out.put32(LONG_TIMES);
    out.zeros(16);
    out.put32(m_timeScale);
    out.put64(static_cast<std::uint64_t>(end(m_timeScale) - m_firstTime));
    out.put16(LANGUAGE_UNDETERMINED);
    out.zeros(2);
    out.end();
    putHandler(out, "mhlr", sound ? "soun" : "vide", sound ? "SoundHandler" : "VideoHandler");
    out.begin("minf");
    if (sound) {
        out.begin("smhd");
        out.zeros(8);
    } else {
        out.begin("vmhd");
        out.put32(1);
        out.zeros(8);
    }
    out.end();
    putHandler(out, "dhlr", "url ", "DataHandler");
    putDataReference(out);
    writeTables(out, written, room);
    out.end();
    out.end();
}

void MovieTrack::writeTables(AtomWriter &out, const Counts &written, const Counts *room) const
{
    // The durations written last may have changed since.
    constexpr int UNSETTLED = 2;
    out.begin("stbl");
    out.begin("stsd");
    out.put32(0);
    out.put32(1);
    out.put(m_description);
    out.end();
    for (size_t n = 0; n < TABLES; ++n) {
        // Every packet of sound is a key: it has no table of them.
        if (n == Keys && m_kind == Kind::Sound)
            continue;
        const int settled = n == Durations ? written[n] - UNSETTLED : written[n];
        m_tables[n].write(out, settled, room ? &(*room)[n] : nullptr);
    }
    out.end();
}
