#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

namespace
{

using ReferencePipeline::same;

QStringList jpegsIn(const QTemporaryDir &folder)
{
    return QDir(folder.path()).entryList({"*.jpg"}, QDir::Files);
}

} // namespace

/// When and where a canvas saves its picture.
class CanvasSnapshotsTest : public QObject
{
    Q_OBJECT

private slots:
    void savesASinglePictureAtOnce();
    void savesNothingIntoAFolderThatIsMissing();
    void staysArmedWhenTheFolderVanishes();
    void savesIntoTheFolderItWasArmedWith();
    void survivesAReadOnlyFolder();
    void tellsWhyAPictureIsMissing();
    void tellsOfAFrameThreadsFailureOnTheGuiThread();
    void framesGoOnWhileTheFolderHangs();
    void framesGoOnWhileAFileHangs();
    void aShotWaitsForAFolderThatHangsAtTheClick();
    void savesASeriesWithIntervalZeroAtEveryFrame();
    void savesTheStandingPictureWhenTheSourceIsSilent();
};

void CanvasSnapshotsTest::savesASinglePictureAtOnce()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({64, 48});
    frame.handTo(canvas);
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    QVERIFY(!canvas.seriesArmed());
    QCOMPARE(jpegsIn(folder).size(), 0);
    frame.handTo(canvas);
    const QStringList files = jpegsIn(folder);
    QCOMPARE(files.size(), 1);
    QVERIFY(QDateTime::fromString(files.first(), "yyyy-MM-dd_hh-mm-ss'.jpg'").isValid());
    QCOMPARE(QImage(folder.filePath(files.first())).size(), QSize(64, 48));
    QFile::remove(folder.filePath(files.first()));
    frame.handTo(canvas);
    QCOMPARE(jpegsIn(folder).size(), 0);
}

void CanvasSnapshotsTest::savesNothingIntoAFolderThatIsMissing()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    canvas.snapshotMode = ImageCanvas::Continuous;
    canvas.snapshotFolder = folder.filePath("missing");
    canvas.snapshot();
    QVERIFY(!canvas.seriesArmed());
}

void CanvasSnapshotsTest::staysArmedWhenTheFolderVanishes()
{
    QTemporaryDir parent;
    QVERIFY(QDir(parent.path()).mkdir("shots"));
    const QString shots = parent.filePath("shots");
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({64, 48});
    canvas.snapshotFolder = shots;
    canvas.snapshot();
    QVERIFY(QDir(shots).removeRecursively());
    frame.handTo(canvas);
    canvas.imageCaptured(QImage());
    QVERIFY(QDir(parent.path()).mkdir("shots"));
    canvas.imageCaptured(QImage());
    QCOMPARE(QDir(shots).entryList(QDir::Files).size(), 0);
    frame.handTo(canvas);
    QCOMPARE(QDir(shots).entryList(QDir::Files).size(), 1);
}

void CanvasSnapshotsTest::savesIntoTheFolderItWasArmedWith()
{
    QTemporaryDir first;
    QTemporaryDir second;
    ImageCanvas canvas;
    canvas.snapshotFolder = first.path();
    canvas.snapshot();
    canvas.snapshotFolder = second.path();
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(jpegsIn(first).size(), 1);
    QCOMPARE(jpegsIn(second).size(), 0);
}

void CanvasSnapshotsTest::survivesAReadOnlyFolder()
{
    ImageCanvas canvas;
    // Not even the administrator can write here.
    canvas.snapshotFolder = "/proc/self";
    canvas.snapshot();
    RawFrame frame = RawFrame::of({64, 48});
    frame.handTo(canvas);
    frame.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), frame.image()));
}

void CanvasSnapshotsTest::tellsWhyAPictureIsMissing()
{
    ImageCanvas canvas;
    QSignalSpy failed(&canvas, SIGNAL(snapshotFailed(QString, QString)));
    canvas.snapshotFolder = "/proc/self";
    canvas.snapshot();
    QVERIFY(!canvas.lastSnapshotFailure());
    // One line: the file and what the system says.
    const QRegularExpression line(
        "^/proc/self/\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.jpg: No such file or directory$");
    QTest::ignoreMessage(QtWarningMsg, line);
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(failed.count(), 1);
    QVERIFY(canvas.lastSnapshotFailure());
    const ImageCanvas::SnapshotFailure first = *canvas.lastSnapshotFailure();
    QVERIFY(line.match(first.path + ": " + first.reason).hasMatch());
    QCOMPARE(failed.first().at(0).toString(), first.path);
    QCOMPARE(failed.first().at(1).toString(), first.reason);
    QVERIFY(qAbs(first.time.secsTo(QDateTime::currentDateTime())) < 60);

    // A picture that is saved afterwards leaves that failure the last one.
    QTemporaryDir folder;
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(jpegsIn(folder).size(), 1);
    QCOMPARE(failed.count(), 1);
    QCOMPARE(canvas.lastSnapshotFailure()->path, first.path);
}

void CanvasSnapshotsTest::tellsOfAFrameThreadsFailureOnTheGuiThread()
{
    ImageCanvas canvas;
    QThread *told = nullptr;
    connect(
        &canvas, &ImageCanvas::snapshotFailed, &canvas,
        [&told] { told = QThread::currentThread(); }, Qt::DirectConnection);
    canvas.snapshotFolder = "/proc/self";
    canvas.snapshot();
    std::thread([&canvas] { RawFrame::of({64, 48}).handTo(canvas); }).join();
    QVERIFY(!canvas.lastSnapshotFailure());
    QTRY_VERIFY(canvas.lastSnapshotFailure());
    QCOMPARE(told, thread());
}

void CanvasSnapshotsTest::framesGoOnWhileTheFolderHangs()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    canvas.resize(64, 48);
    canvas.show();
    QVERIFY(QTest::qWaitForWindowExposed(&canvas));
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    std::atomic<bool> stop{false};
    std::atomic<int> frames{0};
    std::thread source;
    {
        const HangingFolder hanging(folder.path());
        source = std::thread([&] {
            for (RawFrame frame = RawFrame::of({64, 48}); !stop; ++frames)
                frame.handTo(canvas);
        });
        QTRY_VERIFY(frames > 1000);
        // The canvas answers, and paints.
        canvas.rotate();
        canvas.autoRefresh();
        QCOMPARE(canvas.grab().toImage().size(), QSize(64, 48));
        QCOMPARE(hanging.waiting(), 1);
        QTRY_VERIFY(canvas.lastSnapshotFailure());
        QCOMPARE(canvas.lastSnapshotFailure()->path, folder.path());
        QCOMPARE(canvas.lastSnapshotFailure()->reason, QString("Connection timed out"));
    }
    // The shot stayed armed.
    QTRY_COMPARE(jpegsIn(folder).size(), 1);
    stop = true;
    source.join();
    QCOMPARE(jpegsIn(folder).size(), 1);
}

void CanvasSnapshotsTest::framesGoOnWhileAFileHangs()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({64, 48});
    canvas.snapshotMode = ImageCanvas::Continuous;
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    {
        const HangingFolder hanging(folder.path(), HangingFolder::Opening);
        for (int i = 0; i < 1000; ++i)
            frame.handTo(canvas);
        QCOMPARE(hanging.waiting(), 1);
        QCOMPARE(canvas.lastSnapshotFailure()->reason, QString("Connection timed out"));
        QVERIFY(canvas.seriesArmed());
    }
    QTRY_COMPARE(jpegsIn(folder).size(), 1);
}

void CanvasSnapshotsTest::aShotWaitsForAFolderThatHangsAtTheClick()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({64, 48});
    canvas.snapshotFolder = folder.path();
    {
        const HangingFolder hanging(folder.path());
        canvas.snapshot();
        frame.handTo(canvas);
        QCOMPARE(canvas.lastSnapshotFailure()->path, folder.path());
    }
    QTRY_VERIFY((frame.handTo(canvas), jpegsIn(folder).size() == 1));
}

void CanvasSnapshotsTest::savesASeriesWithIntervalZeroAtEveryFrame()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    canvas.snapshotMode = ImageCanvas::Continuous;
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    QVERIFY(canvas.seriesArmed());
    for (int i = 0; i < 5; ++i) {
        RawFrame::of({64, 48}).handTo(canvas);
        const QStringList files = jpegsIn(folder);
        QVERIFY(!files.isEmpty());
        for (const QString &file : files)
            QFile::remove(folder.filePath(file));
    }
    canvas.stopSnapshot();
    QVERIFY(!canvas.seriesArmed());
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(jpegsIn(folder).size(), 0);
}

void CanvasSnapshotsTest::savesTheStandingPictureWhenTheSourceIsSilent()
{
    QTemporaryDir folder;
    ImageCanvas canvas;
    canvas.show();
    RawFrame::of({64, 48}).handTo(canvas);
    canvas.snapshotFolder = folder.path();
    canvas.snapshot();
    QTRY_COMPARE(jpegsIn(folder).size(), 1);
}

REGISTER_TEST(CanvasSnapshotsTest)
#include "tst_canvas_snapshots.moc"
