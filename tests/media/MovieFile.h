#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// A movie as independent readers see it: ffprobe and ffmpeg.
class MovieFile
{
public:
    explicit MovieFile(const QString &fileName);

    /// What the readers complained about while they read all of it; empty for a sound movie.
    QString complaints() const;

    /// The bytes of all pictures and all sound.
    qint64 contentBytes() const;
    /// Seconds; 0 when it cannot be read.
    double duration() const;
    QString container() const;
    /// The first stream of "video" or "audio" as ffprobe describes it.
    QJsonObject stream(const QString &kind) const;

    struct Picture {
        double seconds;
        int number;
        bool flash;
    };
    /// The strips of SyntheticPictures in the order of the movie.
    QVector<Picture> pictures() const;

    struct Sound {
        double startSeconds;
        QVector<qint16> samples;
    };
    Sound sound() const;

    /// When the claps of a MicrophoneFeed begin, in seconds of the movie.
    static QVector<double> claps(const Sound &sound);
    /// When the flashes begin, in seconds of the movie.
    static QVector<double> flashes(const QVector<Picture> &pictures);
    /// For each flash the seconds by which its clap comes later; flashes without a clap within
    /// half a second are left out.
    QVector<double> clapsAfterFlashes() const;

    /// The whole picture that is shown at that time, packed rows of red, green, blue bytes.
    QByteArray pictureAt(double seconds) const;

private:
    QByteArray read(const QString &program, const QStringList &arguments,
                    QByteArray *complaints = nullptr) const;
    QJsonObject description() const;

    QString m_fileName;
};
