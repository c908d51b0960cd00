#include "mainwindow/actions/CaptureActions.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "canvas/model/OutputFolder.h"
#include "diagnostics/TerminalLines.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/RecordingSign.h"
#include "mainwindow/RecordingStatus.h"
#include "settings/Config.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "widgets/ImageButton.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QMessageBox>

#include <cerrno>
#include <limits>

CaptureActions::CaptureActions(CanvasDeck *deck, const CommandButtons *buttons, QWidget *window)
    : m_deck(deck)
    , m_buttons(buttons)
    , m_window(window)
{
}

void CaptureActions::setSource(LiveSource *source)
{
    m_source = source;
}

void CaptureActions::setLiveRecordButton(ImageButton *button)
{
    m_liveRecordButton = button;
}

void CaptureActions::setRecordingSigns(RecordingSign *sign, RecordingStatus *status)
{
    m_recordingSign = sign;
    m_recordingStatus = status;
}

void CaptureActions::snapshot()
{
    const QString folder = Config::snapshotPath();
    if (!isThere(folder)) {
        // The click has switched the button, but the series is unchanged.
        showSeries();
        if (!folder.isEmpty())
            TerminalLines::tell(TerminalLines::Line::SnapshotNotWritten,
                                {folder, qt_error_string(ENOENT)}, folder);
        askForFolder();
        return;
    }
    ImageCanvas *canvas = m_deck->current();
    ImageButton *button = m_buttons->of(Command::Snapshot);
    canvas->snapshotFolder = folder;
    if (Config::snapshotMode() != CanvasModes::Continuous) {
        canvas->snapshotMode = CanvasModes::Single;
        canvas->stopSnapshot();
        canvas->snapshot();
        button->setCheckable(false);
        return;
    }
    if (!button->isCheckable()) {
        button->setCheckable(true);
        button->setChecked(true);
    }
    canvas->snapshotMode = CanvasModes::Continuous;
    if (button->isChecked()) {
        canvas->snapshotInterval = Config::snapshotInterval();
        canvas->seriesLimit = std::numeric_limits<unsigned long long>::max();
        canvas->snapshot();
    } else {
        canvas->stopSnapshot();
    }
}

void CaptureActions::showSeries()
{
    ImageButton *button = m_buttons->of(Command::Snapshot);
    if (button->isCheckable())
        button->setChecked(m_deck->current()->seriesArmed());
}

bool CaptureActions::recording() const
{
    return m_source && m_source->recordRequested();
}

void CaptureActions::startRecording()
{
    const QString folder = Config::recordPath();
    if (!isThere(folder)) {
        askForFolder();
        showRecording(false);
        return;
    }
    const QString name = QDateTime::currentDateTime().toString("yyyy-MM-dd_hh-mm-ss") + ".mov";
    const QString path = QDir(folder).filePath(name);
    OutputFolder::of(folder)->remove(path);
    if (!m_source->running())
        qDebug("recording without a camera");
    m_source->requestRecord(path);
    ImageCanvas *canvas = m_deck->current();
    m_deck->indications()->osdRecord();
    m_failureTold = false;
    // A recording always takes the moving picture.
    if (canvas->frozen) {
        canvas->frozen = false;
        m_buttons->of(Command::Freeze)->setChecked(false);
    }
    showRecording(true);
}

void CaptureActions::stopRecording()
{
    if (!recording())
        return;
    m_source->stopRecord();
    // A recording that ends by itself may end in another mode, and its clock runs on one canvas
    // only.
    for (OSDProcessor *processor : m_deck->allIndications())
        processor->stopOsdRecord();
    showRecording(false);
}

void CaptureActions::togglePause()
{
    if (!recording())
        return;
    LiveRecording &running = m_source->liveRecording();
    running.setPaused(!running.paused());
    for (OSDProcessor *processor : m_deck->allIndications())
        processor->holdOsdRecord(running.paused());
    m_recordingSign->setPaused(running.paused());
    showPause(running.paused());
}

void CaptureActions::recordingFailed(const QString &sentence)
{
    if (m_failureTold)
        return;
    m_failureTold = true;
    stopRecording();
    QMessageBox::critical(m_window, QCoreApplication::translate("MainWindow", "Error"), sentence);
}

bool CaptureActions::isThere(const QString &path)
{
    // An empty path would mean the current folder. A folder that does not answer counts as chosen.
    return !path.isEmpty() && OutputFolder::of(path)->state() != OutputFolder::State::Missing;
}

void CaptureActions::askForFolder()
{
    QMessageBox::critical(
        m_window, QCoreApplication::translate("MainWindow", "Error"),
        QCoreApplication::translate("MainWindow", "Please select a folder first."));
}

void CaptureActions::showRecording(bool on)
{
    m_buttons->of(Command::Record)->setChecked(on);
    m_liveRecordButton->setChecked(on);
    if (on)
        m_recordingSign->start();
    else
        m_recordingSign->stop();
    if (m_recordingStatus && on)
        m_recordingStatus->start(m_source);
    else if (m_recordingStatus)
        m_recordingStatus->stop();
    showPause(false);
    if (ImageButton *pause = m_buttons->of(Command::PauseRecording))
        pause->setEnabled(on);
}

void CaptureActions::showPause(bool paused)
{
    if (ImageButton *pause = m_buttons->of(Command::PauseRecording))
        pause->setChecked(paused);
}
