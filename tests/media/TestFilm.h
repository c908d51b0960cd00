#pragma once

#include <QMetaType>
#include <QSize>
#include <QString>
#include <QStringList>

class QImage;

/// Films made for a test: each picture carries its number, from 0, as sixteen upright bars over its
/// whole height, white for a set bit, the lowest bit at the left.
struct TestFilm {
    QSize size{320, 240};
    double rate = 30;
    double seconds = 3;
    /// Encoder arguments of ffmpeg.
    QStringList video{"-c:v", "libx264", "-preset", "ultrafast", "-g", "30"};
    QString pixelFormat = QStringLiteral("yuv420p");
    /// Empty: no sound.
    QStringList sound{"-c:a", "aac", "-b:a", "64k"};
    /// Arguments before the output name.
    QStringList output;
    /// Further picture filters.
    QString filter;
    /// Degrees that players have to turn the picture anticlockwise.
    int turned = 0;

    /// Makes the file; false, with ffmpeg's words in the log, when that fails.
    [[nodiscard]] bool write(const QString &path) const;
    /// Ends an AVI file where its index begins; false when it has none.
    [[nodiscard]] static bool removeIndex(const QString &path);

    /// The number that a picture carries.
    [[nodiscard]] static int numberIn(const QImage &picture);
};

Q_DECLARE_METATYPE(TestFilm)
