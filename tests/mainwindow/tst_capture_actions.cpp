#include "mainwindow/actions/CaptureActions.h"

#include "mainwindow/RecordingSign.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"

#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"
#include "tests/mainwindow/HelperScene.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace
{

struct CaptureScene : HelperScene {
    CaptureScene()
        : source(deck.current(), {640, 480}, {640, 480}, nullptr)
        , liveRecordButton("ICON_LIVE_RECORDING", &parent, 0, 0)
    {
        liveRecordButton.setCheckable(true);
        actions.setLiveRecordButton(&liveRecordButton);
        actions.setRecordingSigns(&recordingSign, nullptr);
        actions.setSource(&source);
        Config::setSnapshotPath(folder.path());
        Config::setRecordPath(folder.path());
        Config::setSnapshotMode(CanvasModes::Single);
        Config::setSnapshotInterval(3600);
    }

    QTemporaryDir folder;
    LiveSource source;
    ImageButton liveRecordButton;
    RecordingSign recordingSign{&liveRecordButton};
    CaptureActions actions{&deck, &buttons, &parent};
};

} // namespace

/// Snapshots and recordings without a window and without a camera.
class CaptureActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void aSingleSnapshotIsWritten();
    void theButtonShowsTheSeriesOfTheCurrentCanvas();
    void theSourceAloneKnowsOfTheRecording();
    void withoutASourceNothingIsRecorded();
    void aShareThatHangsDoesNotHoldTheStart();
};

void CaptureActionsTest::aSingleSnapshotIsWritten()
{
    CaptureScene scene;
    QImage picture(64, 48, QImage::Format_RGB32);
    picture.fill(Qt::white);
    scene.actions.snapshot();
    scene.deck.current()->imageCaptured(picture);
    QTRY_COMPARE(QDir(scene.folder.path()).entryList({"*.jpg"}, QDir::Files).size(), 1);
    QVERIFY(!scene.buttons.of(Command::Snapshot)->isCheckable());
}

void CaptureActionsTest::theButtonShowsTheSeriesOfTheCurrentCanvas()
{
    CaptureScene scene;
    Config::setSnapshotMode(CanvasModes::Continuous);
    scene.actions.snapshot();
    const ImageButton *button = scene.buttons.of(Command::Snapshot);
    QVERIFY(button->isCheckable());
    QVERIFY(button->isChecked());
    QVERIFY(scene.deck.current()->seriesArmed());
    scene.deck.setMode(Modes::DrawingBoard);
    scene.actions.showSeries();
    QVERIFY(!button->isChecked());
    scene.deck.setMode(Modes::Live);
    scene.actions.showSeries();
    QVERIFY(button->isChecked());
}

void CaptureActionsTest::theSourceAloneKnowsOfTheRecording()
{
    CaptureScene scene;
    const ImageButton *button = scene.buttons.of(Command::Record);
    scene.deck.current()->frozen = true;
    scene.buttons.of(Command::Freeze)->setChecked(true);
    scene.actions.startRecording();
    QVERIFY(scene.actions.recording());
    QVERIFY(button->isChecked() && scene.liveRecordButton.isChecked());
    QVERIFY(!scene.deck.current()->frozen);
    QVERIFY(!scene.buttons.of(Command::Freeze)->isChecked());
    scene.actions.stopRecording();
    QVERIFY(!scene.actions.recording());
    QVERIFY(!button->isChecked() && !scene.liveRecordButton.isChecked());
    // One that the source has ended is over for the buttons too.
    scene.source.requestRecord(scene.folder.filePath("other.mov"));
    QVERIFY(scene.actions.recording());
    scene.source.stopRecord();
    QVERIFY(!scene.actions.recording());
}

void CaptureActionsTest::withoutASourceNothingIsRecorded()
{
    CaptureScene scene;
    scene.actions.setSource(nullptr);
    QVERIFY(!scene.actions.recording());
    scene.actions.stopRecording();
    QVERIFY(!scene.actions.recording());
}

void CaptureActionsTest::aShareThatHangsDoesNotHoldTheStart()
{
    CaptureScene scene;
    {
        const HangingFolder share(scene.folder.path(), HangingFolder::EverythingAndRemoving);
        scene.actions.startRecording();
        QVERIFY(scene.actions.recording());
        // Nothing more is asked of a share that is known to hang.
        QCOMPARE(share.waiting(), 1);
    }
    scene.actions.stopRecording();
}

REGISTER_TEST(CaptureActionsTest)
#include "tst_capture_actions.moc"
