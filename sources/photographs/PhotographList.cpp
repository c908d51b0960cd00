#include "sources/photographs/PhotographList.h"

#include "sources/photographs/FileNames.h"

#include <algorithm>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

const QStringList &patterns()
{
    static const QStringList all{"*.bmp", "*.jpg", "*.jpeg", "*.png", "*.gif"};
    return all;
}

bool isPictureName(const char *name)
{
    return name[0] != '.' && PhotographList::isPictureName(QString::fromLatin1(name));
}

/// Whether an entry is a file, itself or where its link leads. A drive that says nothing of the
/// kind in its listing is asked.
bool isFile(int folder, const dirent &entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_REG;
    struct stat status = {};
    return fstatat(folder, entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

} // namespace

QStringList PhotographList::list(const QDir &dir)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(
        opendir(FileNames::encode(dir.absolutePath()).constData()), closedir);
    if (!folder)
        return {};
    QStringList names;
    while (const dirent *entry = readdir(folder.get())) {
        if (::isPictureName(entry->d_name) && isFile(dirfd(folder.get()), *entry) &&
            faccessat(dirfd(folder.get()), entry->d_name, R_OK, AT_EACCESS) == 0)
            names.append(FileNames::decode(entry->d_name));
    }
    names.sort(Qt::CaseSensitive);
    return names;
}

QStringList PhotographList::merged(const QStringList &old, const QStringList &now)
{
    QStringList all;
    all.reserve(now.size());
    std::set_union(old.begin(), old.end(), now.begin(), now.end(), std::back_inserter(all));
    return all;
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
