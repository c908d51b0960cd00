#include "tests/media/MovieAtoms.h"

namespace
{

constexpr quint64 MEDIA = 0x6D646174; // "mdat"

} // namespace

MovieAtoms::MovieAtoms(const QByteArray &file)
    : m_file(file)
{
    int indices = 0;
    qint64 used = 0;
    for (const Atom &atom : children({0, file.size()})) {
        if (atom.type == "moov") {
            ++indices;
            used += atom.content.second - atom.content.first;
            for (const Atom &child : children(atom.content)) {
                if (child.type == "trak")
                    readTrack(child.content);
            }
        } else if (atom.type != "mdat" && atom.type != "free" && atom.type != "ftyp") {
            fail("unknown atom " + atom.type);
        }
    }
    if (indices != 1)
        fail(QString("%1 indices").arg(indices));
    for (const QVector<Sample> &track : m_tracks) {
        for (const Sample &sample : track)
            used += sample.bytes;
    }
    m_spareBytes = file.size() - used;
}

QVector<MovieAtoms::Atom> MovieAtoms::children(Range range)
{
    QVector<Atom> atoms;
    qint64 at = range.first;
    while (at < range.second && m_error.isEmpty()) {
        qint64 header = 8;
        auto size = static_cast<qint64>(number(at, 4));
        if (size == 1) {
            size = static_cast<qint64>(number(at + 8, 8));
            header = 16;
        } else if (size == 0 && range.second == m_file.size() && number(at + 4, 4) == MEDIA) {
            size = range.second - at; // up to the end of the file
        }
        if (size < header || at + size > range.second) {
            fail(QString("atom of %1 bytes at %2 of %3").arg(size).arg(at).arg(range.second));
            break;
        }
        atoms.append({m_file.mid(static_cast<int>(at) + 4, 4), {at + header, at + size}});
        at += size;
    }
    return atoms;
}

MovieAtoms::Range MovieAtoms::find(Range range, const char *type)
{
    for (const Atom &atom : children(range)) {
        if (atom.type == type)
            return atom.content;
    }
    fail(QString("no %1").arg(type));
    return {0, 0};
}

quint64 MovieAtoms::number(qint64 offset, int bytes) const
{
    quint64 value = 0;
    if (offset + bytes > m_file.size())
        return 0;
    for (int n = 0; n < bytes; ++n)
        value = value << 8 | static_cast<uchar>(m_file.at(static_cast<int>(offset) + n));
    return value;
}

void MovieAtoms::readTrack(Range track)
{
    const Range tables = find(find(find(track, "mdia"), "minf"), "stbl");
    const Range sizes = find(tables, "stsz");
    const Range chunks = find(tables, "stsc");
    const Range offsets = find(tables, "co64");
    const Range durations = find(tables, "stts");
    if (!m_error.isEmpty())
        return;
    const auto count = static_cast<qint64>(number(sizes.first + 8, 4));
    const auto chunkCount = static_cast<qint64>(number(offsets.first + 4, 4));
    const auto runs = static_cast<qint64>(number(chunks.first + 4, 4));
    const auto durationRuns = static_cast<qint64>(number(durations.first + 4, 4));
    if (sizes.second - sizes.first != 12 + 4 * count ||
        offsets.second - offsets.first != 8 + 8 * chunkCount ||
        chunks.second - chunks.first != 8 + 12 * runs ||
        durations.second - durations.first != 8 + 8 * durationRuns)
        return fail("a table is not as long as it says");
    qint64 timed = 0;
    for (qint64 run = 0; run < durationRuns; ++run)
        timed += static_cast<qint64>(number(durations.first + 8 + 8 * run, 4));
    QVector<Sample> samples;
    qint64 run = -1;
    for (qint64 chunk = 0; chunk < chunkCount; ++chunk) {
        if (run + 1 < runs &&
            static_cast<qint64>(number(chunks.first + 8 + 12 * (run + 1), 4)) == chunk + 1)
            ++run;
        auto at = static_cast<qint64>(number(offsets.first + 8 + 8 * chunk, 8));
        auto left = static_cast<qint64>(number(chunks.first + 8 + 12 * run + 4, 4));
        for (; left > 0 && samples.size() < count; --left) {
            const auto bytes =
                static_cast<qint64>(number(sizes.first + 12 + qint64{4} * samples.size(), 4));
            if (at + bytes > m_file.size())
                return fail("a sample is behind the end of the file");
            samples.append({at, bytes});
            at += bytes;
        }
    }
    if (samples.size() != count || timed != count)
        fail("the tables count differently");
    m_tracks.append(samples);
}

void MovieAtoms::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}
