#include "tools/screenshots/Tour.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/MainWindow.h"
#include "mainwindow/Modes.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "sources/LiveSource.h"
#include "widgets/CameraPage.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QCursor>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QScrollArea>
#include <QTextEdit>
#include <QTimer>
#include <QToolTip>

namespace
{

/// Where the rectangle stands in the masks' pop-up window.
constexpr int SECOND_MASK_X = 64;
/// Long enough for the clock of a recording to move.
constexpr int RECORDED_MS = 3500;

const char *const MODE_NAMES[] = {"live", "film", "photograph", "drawing-board"};

struct Popup {
    Command button;
    const char *name;
};
const Popup POPUPS[] = {
    {Command::Line, "line"},     {Command::Rectangle, "rectangle"}, {Command::Freehand, "freehand"},
    {Command::Circle, "circle"}, {Command::Arrow, "arrow"},         {Command::Triangle, "triangle"},
    {Command::Eraser, "eraser"}, {Command::Text, "text"},           {Command::Mask, "mask"},
    {Command::Effect, "effect"}, {Command::FillBackground, "fill"}};

} // namespace

Tour::Tour(MainWindow *window, const QDir &folder, const QString &film, const QString &photograph)
    : m_window(window)
    , m_photographer(window, folder)
    , m_film(film)
    , m_photograph(photograph)
{
}

ImageButton *Tour::button(const QString &accessibleName) const
{
    for (ImageButton *candidate : m_window->findChildren<ImageButton *>()) {
        if (candidate->accessibleName() == accessibleName)
            return candidate;
    }
    qFatal("no button %s", qPrintable(accessibleName));
}

void Tour::enter(int mode)
{
    button(MainWindow::tr(
               Commands::rowsOf(Commands::Group::Modes)[static_cast<std::size_t>(mode)].text))
        ->click();
}

void Tour::draw(const QList<QPoint> &way)
{
    QWidget *canvas = m_window->currentCanvas();
    const auto send = [canvas](QEvent::Type type, QPoint point, Qt::MouseButtons buttons) {
        QMouseEvent event(type, point, canvas->mapToGlobal(point), Qt::LeftButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(canvas, &event);
    };
    send(QEvent::MouseButtonPress, way.first(), Qt::LeftButton);
    for (const QPoint point : way)
        send(QEvent::MouseMove, point, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, way.last(), Qt::NoButton);
}

void Tour::answerFileDialog(const QString &path)
{
    auto *timer = new QTimer(m_window);
    QObject::connect(timer, &QTimer::timeout, m_window, [timer, path] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->deleteLater();
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    timer->start(20);
}

void Tour::openFilm()
{
    if (m_film.isEmpty())
        return;
    answerFileDialog(m_film);
    m_window->filmOpenFile();
    const QSize placeholder = m_window->currentCanvas()->pictureSize();
    Photographer::waitFor([&] { return m_window->currentCanvas()->pictureSize() != placeholder; },
                          3000);
    Photographer::wait(1500);
    m_window->filmPause();
}

void Tour::openPhotographs()
{
    if (m_photograph.isEmpty())
        return;
    answerFileDialog(m_photograph);
    m_window->photographOpenDirectory();
    Photographer::wait(1000);
}

void Tour::prepare()
{
    QCursor::setPos(5, 1075);
    Photographer::waitFor([this] { return m_window->liveSource()->running(); });
    Photographer::wait(1500);
    ImageCanvas *canvas = m_window->currentCanvas();
    canvas->penWidth = 9;
    canvas->penColor = QColor(255, 0, 0);
    m_window->button(Command::Circle)->click();
    draw({QPoint(120, 230), QPoint(330, 330)});
    canvas->penWidth = 6;
    canvas->penColor = QColor(0, 0, 255);
    canvas->fillEnabled = true;
    canvas->fillColor = QColor(0, 0, 255);
    m_window->button(Command::Arrow)->click();
    draw({QPoint(520, 470), QPoint(370, 330)});

    enter(Modes::Film);
    m_photographer.take("film-empty");
    openFilm();
    enter(Modes::Photograph);
    m_photographer.take("photograph-empty");
    openPhotographs();
    enter(Modes::DrawingBoard);
    canvas = m_window->currentCanvas();
    canvas->penWidth = 6;
    m_window->button(Command::Triangle)->click();
    canvas->penColor = Qt::black;
    draw({QPoint(220, 200), QPoint(220, 380)});
    m_window->button(Command::Rectangle)->click();
    canvas->penColor = QColor(0, 0, 255);
    canvas->fillEnabled = true;
    canvas->fillColor = QColor(255, 255, 0);
    draw({QPoint(430, 240), QPoint(640, 380)});
    m_window->button(Command::Freehand)->click();
    canvas->penColor = QColor(255, 0, 0);
    draw({QPoint(120, 440), QPoint(180, 430), QPoint(240, 445), QPoint(300, 432), QPoint(360, 446),
          QPoint(420, 430), QPoint(480, 442)});
    enter(Modes::Live);
}

void Tour::run(const QString &suffix, bool popups)
{
    takeModes(suffix);
    if (popups)
        takePopups(suffix);
    m_window->About();
    m_photographer.take("popup-about-" + suffix);
    enter(Modes::Film);
    enter(Modes::Live);
}

void Tour::takeModes(const QString &suffix)
{
    for (const int mode : {Modes::Film, Modes::Photograph, Modes::DrawingBoard, Modes::Live}) {
        enter(mode);
        if (mode == Modes::Film)
            button(MainWindow::tr("Volume"))->click();
        if (mode == Modes::Photograph) {
            button(MainWindow::tr("Thumbnails"))->click();
            button(MainWindow::tr("Slideshow interval"))->click();
        }
        m_photographer.take(QString("%1-%2").arg(MODE_NAMES[mode], suffix));
    }
}

void Tour::takePopups(const QString &suffix)
{
    for (const Popup &popup : POPUPS) {
        openPopup(popup.button);
        m_photographer.take(QString("popup-%1-%2").arg(popup.name, suffix));
    }
    enter(Modes::Live);
    m_window->settings();
    m_photographer.take("popup-settings-" + suffix);
}

void Tour::takePopupsAlone()
{
    for (const Popup &popup : POPUPS) {
        openPopup(popup.button);
        m_photographer.takePopup(QString("popup-%1").arg(popup.name));
    }
    enter(Modes::Live);
    m_window->About();
    m_photographer.takePopup("popup-about");
    m_window->settings();
    m_photographer.takePopup("popup-settings");
    takePages();
    enter(Modes::Film);
    enter(Modes::Live);
}

void Tour::takePages()
{
    m_window->more();
    auto *more = static_cast<MoreToolWindow *>(m_window->currentToolWindow());
    const char *const names[] = {"camera", "recording", "presentation", "keys"};
    for (const Pages::Page &page : Pages::all()) {
        more->showPage(page.id);
        m_photographer.takePopup(QString("popup-more-%1").arg(names[static_cast<int>(page.id)]));
    }
    more->showPage(Pages::Id::Camera);
    // The page that the pop-up made follows the camera.
    auto *page = new CameraPage;
    page->setContentsMargins(more->findChild<CameraPage *>()->contentsMargins());
    more->findChild<QScrollArea *>()->setWidget(page);
    CameraStatus status;
    status.size = {1920, 1080};
    status.vendorId = 0x04f2;
    status.productId = 0xb1f1;
    for (int state = 0; state <= static_cast<int>(CameraStatus::State::Silent); ++state) {
        status.state = static_cast<CameraStatus::State>(state);
        page->setStatus(status);
        m_photographer.takePopup(QString("popup-more-camera-%1").arg(state));
    }
}

void Tour::takeRecording()
{
    const auto takePage = [this](const char *name) {
        m_window->more();
        static_cast<MoreToolWindow *>(m_window->currentToolWindow())
            ->showPage(Pages::Id::Recording);
        m_photographer.takePopup(name);
    };
    enter(Modes::Live);
    m_window->record();
    Photographer::wait(RECORDED_MS);
    takeModes("recording");
    takePage("popup-more-recording-running");
    m_window->button(Command::PauseRecording)->click();
    takeModes("paused");
    m_window->record();
    Photographer::wait(500);
    takePage("popup-more-recording-afterwards");
    enter(Modes::Film);
    enter(Modes::Live);
}

void Tour::openPopup(Command tool)
{
    enter(tool == Command::FillBackground ? Modes::DrawingBoard : Modes::Live);
    ImageButton *toolButton = m_window->button(tool);
    if (toolButton->isCheckable() && tool != Command::Mask)
        toolButton->setChecked(true);
    emit toolButton->hold();
}

void Tour::runLanguage()
{
    takeModes("language");
    takePopupsAlone();
    takeBoxes();
    m_window->expand();
    Photographer::waitFor([this] { return m_window->width() == 800; });
    takeModes("800x768");
    m_window->expand();
    m_window->showMaximized();
    Photographer::waitFor([this] { return m_window->isMaximized() && m_window->width() > 1900; });
    takeModes("maximised");
    m_window->showNormal();
    Photographer::waitFor([this] { return m_window->width() < 1000; });
    takeIndications();
}

void Tour::takeBoxes()
{
    m_window->settings();
    const QList<QComboBox *> boxes = m_window->currentToolWindow()->findChildren<QComboBox *>();
    m_photographer.takeNextBox("box-question");
    boxes.at(1)->setCurrentIndex(2); // recordings of 1920 x 1080
    m_photographer.takeNextBox("box-error");
    // As the window says that a recording has ended by itself.
    QMessageBox::critical(
        m_window, MainWindow::tr("Error"),
        QCoreApplication::translate("MovieWriter",
                                    "The recording was stopped because the disk is full."));
    enter(Modes::Film);
    enter(Modes::Live);
}

void Tour::takeIndications()
{
    ImageCanvas *canvas = m_window->currentCanvas();
    OSDProcessor *indications = m_window->osdProcessors().value(canvas);
    // Only a picture that stands upright is smaller than its frame, which has a caption.
    canvas->rotate();
    canvas->zoomReset();
    for (const int effect : {CanvasModes::EffectColor, CanvasModes::EffectBW,
                             CanvasModes::EffectNegative, CanvasModes::EffectMosaic}) {
        canvas->effectMode = CanvasModes::EffectMode(effect);
        indications->osdEffect();
        indications->osdZoomOut();
        m_photographer.take(QString("indications-%1").arg(effect));
    }
}

void Tour::takeTyping()
{
    enter(Modes::Live);
    ImageCanvas *canvas = m_window->currentCanvas();
    m_window->button(Command::Text)->click();
    draw({QPoint(300, 250)});
    canvas->setTextColor(QColor(255, 255, 0));
    canvas->setFontSize(36);
    auto *editor = canvas->findChild<QTextEdit *>();
    editor->insertPlainText("Text");
    m_photographer.take("live-typing");
    editor->clear();
    canvas->endTextEditing();
    ImageButton *tool = m_window->button(Command::Circle);
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), tool->mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(tool, &event);
    m_photographer.take("live-tip");
    QToolTip::hideText();
    // The tip goes a moment later, and is not to be on the next picture.
    Photographer::waitFor([] { return !QToolTip::isVisible(); }, 2000);
    tool->click();
}

void Tour::runHighlights()
{
    takeTyping();
    enter(Modes::Live);
    OSDProcessor *indications = m_window->osdProcessors().value(m_window->currentCanvas());
    m_window->button(Command::Freeze)->click();
    indications->osdBrightness();
    indications->osdAutoFocus();
    indications->osdSnapshot();
    m_photographer.take("live-indications");
    m_window->button(Command::Freeze)->click();
    m_window->maskHold();
    for (ImageButton *mask : m_window->currentToolWindow()->findChildren<ImageButton *>()) {
        if (mask->isCheckable() && mask->x() == SECOND_MASK_X)
            mask->click();
    }
    m_window->button(Command::Record)->click();
    Photographer::wait(RECORDED_MS);
    m_photographer.take("live-recording-masked");
    m_window->button(Command::Record)->click();
    m_window->button(Command::Mask)->click();
}
