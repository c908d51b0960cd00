#pragma once

#include <QByteArray>
#include <QVector>

#include <array>
#include <cstdint>

class AtomWriter;

/// An encoded picture or packet of sound as the index names it.
struct MovieSample {
    /// In units of the track's time scale; later than the sample before.
    qint64 time = 0;
    std::uint32_t bytes = 0;
    /// Whether decoding can begin here.
    bool key = true;
};

/// The tables of one stream of a QuickTime movie: when its samples are shown, how long they are,
/// and where they lie in the file. Entries once made do not change, but for the last two of the
/// durations.
class MovieTrack
{
public:
    enum class Kind { Pictures, Sound };
    static constexpr int TABLES = 5;
    using Counts = std::array<int, TABLES>;

    /// `timeScale`: units a second. `description`: the entry of the sample description table.
    /// `pictureWidth` and `pictureHeight` in pixels, 0 for sound. `usualDuration` of the last
    /// sample while it is the only one.
    MovieTrack(Kind kind, std::uint32_t timeScale, QByteArray description,
               std::uint32_t usualDuration, int pictureWidth = 0, int pictureHeight = 0);

    /// Samples that lie behind each other in the file from `offset` on; at least one.
    void addChunk(qint64 offset, const QVector<MovieSample> &samples);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] bool isEmpty() const { return m_samples == 0; }
    /// The entries in each table.
    [[nodiscard]] Counts counts() const;

    /// Room for about a minute more, or a quarter more where that is more. A track that is empty is
    /// not written and gets none.
    [[nodiscard]] Counts roomToGrow() const;

    /// From the start of the movie to the end of the last sample, in units of `scale` a second.
    [[nodiscard]] qint64 end(std::uint32_t scale) const;

    /// The atom "trak". `written`: entries of each table that the file holds at this very place;
    /// they are left out. `room`: the entries that each table gets room for, at least as many as
    /// there are; nullptr for no more than needed. The size of the atom follows from the room
    /// alone.
    void write(AtomWriter &out, int id, std::uint32_t movieScale, const Counts &written,
               const Counts *room) const;

private:
    struct Table {
        const char (&type)[5];
        int entrySize;
        QByteArray entries;

        [[nodiscard]] int count() const { return entries.size() / entrySize; }
        void add(std::uint32_t value);
        void write(AtomWriter &out, int written, const int *room) const;
    };

    void addDuration(std::uint32_t duration);
    void removeDuration();
    void writeMedia(AtomWriter &out, const Counts &written, const Counts *room) const;
    void writeTables(AtomWriter &out, const Counts &written, const Counts *room) const;
    [[nodiscard]] qint64 scaled(qint64 time, std::uint32_t scale) const;

    const Kind m_kind;
    const std::uint32_t m_timeScale;
    const QByteArray m_description;
    const int m_pictureWidth;
    const int m_pictureHeight;

    std::uint32_t m_samples = 0;
    std::uint32_t m_chunks = 0;
    std::uint32_t m_samplesInLastChunk = 0;
    qint64 m_firstTime = 0;
    qint64 m_lastTime = 0;
    /// The last sample is taken to last as long as the one before.
    std::uint32_t m_lastDuration;

    std::array<Table, TABLES> m_tables{
        {{"stts", 8, {}}, {"stss", 4, {}}, {"stsc", 12, {}}, {"stsz", 4, {}}, {"co64", 8, {}}}};
};
