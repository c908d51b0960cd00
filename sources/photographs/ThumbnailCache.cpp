#include "sources/photographs/ThumbnailCache.h"

#include "sources/photographs/FileNames.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImageReader>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cstdio>
#include <cstring>

namespace
{

/// The characters that stand in an address as they are, besides letters and digits.
constexpr char PLAIN[] = "-_.~!$&'()*+,:=@/";

QString cacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/thumbnails";
}

QString secondsOf(const FileStamp &stamp)
{
    return QString::number(stamp.modifiedNs / NS_PER_SECOND);
}

bool isPlain(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || (byte != 0 && std::strchr(PLAIN, byte));
}

} // namespace

QByteArray ThumbnailCache::uriOf(const QString &path)
{
    QByteArray uri("file://");
    for (const char byte : FileNames::encode(path)) {
        if (isPlain(byte))
            uri += byte;
        else
            uri += '%' + QByteArray(1, byte).toHex().toUpper();
    }
    return uri;
}

QString ThumbnailCache::fileFor(const QString &path)
{
    const QByteArray name = QCryptographicHash::hash(uriOf(path), QCryptographicHash::Md5).toHex();
    return cacheFolder() + "/normal/" + QString::fromLatin1(name) + ".png";
}

QImage ThumbnailCache::read(const QString &path, const FileStamp &stamp)
{
    PictureFile file(fileFor(path));
    if (file.problem() != PictureProblem::None)
        return {};
    QImageReader reader(&file.device(), "png");
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > SIDE || size.height() > SIDE)
        return {};
    // The reader's own list of texts splits such keys at their colons.
    const QImage image = reader.read();
    const QString bytes = image.text("Thumb::Size");
    const bool isOfThat = image.text("Thumb::URI").toLatin1() == uriOf(path) &&
                          image.text("Thumb::MTime") == secondsOf(stamp) &&
                          (bytes.isEmpty() || bytes == QString::number(stamp.bytes));
    return isOfThat ? image : QImage();
}

void ThumbnailCache::write(const QString &path, const FileStamp &stamp, const QImage &thumbnail)
{
    if (path.startsWith(cacheFolder() + '/'))
        return;
    const QString file = fileFor(path);
    const QString folder = file.left(file.lastIndexOf('/'));
    const bool isNew = !QDir(folder).exists();
    if (isNew && !QDir().mkpath(folder))
        return;
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    if (isNew) {
        QFile::setPermissions(cacheFolder(), owner | QFile::ExeOwner);
        QFile::setPermissions(folder, owner | QFile::ExeOwner);
    }
    // Only its owner may open a temporary file. It gets its name when it is whole, but nobody waits
    // for the disk: what a power cut leaves of it is no picture, and is made again.
    QTemporaryFile unnamed(file);
    if (!unnamed.open())
        return;
    QImage image = thumbnail;
    image.setText("Thumb::URI", QString::fromLatin1(uriOf(path)));
    image.setText("Thumb::MTime", secondsOf(stamp));
    image.setText("Thumb::Size", QString::number(stamp.bytes));
    image.setText("Software", "Document Camera");
    // The fast compression takes half of the time, and a sixth more bytes.
    constexpr int FAST = 85;
    const bool isWhole = image.save(&unnamed, "png", FAST) && unnamed.flush();
    const QByteArray name = QFile::encodeName(unnamed.fileName());
    if (isWhole && std::rename(name.constData(), QFile::encodeName(file).constData()) == 0)
        unnamed.setAutoRemove(false);
}
