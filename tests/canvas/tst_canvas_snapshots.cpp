#include "RawFrame.h"
#include "ReferencePipeline.h"

#include <QtTest>

#include <QDir>
#include <QTemporaryDir>

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

QTEST_MAIN(CanvasSnapshotsTest)
#include "tst_canvas_snapshots.moc"
