#include "tests/media/TestFilm.h"

#include <QDebug>
#include <QFile>
#include <QImage>
#include <QProcess>

namespace
{

bool run(const QStringList &arguments)
{
    QProcess ffmpeg;
    ffmpeg.setProcessChannelMode(QProcess::MergedChannels);
    ffmpeg.setStandardInputFile(QProcess::nullDevice());
    ffmpeg.start(QStringLiteral("ffmpeg"), arguments);
    const bool done = ffmpeg.waitForFinished(120000) && ffmpeg.exitCode() == 0;
    if (!done)
        qWarning().noquote() << ffmpeg.errorString() << ffmpeg.readAll();
    return done;
}

} // namespace

bool TestFilm::write(const QString &path) const
{
    QString picture = QStringLiteral("nullsrc=s=32x8:r=%1:d=%2,format=gray,"
                                     "geq=lum='if(bitand(N,pow(2,floor(X*16/W))),235,16)',"
                                     "scale=%3:%4:flags=neighbor,setsar=1,format=%5")
                          .arg(rate)
                          .arg(seconds)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(pixelFormat);
    if (!filter.isEmpty())
        picture += ',' + filter;
    QStringList arguments{"-v", "error", "-y", "-f", "lavfi", "-i", picture};
    if (!sound.isEmpty())
        arguments += {"-f", "lavfi", "-i", QStringLiteral("sine=440:d=%1").arg(seconds)};
    arguments += video + sound + output;
    if (turned == 0)
        return run(arguments << path);
    const QString straight = path + ".straight.mp4";
    return run(arguments << straight) &&
           run({"-v", "error", "-y", "-i", straight, "-c", "copy", "-metadata:s:v:0",
                QStringLiteral("rotate=%1").arg(turned), path});
}

bool TestFilm::removeIndex(const QString &path)
{
    QFile film(path);
    if (!film.open(QIODevice::ReadWrite))
        return false;
    const int index = film.readAll().lastIndexOf("idx1");
    return index > 0 && film.resize(index);
}

int TestFilm::numberIn(const QImage &picture)
{
    int number = 0;
    for (int bit = 0; bit < 16; ++bit) {
        const int x = (2 * bit + 1) * picture.width() / 32;
        if (qGray(picture.pixel(x, picture.height() / 2)) > 128)
            number |= 1 << bit;
    }
    return number;
}
