#pragma once

#include "sources/camera/CameraStatus.h"

#include <QString>
#include <QStringList>

/// What the user is told of the camera, and what helps.
struct CameraAdvice {
    /// How the camera stands, one line.
    QString sentence;
    /// What to do; empty when nothing is to be done.
    QString remedy;
    /// Commands for a terminal, one after the other, that the remedy speaks of.
    QStringList commands;

    [[nodiscard]] static CameraAdvice of(const CameraStatus &status);
};
