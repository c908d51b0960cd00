#include "PhotographList.h"

#include <algorithm>

QStringList PhotographList::list(const QDir &dir)
{
    static const QStringList patterns{"*.bmp", "*.jpg", "*.jpeg", "*.png", "*.gif"};
    return dir.entryList(patterns,
                         QDir::Files | QDir::Readable | QDir::NoDotAndDotDot | QDir::CaseSensitive,
                         QDir::Name);
}

int PhotographList::previousIndex(int current)
{
    return std::max(current - 1, 0);
}

int PhotographList::nextIndex(int current, int count)
{
    return std::min(current + 1, count - 1);
}

int PhotographList::wrappedIndex(int current, int count)
{
    return count > 0 ? (current + 1) % count : -1;
}
