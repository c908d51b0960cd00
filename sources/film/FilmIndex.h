#pragma once

#include <QString>

#include <vector>

/// What the media library does not find out about a film by itself.
struct FilmIndex {
    /// The length of a film in fragments; 0 for any other.
    double seconds = 0;
    /// Those of an AVI film without an index, as AviKeyFrames tells them.
    std::vector<qint64> keyFrames;

    /// Looks through the file for up to two seconds; waits for the disk.
    [[nodiscard]] static FilmIndex of(const QString &path);
};
