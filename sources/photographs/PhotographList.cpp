#include "sources/photographs/PhotographList.h"

#include <algorithm>

namespace
{

const QStringList &patterns()
{
    static const QStringList all{"*.bmp", "*.jpg", "*.jpeg", "*.png", "*.gif"};
    return all;
}

} // namespace

QStringList PhotographList::list(const QDir &dir)
{
    return dir.entryList(patterns(),
                         QDir::Files | QDir::Readable | QDir::NoDotAndDotDot | QDir::CaseSensitive,
                         QDir::Name);
}

bool PhotographList::isPictureName(const QString &name)
{
    return std::any_of(patterns().begin(), patterns().end(), [&name](const QString &pattern) {
        return name.endsWith(pattern.mid(1), Qt::CaseSensitive);
    });
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
