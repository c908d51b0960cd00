#include "mainwindow/MainWindow.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/Modes.h"
#include "mainwindow/RecordingStatus.h"
#include "mainwindow/WindowLayout.h"
#include "mainwindow/actions/KeyBindings.h"
#include "mainwindow/actions/PicturePrinter.h"
#include "mainwindow/bars/CommandCard.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "mainwindow/presentation/Presentation.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "widgets/ImageButton.h"
#include "widgets/Panel.h"
#include "widgets/ToolWindow.h"

#include <QEvent>
#include <QLabel>

#include <utility>

using namespace Modes;

// State -------------------------------------------------------------------------------------------

int MainWindow::currentMode() const
{
    return m_deck->mode();
}

ImageCanvas *MainWindow::currentCanvas() const
{
    return m_deck->current();
}

const QHash<ImageCanvas *, OSDProcessor *> &MainWindow::osdProcessors() const
{
    return m_deck->allIndications();
}

LiveSource *MainWindow::liveSource() const
{
    return m_liveSource;
}

ThumbnailWidget *MainWindow::thumbnailWidget() const
{
    return m_photographBar ? m_photographBar->thumbnails() : nullptr;
}

bool MainWindow::recording() const
{
    return m_capture->recording();
}

void MainWindow::stopRecording()
{
    m_capture->stopRecording();
}

ToolWindow *MainWindow::currentToolWindow() const
{
    return m_popups.current();
}

ImageButton *MainWindow::button(Command command) const
{
    return m_buttons.of(command);
}

bool MainWindow::eventFilter(QObject *, QEvent *)
{
    return false;
}

void MainWindow::changeEvent(QEvent *event)
{
    StyleWindow::changeEvent(event);
    if (m_camera && event->type() == QEvent::ActivationChange && !isActiveWindow())
        m_camera->releaseZoom();
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    StyleWindow::resizeEvent(event);
    // The move that belongs to the resize is reported after it.
    if (mustCatchUp())
        QMetaObject::invokeMethod(this, &MainWindow::catchUp, Qt::QueuedConnection);
}

// Modes and layout --------------------------------------------------------------------------------

void MainWindow::switchMode()
{
    const int before = currentMode();
    int mode = before;
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Modes)) {
        if (button(row.command)->isChecked()) {
            mode = static_cast<int>(row.command) - static_cast<int>(Command::LiveMode);
            break;
        }
    }
    if (mode == before)
        return;
    m_camera->releaseZoom();
    m_deck->setMode(mode);
    leaveMode(before);
    enterMode(mode);
    applyMode();
    m_tools->showCanvasState();
    m_capture->showSeries();
    showHistory();
    m_popups.closeAny();
    m_panel->finishAdjusting();
    emit modeChanged();
}

void MainWindow::leaveMode(int mode)
{
    switch (mode) {
    case Live:
        m_liveSource->pauseCapture();
        m_liveBox->hide();
        m_recordTimeLabel->hide();
        break;
    case Film:
        m_filmBar->leave();
        break;
    case Photograph:
        m_photographBar->leave();
        break;
    case DrawingBoard:
        m_deck->canvas(DrawingBoard)->stopAutoRefresh();
        break;
    }
}

void MainWindow::enterMode(int mode)
{
    switch (mode) {
    case Live:
        m_liveBox->show();
        m_liveBox->raise();
        m_recordTimeLabel->show();
        m_liveSource->resumeCapture();
        break;
    case Film:
        m_filmBar->enter();
        break;
    case Photograph:
        m_photographBar->enter();
        break;
    case DrawingBoard:
        m_deck->canvas(DrawingBoard)->startAutoRefresh();
        break;
    }
}

void MainWindow::applyMode()
{
    for (const Commands::Row &row : Commands::rows()) {
        if (Commands::inPanel(row.group))
            button(row.command)->setEnabled(Modes::contains(row.modes, currentMode()));
    }
}

void MainWindow::expand()
{
    // There is no mode 5; it stands for a mode without a side panel.
    constexpr int NO_PANEL_MODE = 5;
    if (currentMode() == NO_PANEL_MODE && !m_sidePanelOpen)
        return;
    m_sidePanelOpen = !m_sidePanelOpen;
    setExpanded(m_sidePanelOpen);
    const int step =
        m_sidePanelOpen ? WindowLayout::SIDE_PANEL_WIDTH : -WindowLayout::SIDE_PANEL_WIDTH;
    if (isFullScreen())
        m_missedWidening += step;
    else if (!isMaximized())
        widen(step);
    button(Command::SidePanel)
        ->setImage(m_sidePanelOpen ? "BUTTON_SIDE_CLOSE" : "BUTTON_SIDE_OPEN");
    if (m_sidePanelOpen) {
        m_panel->move(40, 30);
        m_panel->show();
    } else {
        m_panel->hide();
        m_popups.closeAny();
    }
    rescaleEdges();
    reposition();
}

void MainWindow::widen(int step)
{
    const int before = width();
    resize(before + step, height());
    // The right edge stays in place, also where the minimum size reduced the step.
    if (isVisible())
        move(pos() - QPoint(width() - before, 0));
}

bool MainWindow::mustCatchUp() const
{
    return (m_missedWidening != 0 || m_fullScreen.hasMovedIt()) && !isMaximized() &&
           !isFullScreen();
}

void MainWindow::catchUp()
{
    if (!mustCatchUp())
        return;
    m_fullScreen.comeBack();
    if (m_missedWidening != 0)
        widen(std::exchange(m_missedWidening, 0));
}

void MainWindow::toggleFullScreen()
{
    m_fullScreen.toggle();
}

void MainWindow::leave()
{
    if (m_popups.shown())
        m_popups.current()->close();
    else if (isFullScreen())
        toggleFullScreen();
    else
        m_presentation->close();
}

void MainWindow::reposition()
{
    const WindowLayout at = WindowLayout::of({size(), m_sidePanelOpen, m_liveBox->size(),
                                              m_recordTimeLabel->size(), m_filmBar->barSize(),
                                              m_filmBar->volumeSize(), m_photographBar->barSize()});
    m_panel->resize(m_panel->width(), at.panelHeight);
    button(Command::About)->move(at.aboutButton);
    button(Command::SidePanel)->move(at.sidePanelButton);
    button(Command::LiveMode)->move(at.liveButton);
    button(Command::FilmMode)->move(at.filmButton);
    button(Command::PhotographMode)->move(at.photographButton);
    button(Command::DrawingBoardMode)->move(at.drawingBoardButton);
    m_recordingStatus->move(at.recordingStatus - QPoint(m_recordingStatus->width(), 0));
    m_deck->setGeometry(at.stack);
    m_liveBox->move(at.liveBox);
    m_recordTimeLabel->move(at.recordTimeLabel);
    m_card->place(at);
    m_filmBar->place(at);
    m_photographBar->place(at);
}

// Slots ------------------------------------------------------------------------------------------

void MainWindow::macro()
{
    // No button of this window switches the macro mode, but a checkable one may be connected.
    const auto *macroButton = qobject_cast<QAbstractButton *>(sender());
    m_camera->setMacro(macroButton && macroButton->isChecked());
}

void MainWindow::freeze()
{
    m_camera->setFrozen(button(Command::Freeze)->isChecked());
}

void MainWindow::snapshot()
{
    m_popups.closeAny();
    m_capture->snapshot();
}

void MainWindow::record()
{
    m_popups.closeAny();
    if (m_capture->recording())
        m_capture->stopRecording();
    else
        m_capture->startRecording();
}

void MainWindow::recordingFailed(const QString &sentence)
{
    m_capture->recordingFailed(sentence);
}

void MainWindow::print()
{
    m_popups.closeAny();
    PicturePrinter::print(currentCanvas(), this);
}

void MainWindow::settings()
{
    m_popups.open(Commands::row(Command::Settings), button(Command::Settings));
}

void MainWindow::About()
{
    m_popups.open(Commands::row(Command::About), button(Command::About));
}

void MainWindow::more()
{
    openMore();
}

void MainWindow::showKeys()
{
    openMore();
    static_cast<MoreToolWindow *>(m_popups.current())->showPage(Pages::Id::Keys);
    m_popups.current()->takeFocus();
}

void MainWindow::openMore()
{
    m_popups.open(Commands::row(Command::More), button(Command::More));
    auto *popup = static_cast<MoreToolWindow *>(m_popups.current());
    const auto markPages = [this, popup] {
        popup->setMarked(Pages::Id::Camera, m_card->cameraWrong());
        popup->setMarked(Pages::Id::Recording, m_card->failureUnread());
    };
    // That page shows the failure, so it counts as read.
    const auto read = [this](Pages::Id id) {
        if (id == Pages::Id::Recording)
            m_card->setFailureUnread(false);
    };
    markPages();
    connect(m_card, &CommandCard::marksChanged, popup, markPages);
    connect(popup, &MoreToolWindow::pageShown, m_card, read);
    read(popup->page());
}

void MainWindow::undo()
{
    currentCanvas()->undo();
}

void MainWindow::redo()
{
    currentCanvas()->redo();
}

void MainWindow::showHistory()
{
    button(Command::Undo)->setGray(!currentCanvas()->canUndo());
    button(Command::Redo)->setGray(!currentCanvas()->canRedo());
}

void MainWindow::present()
{
    m_presentation->toggle();
}

void MainWindow::holdPresentation()
{
    m_presentation->toggleHold();
}

void MainWindow::blankPresentation()
{
    m_presentation->toggleBlank();
}

void MainWindow::showPresentation()
{
    button(Command::Present)->setChecked(m_presentation->isOpen());
    button(Command::HoldPresentation)->setChecked(m_presentation->isHeld());
    button(Command::BlankPresentation)->setChecked(m_presentation->isBlank());
    button(Command::HoldPresentation)->setGray(!m_presentation->isOpen());
    button(Command::BlankPresentation)->setGray(!m_presentation->isOpen());
    // Checked commands have a place on the card, so the card is laid out again.
    reposition();
}

// Commands ----------------------------------------------------------------------------------------

void MainWindow::perform(Command command)
{
    if (ImageButton *pressed = button(command))
        pressed->click();
    else
        call(Commands::row(command).clickSlot);
}

void MainWindow::call(const char *slot)
{
    // Skips the digit before the name and the brackets after it.
    const QByteArray coded(slot);
    QMetaObject::invokeMethod(this, coded.mid(1, coded.indexOf('(') - 1).constData());
}
