#pragma once

#include "tools/virtualcamera/VirtualCamera.h"

#include <QString>
#include <QStringList>

#include <vector>

/// A command to the camera at a time after the program's start.
struct ScriptStep {
    double seconds = 0.0;
    QString command;
};

/// What the command line of virtualcamera-run asks for.
struct RunOptions {
    VirtualCameraConfig camera;
    std::vector<ScriptStep> script; ///< in the order of their times
    QStringList firstCommands;      ///< carried out before the program starts
    QString commandPath;            ///< a FIFO to take commands from, "-" for stdin, or empty
    bool diesWithParent = false;
    bool helpWanted = false;
    QStringList program; ///< with its arguments

    /// Fills `error` and returns false when the arguments, without the program's own name, make no
    /// sense.
    [[nodiscard]] bool parse(const QStringList &arguments, QString &error);

    [[nodiscard]] static QString usage();

private:
    [[nodiscard]] bool parseOption(const QString &name, const QString &value, QString &error);
    [[nodiscard]] bool parseScript(const QString &text, QString &error);
};
