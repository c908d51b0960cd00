#include "sources/film/FilmFile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{

constexpr qint64 blockBytes = 4096;

bool readsAt(QFile &file, qint64 offset)
{
    char block[blockBytes];
    return file.seek(offset) && file.read(block, blockBytes) >= 0;
}

} // namespace

bool FilmFile::isReadable(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return false;
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && readsAt(file, 0) &&
           readsAt(file, std::max<qint64>(0, file.size() - blockBytes));
}
