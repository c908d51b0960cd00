#include "mainwindow/pages/Pages.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Modes.h"
#include "mainwindow/RecordingPreferences.h"
#include "mainwindow/pages/MicrophoneLevel.h"
#include "mainwindow/pages/MicrophoneList.h"
#include "settings/Config.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QUrl>

#include <set>

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

QString stateOf(const LiveSource *camera)
{
    if (!camera || !camera->recordRequested())
        return Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "not running"));
    return camera->liveRecording().paused()
               ? Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "paused"))
               : Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "running"));
}

QString lengthText(qint64 lengthUs)
{
    const qint64 seconds = lengthUs / 1000000;
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

/// Empty without one.
QString lastMovieText(const LiveSource *camera)
{
    const auto last = camera ? camera->liveRecording().lastMovie() : std::nullopt;
    if (!last)
        return {};
    return QStringLiteral("%1  %2  %3")
        .arg(QFileInfo(last->fileName).fileName(), lengthText(last->lengthUs),
             QLocale().formattedDataSize(last->bytes));
}

QWidget *makeLines(const Pages::Context &context, QWidget *parent)
{
    using Pages::text;
    std::vector<Pages::Line> lines;
    lines.push_back(
        {text(QT_TRANSLATE_NOOP("MoreToolWindow", "Recording")), stateOf(context.camera)});
    const QString movie = lastMovieText(context.camera);
    if (!movie.isEmpty())
        lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Last movie")), movie});
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
    return Pages::makeTable(lines, parent);
}

QComboBox *makeQualities(LiveRecording &recording, QWidget *parent)
{
    auto *qualities = new QComboBox(parent);
    FormControls::applyLook(qualities);
    Pages::leaveWheelToPage(qualities);
    // In the order of the enumeration.
    qualities->addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Standard")));
    qualities->addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Small (half the size)")));
    qualities->setCurrentIndex(static_cast<int>(recording.quality()));
    QObject::connect(qualities, QOverload<int>::of(&QComboBox::activated), &recording,
                     [&recording](int index) {
                         RecordingPreferences::chooseQuality(recording, MovieQuality(index));
                     });
    return qualities;
}

QComboBox *makeTimeLapses(LiveRecording &recording, QWidget *parent)
{
    auto *intervals = new QComboBox(parent);
    FormControls::applyLook(intervals);
    Pages::leaveWheelToPage(intervals);
    intervals->addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Off")), 0);
    const int chosen = int(recording.timeLapse().count());
    std::set<int> seconds{1, 2, 5, 10, 30, 60};
    if (chosen > 0)
        seconds.insert(chosen);
    for (const int each : seconds)
        intervals->addItem(
            Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "A picture every %1 s, no sound"))
                .arg(each),
            each);
    intervals->setCurrentIndex(intervals->findData(chosen));
    QObject::connect(intervals, QOverload<int>::of(&QComboBox::activated), &recording,
                     [&recording, intervals](int index) {
                         RecordingPreferences::chooseTimeLapse(recording,
                                                               intervals->itemData(index).toInt());
                     });
    return intervals;
}

/// Opens the folder of the last movie; hidden without one.
QWidget *makeFolderButton(const LiveSource &camera, QWidget *parent)
{
    constexpr int HEIGHT = 24;
    auto *row = new QWidget(parent);
    row->setFixedHeight(HEIGHT);
    auto *button = new ImageButton("MAIN_BUTTON_LONG", row, 0, 0);
    button->setText(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Open its folder")));
    button->setTextColor(Qt::white);
    button->setFont(QFont("Arial", 10));
    button->setAccessibleName(button->text());
    const auto last = camera.liveRecording().lastMovie();
    row->setVisible(last.has_value());
    if (last) {
        const QUrl folder = QUrl::fromLocalFile(QFileInfo(last->fileName).path());
        QObject::connect(button, &ImageButton::clicked,
                         [folder] { QDesktopServices::openUrl(folder); });
    }
    return row;
}

} // namespace

QWidget *Pages::makeRecordingPage(const Context &context, QWidget *parent)
{
    QWidget *lines = makeLines(context, parent);
    if (!context.camera)
        return makeColumn({lines}, parent);
    auto *caption = new QLabel(text(QT_TRANSLATE_NOOP("MoreToolWindow", "Microphone")), parent);
    auto *microphones = new MicrophoneList(&context.camera->liveRecording(), parent);
    microphones->setAccessibleName(caption->text());
    auto *level = new MicrophoneLevel(context.camera, parent);
    auto *qualityCaption =
        new QLabel(text(QT_TRANSLATE_NOOP("MoreToolWindow", "Size of movies")), parent);
    QComboBox *qualities = makeQualities(context.camera->liveRecording(), parent);
    qualities->setAccessibleName(qualityCaption->text());
    auto *lapseCaption =
        new QLabel(text(QT_TRANSLATE_NOOP("MoreToolWindow", "Time-lapse")), parent);
    QComboBox *lapses = makeTimeLapses(context.camera->liveRecording(), parent);
    lapses->setAccessibleName(lapseCaption->text());
    return makeColumn({lines, makeFolderButton(*context.camera, parent), caption, microphones,
                       level, qualityCaption, qualities, lapseCaption, lapses},
                      parent);
}
