#pragma once

#include "sources/recording/MovieQuality.h"

#include <QSize>
#include <QString>
#include <QStringList>

/// Which encoders write movies: H.264 for the pictures, AAC for the sound.
namespace MovieEncoders
{

/// All that are known, the best first: encoders of the graphics hardware, then software.
QStringList names();

/// The encoder with its properties, in the media library's launch syntax: a key frame each 30
/// pictures, no picture held back, quality for paper and print. A name that is not known stands
/// alone.
QString description(const QString &name, MovieQuality quality = MovieQuality::Standard);

/// The encoder of the sound, in the same syntax.
QString soundDescription(MovieQuality quality = MovieQuality::Standard);

/// The description of the first of `names` that this machine has and that really encodes pictures
/// of `size`; empty when there is none. The answer for an encoder and a size is found once.
/// Any thread.
QString firstWorking(const QStringList &names, QSize size,
                     MovieQuality quality = MovieQuality::Standard);

} // namespace MovieEncoders
