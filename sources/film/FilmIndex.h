#pragma once

#include <QString>

#include <vector>

/// What the media library does not find out about a film by itself.
struct FilmIndex {
    /// The length of a film in fragments or of a short transport stream; 0 for any other.
    double seconds = 0;
    /// Those of an AVI film without an index, as AviKeyFrames tells them.
    std::vector<qint64> keyFrames;
    /// The library errs in its seeks, and the film is short enough to be decoded from its start.
    bool soughtFromStart = false;

    /// Looks through the file for up to two seconds; waits for the disk.
    [[nodiscard]] static FilmIndex of(const QString &path);
};
