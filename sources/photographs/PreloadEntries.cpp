#include "sources/photographs/PreloadEntries.h"

#include <algorithm>
#include <utility>

namespace
{

PictureReader::Reading dropped(PreloadEntry &entry)
{
    entry.isRead = false;
    return std::exchange(entry.reading, PictureReader::Reading());
}

PictureReader::Reading droppedForGood(PreloadEntry &entry)
{
    entry.isTooLarge = true;
    return dropped(entry);
}

} // namespace

// The thread sanitizer does not see the toolkit's reference counting, so the text is copied.
PreloadEntry::PreloadEntry(const QString &itsPath)
    : path(itsPath.constData(), itsPath.size())
{
}

PreloadEntries::Ptr PreloadEntries::find(const QString &path) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&path](const Ptr &entry) { return entry->path == path; });
    return found == m_entries.end() ? nullptr : *found;
}

bool PreloadEntries::has(const Ptr &entry) const
{
    return std::find(m_entries.begin(), m_entries.end(), entry) != m_entries.end();
}

bool PreloadEntries::isFirst(const Ptr &entry) const
{
    return !m_entries.empty() && m_entries.front() == entry;
}

PreloadEntries::Ptr PreloadEntries::nextUnread() const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [](const Ptr &entry) {
        return !entry->isRead && !entry->isBeingRead && !entry->isTooLarge;
    });
    return found == m_entries.end() ? nullptr : *found;
}

std::vector<PreloadEntries::Ptr> PreloadEntries::replace(std::vector<Ptr> entries)
{
    return std::exchange(m_entries, std::move(entries));
}

bool PreloadEntries::hasRoomFor(const Ptr &entry, qint64 bytes) const
{
    for (const Ptr &before : m_entries) {
        if (before == entry)
            break;
        bytes += before->bytes();
    }
    entry->isTooLarge = bytes > m_mostBytes;
    return !entry->isTooLarge;
}

PreloadEntries::Dropped PreloadEntries::makeRoom(const Ptr &entry, qint64 bytes, bool urgent)
{
    Dropped all;
    const auto place = std::find(m_entries.begin(), m_entries.end(), entry);
    const bool ofAll = urgent || place == m_entries.end();
    qint64 kept = bytes;
    for (auto before = m_entries.begin(); !ofAll && before != place; ++before)
        kept += (*before)->bytes();
    for (auto other = ofAll ? m_entries.begin() : place; other != m_entries.end(); ++other) {
        if (*other == entry)
            continue;
        kept += (*other)->bytes();
        if (kept <= m_mostBytes || (*other)->isAwaited || !(*other)->isRead)
            continue;
        kept -= (*other)->bytes();
        all.push_back(droppedForGood(**other));
    }
    return all;
}

PreloadEntries::Dropped PreloadEntries::keepWithinBound()
{
    Dropped all;
    qint64 kept = 0;
    for (const Ptr &entry : m_entries) {
        kept += entry->bytes();
        if (kept <= m_mostBytes || entry->isAwaited || !entry->isRead)
            continue;
        kept -= entry->bytes();
        all.push_back(droppedForGood(*entry));
    }
    return all;
}

PreloadEntries::Dropped PreloadEntries::dropAll()
{
    Dropped all;
    for (const Ptr &entry : m_entries) {
        if (entry->isRead && !entry->isAwaited && !entry->isLate)
            all.push_back(dropped(*entry));
    }
    return all;
}
