#include "sources/film/FilmFile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{

constexpr qint64 BLOCK_BYTES = 4096;

bool readsAt(QFile &file, qint64 offset)
{
    char block[BLOCK_BYTES];
    return file.seek(offset) && file.read(block, BLOCK_BYTES) >= 0;
}

} // namespace

bool FilmFile::isReadable(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return false;
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && readsAt(file, 0) &&
           readsAt(file, std::max<qint64>(0, file.size() - BLOCK_BYTES));
}
