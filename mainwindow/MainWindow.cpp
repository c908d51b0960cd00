#include "mainwindow/MainWindow.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/ModeRules.h"
#include "mainwindow/WindowLayout.h"
#include "mainwindow/actions/PicturePrinter.h"
#include "sources/LiveSource.h"
#include "widgets/AboutToolWindow.h"
#include "widgets/ImageButton.h"
#include "widgets/Panel.h"
#include "widgets/SettingsToolWindow.h"

#include <QButtonGroup>
#include <QEvent>
#include <QLabel>
#include <QStackedWidget>

#include <utility>

using namespace ModeRules;
using ButtonTable::PanelButton;

// State -------------------------------------------------------------------------------------------

int MainWindow::currentMode() const
{
    return m_currentMode;
}

ImageCanvas *MainWindow::currentCanvas() const
{
    return m_currentCanvas;
}

const QHash<ImageCanvas *, OSDProcessor *> &MainWindow::osdProcessors() const
{
    return m_osdProcessors;
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
    return m_capture.recording();
}

void MainWindow::stopRecording()
{
    m_capture.stopRecording();
}

ToolWindow *MainWindow::currentToolWindow() const
{
    return m_popups.current();
}

ImageButton *MainWindow::panelButton(PanelButton button) const
{
    return m_panelButtons[std::size_t(button)];
}

bool MainWindow::onLiveCanvas() const
{
    return m_currentCanvas == m_canvases[Live];
}

bool MainWindow::eventFilter(QObject *, QEvent *)
{
    return false;
}

void MainWindow::changeEvent(QEvent *event)
{
    StyleWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && !isActiveWindow())
        m_camera.releaseZoom();
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    StyleWindow::resizeEvent(event);
    // The move that belongs to the resize is told after it.
    if (m_missedWidening != 0 && !isMaximized() && !isFullScreen())
        QMetaObject::invokeMethod(this, &MainWindow::catchUpWidening, Qt::QueuedConnection);
}

// Modes and layout --------------------------------------------------------------------------------

void MainWindow::switchMode()
{
    int mode = m_currentMode;
    for (int i = 0; i < int(m_modeButtons.size()); ++i) {
        if (m_modeButtons[std::size_t(i)]->isChecked()) {
            mode = i;
            break;
        }
    }
    if (mode != m_currentMode)
        m_camera.releaseZoom();
    m_currentCanvas = m_canvases[std::size_t(mode)];
    m_stack->setCurrentWidget(m_currentCanvas);
    if (mode == m_currentMode)
        return;
    leaveMode(m_currentMode);
    enterMode(mode);
    m_currentMode = mode;
    applyMode();
    showCanvasState();
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
        m_canvases[DrawingBoard]->stopAutoRefresh();
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
        m_canvases[DrawingBoard]->startAutoRefresh();
        break;
    }
}

void MainWindow::applyMode()
{
    for (const ButtonTable::PanelRow &row : ButtonTable::panelRows())
        panelButton(row.button)->setEnabled(enabled(row.button, m_currentMode));
}

void MainWindow::showCanvasState()
{
    checkToolButton();
    ImageButton *maskButton = panelButton(PanelButton::Mask);
    maskButton->setChecked(m_currentCanvas->maskMode != ImageCanvas::MaskNone);
    maskButton->setImage(maskSkin(m_currentCanvas->maskMode));
    panelButton(PanelButton::Effect)->setImage(effectSkin(m_currentCanvas->effectMode));
    panelButton(PanelButton::Freeze)->setChecked(m_currentCanvas->frozen);
    m_capture.showSeries();
}

void MainWindow::checkToolButton()
{
    if (const auto tool = toolButton(m_currentCanvas->mouseMode())) {
        panelButton(*tool)->setChecked(true);
    } else if (QAbstractButton *checked = m_toolGroup->checkedButton()) {
        // An exclusive group refuses to be emptied.
        m_toolGroup->setExclusive(false);
        checked->setChecked(false);
        m_toolGroup->setExclusive(true);
    }
}

void MainWindow::expand()
{
    // There is no mode 5; a mode without a side panel would be tested here.
    constexpr int NO_PANEL_MODE = 5;
    if (m_currentMode == NO_PANEL_MODE && !m_sidePanelOpen)
        return;
    m_sidePanelOpen = !m_sidePanelOpen;
    setExpanded(m_sidePanelOpen);
    const int step =
        m_sidePanelOpen ? WindowLayout::SIDE_PANEL_WIDTH : -WindowLayout::SIDE_PANEL_WIDTH;
    if (isFullScreen())
        m_missedWidening += step;
    else if (!isMaximized())
        widen(step);
    m_sidePanelButton->setImage(m_sidePanelOpen ? "BUTTON_SIDE_CLOSE" : "BUTTON_SIDE_OPEN");
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
    // The right edge stays put, also where the minimum size took a part of the step.
    if (isVisible())
        move(pos() - QPoint(width() - before, 0));
}

void MainWindow::catchUpWidening()
{
    if (m_missedWidening != 0 && !isMaximized() && !isFullScreen())
        widen(std::exchange(m_missedWidening, 0));
}

void MainWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void MainWindow::reposition()
{
    const WindowLayout at = WindowLayout::of({size(), m_sidePanelOpen, m_liveBox->size(),
                                              m_recordTimeLabel->size(), m_filmBar->barSize(),
                                              m_filmBar->volumeSize(), m_photographBar->barSize()});
    m_panel->resize(m_panel->width(), at.panelHeight);
    m_aboutButton->move(at.aboutButton);
    m_sidePanelButton->move(at.sidePanelButton);
    m_modeButtons[Live]->move(at.liveButton);
    m_modeButtons[Film]->move(at.filmButton);
    m_modeButtons[Photograph]->move(at.photographButton);
    m_modeButtons[DrawingBoard]->move(at.drawingBoardButton);
    m_stack->setGeometry(at.stack);
    m_liveBox->move(at.liveBox);
    m_recordTimeLabel->move(at.recordTimeLabel);
    m_filmBar->place(at);
    m_photographBar->place(at);
}

// Slots ------------------------------------------------------------------------------------------

void MainWindow::macro()
{
    // No button of this window switches the macro mode; a checkable one may be connected.
    const auto *button = qobject_cast<QAbstractButton *>(sender());
    m_camera.setMacro(button && button->isChecked());
}

void MainWindow::freeze()
{
    m_camera.setFrozen(panelButton(PanelButton::Freeze)->isChecked());
}

void MainWindow::snapshot()
{
    m_popups.closeAny();
    m_capture.snapshot();
}

void MainWindow::record()
{
    m_popups.closeAny();
    if (m_capture.recording())
        m_capture.stopRecording();
    else
        m_capture.startRecording();
}

void MainWindow::recordingFailed(const QString &sentence)
{
    m_capture.recordingFailed(sentence);
}

void MainWindow::print()
{
    m_popups.closeAny();
    PicturePrinter::print(m_currentCanvas, this);
}

void MainWindow::settings()
{
    m_popups.open(
        [this] { return new SettingsToolWindow(panelButton(PanelButton::Settings), this); });
}

void MainWindow::About()
{
    m_popups.open([this] { return new AboutToolWindow(m_aboutButton, this, aboutBackground); });
}
