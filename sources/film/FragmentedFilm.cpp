#include "sources/film/FragmentedFilm.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>

namespace
{

constexpr qint64 SEARCH_TIMEOUT_MS = 1000;
/// The header of a film in fragments and each of its fragments are far smaller.
constexpr qint64 LARGEST_BOX = 1 << 20;
constexpr int BOX_HEADER = 8;
/// No film is longer: that is a damaged time. In nanoseconds it still is a number.
constexpr double LONGEST_SECONDS = 1e9;

/// The fields of a box, one after the other; 0 beyond its end.
class Fields
{
public:
    explicit Fields(QByteArray content)
        : m_content(std::move(content))
    {
    }
    quint32 u32() { return next<quint32>(); }
    quint64 u64() { return next<quint64>(); }
    void skip(int bytes) { m_at += bytes; }
    [[nodiscard]] bool any() const { return m_at < m_content.size(); }

private:
    template <class Number>
    Number next()
    {
        const int at = m_at;
        m_at += static_cast<int>(sizeof(Number));
        return at >= 0 && m_at <= m_content.size()
                   ? qFromBigEndian<Number>(m_content.constData() + at)
                   : 0;
    }

    QByteArray m_content;
    int m_at = 0;
};

void forEachBox(const QByteArray &content,
                const std::function<void(const QByteArray &kind, const QByteArray &inside)> &use)
{
    int at = 0;
    while (content.size() - at >= BOX_HEADER) {
        const quint32 size = qFromBigEndian<quint32>(content.constData() + at);
        if (size < BOX_HEADER || size > static_cast<quint32>(content.size() - at))
            return;
        use(content.mid(at + 4, 4),
            content.mid(at + BOX_HEADER, static_cast<int>(size) - BOX_HEADER));
        at += static_cast<int>(size);
    }
}

struct Track {
    quint32 unitsPerSecond = 0;
    quint32 sampleDuration = 0;
    quint64 end = 0;
};

/// Adds up one file, box by box.
class Fragments
{
public:
    void addHeader(const QByteArray &moov)
    {
        forEachBox(moov, [this](const QByteArray &kind, const QByteArray &inside) {
            if (kind == "trak")
                addTrack(inside);
            else if (kind == "mvex")
                forEachBox(inside, [this](const QByteArray &each, const QByteArray &fields) {
                    if (each == "trex")
                        addDefaults(Fields(fields));
                });
        });
    }

    void addFragment(const QByteArray &moof)
    {
        forEachBox(moof, [this](const QByteArray &kind, const QByteArray &inside) {
            if (kind == "traf")
                addRuns(inside);
        });
    }

    [[nodiscard]] double seconds() const
    {
        double longest = 0;
        for (const auto &[number, track] : m_tracks) {
            if (track.unitsPerSecond > 0)
                longest = std::max(longest, static_cast<double>(track.end) / track.unitsPerSecond);
        }
        return longest <= LONGEST_SECONDS ? longest : 0;
    }

private:
    void addTrack(const QByteArray &trak)
    {
        quint32 number = 0;
        quint32 unitsPerSecond = 0;
        const auto look = [&](const QByteArray &kind, const QByteArray &inside) {
            if (kind != "tkhd" && kind != "mdhd")
                return;
            Fields fields(inside);
            // Two dates come first.
            fields.skip(fields.u32() >> 24 == 1 ? 16 : 8);
            (kind == "tkhd" ? number : unitsPerSecond) = fields.u32();
        };
        forEachBox(trak, [&](const QByteArray &kind, const QByteArray &inside) {
            look(kind, inside);
            if (kind == "mdia")
                forEachBox(inside, look);
        });
        m_tracks[number].unitsPerSecond = unitsPerSecond;
    }

    void addDefaults(Fields trex)
    {
        trex.skip(4);
        Track &track = m_tracks[trex.u32()];
        trex.skip(4);
        track.sampleDuration = trex.u32();
    }

    void addRuns(const QByteArray &traf)
    {
        Track *track = nullptr;
        quint32 sampleDuration = 0;
        forEachBox(traf, [&](const QByteArray &kind, const QByteArray &inside) {
            Fields fields(inside);
            const quint32 flags = fields.u32();
            if (kind == "tfhd") {
                track = &m_tracks[fields.u32()];
                fields.skip((flags & 1 ? 8 : 0) + (flags & 2 ? 4 : 0));
                sampleDuration = flags & 8 ? fields.u32() : track->sampleDuration;
            } else if (kind == "tfdt" && track) {
                track->end = flags >> 24 == 1 ? fields.u64() : fields.u32();
            } else if (kind == "trun" && track) {
                track->end += durationOf(fields, flags, sampleDuration);
            }
        });
    }

    static quint64 durationOf(Fields trun, quint32 flags, quint32 sampleDuration)
    {
        const quint32 samples = trun.u32();
        if (!(flags & 0x100))
            return quint64{samples} * sampleDuration;
        trun.skip((flags & 1 ? 4 : 0) + (flags & 4 ? 4 : 0));
        const int others =
            (flags & 0x200 ? 4 : 0) + (flags & 0x400 ? 4 : 0) + (flags & 0x800 ? 4 : 0);
        quint64 duration = 0;
        for (quint32 n = 0; n < samples && trun.any(); ++n) {
            duration += trun.u32();
            trun.skip(others);
        }
        return duration;
    }

    std::map<quint32, Track> m_tracks;
};

struct Box {
    QByteArray kind;
    qint64 content = 0;
    qint64 end = 0;
};

std::optional<Box> boxAt(QFile &file, qint64 at)
{
    if (!file.seek(at))
        return {};
    Fields header(file.read(qint64{2} * BOX_HEADER));
    const quint32 size = header.u32();
    const quint32 kind = qToBigEndian(header.u32());
    const bool large = size == 1;
    const quint64 bytes = large ? header.u64() : size;
    const int head = large ? 2 * BOX_HEADER : BOX_HEADER;
    if (bytes < static_cast<quint64>(head) || bytes > static_cast<quint64>(file.size() - at))
        return {};
    return Box{QByteArray(reinterpret_cast<const char *>(&kind), 4), at + head,
               at + static_cast<qint64>(bytes)};
}

} // namespace

double FragmentedFilm::seconds(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    QElapsedTimer search;
    search.start();
    Fragments fragments;
    std::optional<Box> box = boxAt(file, 0);
    if (!box || box->kind != "ftyp")
        return 0;
    for (; box; box = boxAt(file, box->end)) {
        if (search.hasExpired(SEARCH_TIMEOUT_MS))
            return 0;
        const bool header = box->kind == "moov";
        if (!header && box->kind != "moof")
            continue;
        const qint64 bytes = box->end - box->content;
        if (bytes > LARGEST_BOX || !file.seek(box->content))
            return 0;
        const QByteArray content = file.read(bytes);
        if (header)
            fragments.addHeader(content);
        else
            fragments.addFragment(content);
    }
    return fragments.seconds();
}
