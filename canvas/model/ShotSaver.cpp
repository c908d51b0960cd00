#include "canvas/model/ShotSaver.h"

#include "canvas/model/SnapshotFile.h"

#include <QDateTime>

#include <cerrno>

ShotSaver::Outcome ShotSaver::save(CanvasModel &model, const CanvasModel::Shot &shot)
{
    if (!shot.picture)
        return {};
    const OutputFolder::State state = shot.folder->state();
    if (state == OutputFolder::State::TimedOut)
        return {false, shot.folder->path(), qt_error_string(ETIMEDOUT)};
    if (state != OutputFolder::State::Exists || !model.claim(shot))
        return {};
    const QString path = SnapshotFile::path(shot.folder->path(), QDateTime::currentDateTime());
    const auto failure = shot.folder->write(path, SnapshotFile::encoded(frameImage(shot.picture)));
    if (failure)
        return {true, path, *failure};
    return {true, {}, {}};
}
