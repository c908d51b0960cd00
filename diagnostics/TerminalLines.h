#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// The sentences with which the program tells the terminal what went wrong and what helps. The
/// README and the manual page explain each of them.
namespace TerminalLines
{

enum class Line {
    CameraNotPermitted, ///< the device node
    CameraTaken,        ///< who has it
    CameraNotOpened,    ///< the camera library's reason
    SizeNotOffered,     ///< width x height
    SnapshotNotWritten, ///< the file, the system's reason
    FilmUnreadable,     ///< the file
    NotAFilm,           ///< the file
    DecoderMissing,     ///< the file, the decoder
    NoMovieEncoder,
    NoSoundServer,
    NoFont,
    NoDisplay,          ///< what was tried
    SettingsUnreadable, ///< the file
    SettingsOutOfRange, ///< the file, KEY=VALUE
    SettingsNotWritten, ///< the file
    VariableIgnored     ///< NAME=VALUE
};

struct Row {
    Line line;
    /// English, with %1 and %2 for the words that the enumeration names.
    const char *text;
};

[[nodiscard]] const std::vector<Row> &rows();

[[nodiscard]] QString text(Line line, const QStringList &words = {});

/// Writes the line to the standard error, once in the life of the process for each cause. The cause
/// is the words themselves unless it is given. Any thread.
void tell(Line line, const QStringList &words = {}, const QString &cause = {});

} // namespace TerminalLines
