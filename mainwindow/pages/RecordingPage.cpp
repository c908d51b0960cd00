#include "mainwindow/pages/Pages.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Modes.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

namespace
{

/// The last picture that could not be written, on any canvas.
std::optional<ImageCanvas::SnapshotFailure> lastFailure(const CanvasDeck &deck)
{
    std::optional<ImageCanvas::SnapshotFailure> last;
    for (int mode = 0; mode < Modes::COUNT; ++mode) {
        const ImageCanvas *canvas = deck.canvas(mode);
        const auto failure = canvas ? canvas->lastSnapshotFailure() : std::nullopt;
        if (failure && (!last || last->time < failure->time))
            last = failure;
    }
    return last;
}

} // namespace

QWidget *Pages::makeRecordingPage(const Context &context, QWidget *parent)
{
    const auto text = [](const char *source) {
        return QCoreApplication::translate("MoreToolWindow", source);
    };
    std::vector<Line> lines;
    const bool recording = context.camera && context.camera->recordRequested();
    lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Recording")),
                     recording ? text(QT_TRANSLATE_NOOP("MoreToolWindow", "running"))
                               : text(QT_TRANSLATE_NOOP("MoreToolWindow", "not running"))});
    lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Movies in")),
                     QDir::toNativeSeparators(Config::recordPath())});
    lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Snapshots in")),
                     QDir::toNativeSeparators(Config::snapshotPath())});
    const auto failure = context.deck ? lastFailure(*context.deck) : std::nullopt;
    if (failure) {
        lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Not saved")),
                         QStringLiteral("%1  %2: %3")
                             .arg(QLocale().toString(failure->time.time(), QLocale::ShortFormat),
                                  QDir::toNativeSeparators(failure->path), failure->reason)});
    }
    return makeTable(lines, parent);
}
