#pragma once

#include "sources/photographs/PictureReader.h"

#include <QString>

#include <chrono>
#include <memory>
#include <vector>

/// A picture that PicturePreloader reads or keeps. Its members are guarded by the preloader's
/// mutex.
struct PreloadEntry {
    explicit PreloadEntry(const QString &itsPath);

    /// What it takes of the memory now.
    [[nodiscard]] qint64 bytes() const { return reading.picture.sizeInBytes(); }

    const QString path;
    /// Null and without a problem until it has been read.
    PictureReader::Reading reading;
    bool isRead = false;
    bool isBeingRead = false;
    /// It is to be checked before all others.
    bool isUrgent = false;
    /// The owner waits for it and will take a copy.
    bool isAwaited = false;
    /// The owner does not wait any more, but is to be notified.
    bool isLate = false;
    /// It would not fit into what may be kept beside those that come before it.
    bool isTooLarge = false;
    /// How often it was checked since it was added.
    int answers = 0;
    bool isDecoding = false;
    std::chrono::steady_clock::time_point lastSign;
};

/// Pictures in the order of importance, and what of them is kept within a bound. What is dropped is
/// handed to the caller, who lets go of it without a lock.
class PreloadEntries
{
public:
    using Ptr = std::shared_ptr<PreloadEntry>;
    using Dropped = std::vector<PictureReader::Reading>;

    explicit PreloadEntries(qint64 mostBytes)
        : m_mostBytes(mostBytes)
    {
    }

    /// Null when it is not among them.
    [[nodiscard]] Ptr find(const QString &path) const;
    [[nodiscard]] bool has(const Ptr &entry) const;
    [[nodiscard]] bool isFirst(const Ptr &entry) const;
    /// The most important one that is to be read; null when there is none.
    [[nodiscard]] Ptr nextUnread() const;

    /// Takes these instead, and gives the ones before.
    [[nodiscard]] std::vector<Ptr> replace(std::vector<Ptr> entries);
    /// Whether that picture can be kept beside those before it; marks it if not.
    [[nodiscard]] bool hasRoomFor(const Ptr &entry, qint64 bytes) const;
    /// Drops what could not be kept beside a picture of that size: of those behind it, or of all
    /// where it is `urgent` or not among them.
    [[nodiscard]] Dropped makeRoom(const Ptr &entry, qint64 bytes, bool urgent);
    /// Drops the least important pictures. One that somebody waits for is still delivered.
    [[nodiscard]] Dropped keepWithinBound();
    /// Drops all that nobody waits for. They are to be read again.
    [[nodiscard]] Dropped dropAll();

private:
    const qint64 m_mostBytes;
    std::vector<Ptr> m_entries;
};
