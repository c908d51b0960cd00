#include "diagnostics/TerminalLines.h"

#include <QSet>
#include <QtGlobal>

#include <algorithm>
#include <mutex>

namespace
{

/// What has been told, once each.
struct Told {
    std::mutex mutex; ///< guards lines
    QSet<QString> lines;
};

} // namespace

// Neither is ever destroyed, as a thread may tell something after everything else has ended.

const std::vector<TerminalLines::Row> &TerminalLines::rows()
{
    static const auto &all = *new const std::vector<Row>{
        {Line::CameraNotPermitted,
         "No permission to open the camera at %1: install the udev rule 70-document-camera.rules, "
         "or plug the camera in again if it is installed."},
        {Line::CameraTaken, "The camera is held by %1: close that, and its picture comes here."},
        {Line::CameraNotOpened,
         "The camera cannot be opened (%1): unplug it and plug it in again."},
        {Line::SizeNotOffered,
         "The camera does not give pictures of %1: choose another resolution in the settings."},
        {Line::SnapshotNotWritten,
         "The snapshot %1 was not written (%2): make room there or choose another folder in the "
         "settings."},
        {Line::FilmUnreadable,
         "The film %1 cannot be read: look whether it is still there and whose it is."},
        {Line::NotAFilm, "The file %1 is damaged or not a film: open another one."},
        {Line::DecoderMissing,
         "The film %1 cannot be shown, as this decoder is missing: %2. Install the packages "
         "gstreamer1.0-libav and gstreamer1.0-plugins-bad."},
        {Line::NoMovieEncoder,
         "No movie can be recorded, as there is no H.264 encoder: install the package "
         "gstreamer1.0-plugins-ugly."},
        {Line::NoSoundServer,
         "No sound server answers, movies stay silent: install the package pipewire-pulse or "
         "pulseaudio, and gstreamer1.0-pulseaudio."},
        {Line::NoFont, "No font is installed, texts stay blank: install the package "
                       "fonts-liberation."},
        {Line::NoDisplay,
         "No display can be opened (%1): start the program in a graphical session."},
        {Line::SettingsUnreadable,
         "The settings %1 cannot be read, the defaults are used: repair or remove that."},
        {Line::SettingsOutOfRange, "The settings %1 hold what makes no sense (%2): choose anew in "
                                   "the settings and press OK, or on the pages of \"More\"."},
        {Line::SettingsNotWritten,
         "The settings %1 were not written: look at the room on that disk and at the folder's "
         "permissions."},
        {Line::VariableIgnored, "The environment variable %1 makes no sense and is ignored: unset "
                                "or correct it."},
    };
    return all;
}

QString TerminalLines::text(Line line, const QStringList &words)
{
    const auto row = std::find_if(rows().begin(), rows().end(),
                                  [line](const Row &candidate) { return candidate.line == line; });
    const QString form = row == rows().end() ? QString() : QString::fromLatin1(row->text);
    // In one go, as the words may hold a %1 themselves.
    return words.size() > 1  ? form.arg(words[0], words[1])
           : words.isEmpty() ? form
                             : form.arg(words[0]);
}

void TerminalLines::tell(Line line, const QStringList &words, const QString &cause)
{
    static auto &told = *new Told;
    const QString key = text(line, cause.isEmpty() ? words : QStringList{cause, {}});
    {
        const std::lock_guard lock(told.mutex);
        if (told.lines.contains(key))
            return;
        told.lines.insert(key);
    }
    qWarning("%s", text(line, words).toLocal8Bit().constData());
}
