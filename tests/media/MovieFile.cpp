#include "tests/media/MovieFile.h"

#include "tests/media/SyntheticPictures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr int TOOL_TIMEOUT_MS = 600000;
constexpr int LOUD = 8000;
constexpr int WHITE = 128;

} // namespace

MovieFile::MovieFile(const QString &fileName)
    : m_fileName(fileName)
{
}

QByteArray MovieFile::read(const QString &program, const QStringList &arguments,
                           QByteArray *complaints) const
{
    QProcess process;
    process.start(program, QStringList{"-v", "warning"} + arguments);
    process.waitForFinished(TOOL_TIMEOUT_MS);
    if (complaints)
        *complaints += process.readAllStandardError();
    return process.readAllStandardOutput();
}

QJsonObject MovieFile::description() const
{
    const QByteArray json =
        read("ffprobe", {"-show_format", "-show_streams", "-of", "json", m_fileName});
    return QJsonDocument::fromJson(json).object();
}

QString MovieFile::complaints() const
{
    QByteArray text;
    read("ffprobe", {"-show_format", "-show_streams", m_fileName}, &text);
    read("ffmpeg",
         {"-i", m_fileName, "-fps_mode", "passthrough", "-enc_time_base", "-1", "-f", "null", "-"},
         &text);
    return QString::fromUtf8(text);
}

qint64 MovieFile::contentBytes() const
{
    qint64 bytes = 0;
    const QList<QByteArray> sizes =
        read("ffprobe", {"-show_entries", "packet=size", "-of", "default=nw=1:nk=1", m_fileName})
            .split('\n');
    for (const QByteArray &size : sizes)
        bytes += size.toLongLong();
    return bytes;
}

double MovieFile::duration() const
{
    return description()["format"].toObject()["duration"].toString().toDouble();
}

QString MovieFile::container() const
{
    return description()["format"].toObject()["tags"].toObject()["major_brand"].toString();
}

QJsonObject MovieFile::stream(const QString &kind) const
{
    for (const auto &stream : description()["streams"].toArray()) {
        if (stream.toObject()["codec_type"].toString() == kind)
            return stream.toObject();
    }
    return {};
}

QVector<MovieFile::Picture> MovieFile::pictures() const
{
    using Strip = SyntheticPictures;
    const QList<QByteArray> times =
        read("ffprobe", {"-select_streams", "v", "-show_entries", "packet=pts_time", "-of",
                         "default=nw=1:nk=1", m_fileName})
            .split('\n');
    const QString crop =
        QStringLiteral("crop=%1:%2:0:0").arg(int{Strip::STRIP_WIDTH}).arg(int{Strip::STRIP_HEIGHT});
    const QByteArray strips =
        read("ffmpeg", {"-i", m_fileName, "-an", "-fps_mode", "passthrough", "-vf", crop,
                        "-pix_fmt", "gray", "-f", "rawvideo", "-"});
    constexpr qptrdiff stripBytes = qptrdiff{Strip::STRIP_WIDTH} * Strip::STRIP_HEIGHT;
    QVector<Picture> pictures;
    for (int n = 0; n < strips.size() / stripBytes && n < times.size(); ++n) {
        const char *middle = strips.constData() + n * stripBytes +
                             qptrdiff{Strip::STRIP_HEIGHT / 2} * Strip::STRIP_WIDTH +
                             Strip::CELL / 2;
        const auto white = [&](int cell) {
            return static_cast<uchar>(middle[qptrdiff{cell} * Strip::CELL]) > WHITE;
        };
        int number = 0;
        for (int bit = 0; bit < Strip::CELLS - 1; ++bit)
            number |= white(bit + 1) << bit;
        pictures.append({times[n].toDouble(), number, white(0)});
    }
    return pictures;
}

MovieFile::Sound MovieFile::sound() const
{
    const QByteArray bytes =
        read("ffmpeg", {"-i", m_fileName, "-vn", "-f", "s16le", "-ac", "1", "-ar", "44100", "-"});
    Sound sound{stream("audio")["start_time"].toString().toDouble(), {}};
    sound.samples.resize(bytes.size() / 2);
    std::memcpy(sound.samples.data(), bytes.constData(),
                static_cast<size_t>(sound.samples.size()) * sizeof(qint16));
    return sound;
}

QVector<double> MovieFile::claps(const Sound &sound)
{
    constexpr int pause = 22050;
    QVector<double> claps;
    int last = -pause;
    for (int n = 0; n < sound.samples.size(); ++n) {
        if (std::abs(int{sound.samples[n]}) < LOUD)
            continue;
        if (n - last >= pause)
            claps.append(sound.startSeconds + n / 44100.0);
        last = n;
    }
    return claps;
}

QVector<double> MovieFile::flashes(const QVector<Picture> &pictures)
{
    QVector<double> flashes;
    bool before = true;
    for (const Picture &picture : pictures) {
        if (picture.flash && !before)
            flashes.append(picture.seconds);
        before = picture.flash;
    }
    return flashes;
}

QVector<double> MovieFile::clapsAfterFlashes() const
{
    const QVector<double> heard = claps(sound());
    QVector<double> lags;
    for (const double flash : flashes(pictures())) {
        for (const double clap : heard) {
            if (std::fabs(clap - flash) < 0.5)
                lags.append(clap - flash);
        }
    }
    return lags;
}

QByteArray MovieFile::pictureAt(double seconds) const
{
    return read("ffmpeg", {"-ss", QString::number(seconds, 'f', 3), "-i", m_fileName, "-frames:v",
                           "1", "-pix_fmt", "rgb24", "-f", "rawvideo", "-"});
}
