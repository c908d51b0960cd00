#pragma once

#include "sources/camera/CameraStatus.h"

#include <QString>
#include <QStringList>

/// What the user is told about the camera, and what helps.
struct CameraAdvice {
    /// The state of the camera, in one line.
    QString sentence;
    /// What to do; empty when nothing has to be done.
    QString remedy;
    /// Commands for a terminal, in their order, that the remedy refers to.
    QStringList commands;

    [[nodiscard]] static CameraAdvice of(const CameraStatus &status);
};
