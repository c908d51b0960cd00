#include "tests/endurance/WindowReport.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "mainwindow/presentation/Presentation.h"
#include "settings/Config.h"
#include "sources/FilmSource.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "sources/PhotographSource.h"
#include "tests/endurance/HeapCount.h"
#include "tests/endurance/WidgetReport.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QEvent>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimerEvent>

#include <utility>

namespace
{

MainWindow *mainWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = dynamic_cast<MainWindow *>(widget))
            return window;
    }
    return nullptr;
}

ImageCanvas *canvasOf(const MainWindow &window, int mode)
{
    return window.findChild<CanvasDeck *>()->canvas(mode);
}

QString fingerprint(const QImage &image)
{
    if (image.isNull())
        return {};
    QCryptographicHash hash(QCryptographicHash::Md4);
    for (int y = 0; y < image.height(); ++y)
        hash.addData(reinterpret_cast<const char *>(image.constScanLine(y)),
                     image.width() * image.depth() / 8);
    return QString::fromLatin1(hash.result().toHex());
}

/// What of a text is marked: where it begins and where it has ended, the caret twice if nothing is.
QJsonArray marked(const QTextEdit &editor)
{
    const QTextCursor cursor = editor.textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd()};
}

QJsonObject camera(const LiveSource &source)
{
    const CameraLink link = source.cameraLink();
    return {{"running", source.running()},
            {"gone", link.gone},
            {"frames", static_cast<double>(link.frames)},
            {"silentMs", static_cast<double>(link.sinceFrameMs)},
            {"width", source.resolution().width()},
            {"recordingWidth", source.recordingResolution().width()},
            {"requested", source.recordRequested()},
            {"paused", source.liveRecording().paused()}};
}

QJsonObject film(FilmSource *source)
{
    return {{"moving", source->moving()}, {"position", source->currentPosition()}};
}

QJsonObject photographs(const PhotographSource &source)
{
    return {{"count", source.photographCount()},
            {"current", source.current()},
            {"interval", source.playInterval()},
            {"playing", source.playing()}};
}

QJsonObject settings()
{
    return {{"width", Config::resolution().width()},
            {"recordingWidth", Config::recordingResolution().width()},
            {"continuous", Config::snapshotMode() == CanvasModes::Continuous},
            {"interval", static_cast<double>(Config::snapshotInterval())},
            {"snapshots", Config::snapshotPath()},
            {"movies", Config::recordPath()}};
}

QJsonObject presentation(const Presentation &shown)
{
    return {{"open", shown.isOpen()}, {"held", shown.isHeld()}, {"blank", shown.isBlank()}};
}

} // namespace

WindowReport::WindowReport()
{
    qApp->installEventFilter(this);
}

QJsonArray WindowReport::commands()
{
    QJsonArray table;
    for (const Commands::Row &row : Commands::rows()) {
        QJsonArray keys;
        for (const int key : row.keys)
            keys << QKeySequence(key).toString(QKeySequence::PortableText);
        table << QJsonObject{
            {"name", row.text},
            {"keys", keys},
            {"modes", static_cast<int>(row.modes)},
            {"tool", row.tool ? static_cast<int>(*row.tool) : -1},
            {"popUp", static_cast<int>(row.popUp)},
            {"group", static_cast<int>(row.group)},
            {"holds", row.holdSlot != nullptr || (row.tool && row.popUp != Commands::PopUp::None)},
            {"lasts", row.startSlot != nullptr}};
    }
    return table;
}

QJsonObject WindowReport::state(bool withPicture)
{
    MainWindow *window = mainWindow();
    if (!window)
        return {};
    QJsonObject state = WidgetReport::state(*window);
    state["mode"] = window->currentMode();
    state["recording"] = window->recording();
    state["camera"] = camera(*window->liveSource());
    state["film"] = film(window->findChild<FilmSource *>());
    state["photographs"] = photographs(*window->findChild<PhotographSource *>());
    state["settings"] = settings();
    state["presentation"] = presentation(*window->presentation());
    QJsonArray canvases;
    for (int mode = 0; mode < Modes::COUNT; ++mode)
        canvases << canvas(*window, mode, withPicture && mode == window->currentMode());
    state["canvases"] = canvases;
    return state;
}

QJsonObject WindowReport::canvas(const MainWindow &window, int mode, bool withPicture)
{
    ImageCanvas *canvas = canvasOf(window, mode);
    auto *editor = canvas->findChild<QTextEdit *>();
    const bool writes = editor && editor->isVisibleTo(canvas);
    QJsonObject state{{"tool", static_cast<int>(canvas->mouseMode())},
                      {"penWidth", canvas->penWidth},
                      {"penColor", canvas->penColor.name()},
                      {"fill", canvas->fillEnabled},
                      {"fillColor", canvas->fillColor.name()},
                      {"effect", static_cast<int>(canvas->effectMode)},
                      {"mask", static_cast<int>(canvas->maskMode)},
                      {"frozen", static_cast<bool>(canvas->frozen)},
                      {"rotation", canvas->rotation()},
                      {"scale", canvas->zoomScale()},
                      {"minimumScale", canvas->minimumScale()},
                      {"width", canvas->pictureSize().width()},
                      {"height", canvas->pictureSize().height()},
                      {"undo", canvas->canUndo()},
                      {"redo", canvas->canRedo()},
                      {"series", canvas->seriesArmed()},
                      {"board", canvas->boardColor().name()},
                      {"rect", WidgetReport::place(*canvas)},
                      {"writes", writes},
                      {"text", writes ? editor->toPlainText() : QString()},
                      {"marked", writes ? marked(*editor) : QJsonArray()},
                      {"fontSize", canvas->fontSize()},
                      {"textColor", canvas->textColor().name()},
                      {"snapshotFailed", canvas->lastSnapshotFailure().has_value()},
                      {"paintings", m_paintings[canvas]}};
    if (withPicture)
        state["picture"] = fingerprint(canvas->currentImage());
    return state;
}

bool WindowReport::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Timer)
        m_fired.insert(static_cast<QTimerEvent *>(event)->timerId());
    else if (event->type() == QEvent::Paint && m_paintings.contains(watched))
        ++m_paintings[watched];
    return false;
}

QJsonObject WindowReport::census()
{
    int objects = qApp->findChildren<QObject *>().size();
    for (const QWidget *widget : QApplication::topLevelWidgets())
        objects += 1 + widget->findChildren<QObject *>().size();
    const QSet<int> fired = std::exchange(m_fired, {});
    const HeapCount::Use heap = HeapCount::use();
    return {{"objects", objects},
            {"timers", fired.size()},
            {"blocks", heap.small / 1024},
            {"pictures", heap.large / 1024}};
}
