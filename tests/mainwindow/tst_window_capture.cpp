#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"

#include "tests/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace WindowProbe;

/// Snapshots and recordings, as far as no camera is needed.
class WindowCaptureTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void snapshotWithoutAFolderSaysSo();
    void singleSnapshotIsWritten();
    void seriesBelongsToItsCanvas();
    void aSeriesWhoseFolderIsAwayStaysAsItWas();
    void recordingWithoutAFolderSaysSo();
    void recordingShowsItselfAndUnfreezes();
    void aRecordingReplacesTheFileOfItsSecond();
    void recordingSurvivesAModeChange();
    void withoutAPrinterItSaysSo();
};

void WindowCaptureTest::snapshotWithoutAFolderSaysSo()
{
    MainWindow window;
    for (const QString &folder : {QString("/no/such/folder"), QString()}) {
        Config::setSnapshotPath(folder);
        QString title;
        QString message;
        whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
            title = box->windowTitle();
            message = box->text();
            QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            box->accept();
        });
        window.button(Command::Snapshot)->click();
        QCOMPARE(title, QString("Error"));
        QCOMPARE(message, QString("Please select a folder first."));
        QVERIFY(window.currentCanvas()->snapshotFolder.isEmpty());
    }
}

void WindowCaptureTest::singleSnapshotIsWritten()
{
    const QTemporaryDir folder;
    Config::setSnapshotPath(folder.path());
    MainWindow window;
    enter(window, 3);
    window.button(Command::Snapshot)->click();
    QVERIFY(!window.button(Command::Snapshot)->isCheckable());
    QTRY_COMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    QVERIFY(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.jpg$")
                .match(QDir(folder.path()).entryList(QDir::Files).first())
                .hasMatch());
}

void WindowCaptureTest::seriesBelongsToItsCanvas()
{
    const QTemporaryDir folder;
    Config::setSnapshotPath(folder.path());
    Config::setSnapshotMode(CanvasModes::Continuous);
    Config::setSnapshotInterval(3600);
    MainWindow window;
    ImageButton *button = window.button(Command::Snapshot);
    ImageCanvas *live = window.currentCanvas();
    button->click();
    QVERIFY(button->isCheckable());
    QVERIFY(button->isChecked());
    QVERIFY(live->seriesArmed());
    QCOMPARE(live->snapshotInterval, 3600ULL);
    QCOMPARE(live->seriesLimit, ~0ULL);

    enter(window, 3);
    QVERIFY(!button->isChecked());
    button->click();
    QVERIFY(window.currentCanvas()->seriesArmed());
    button->click();
    QVERIFY(!window.currentCanvas()->seriesArmed());
    QVERIFY(live->seriesArmed());

    enter(window, 0);
    QVERIFY(button->isChecked());
    button->click();
    QVERIFY(!live->seriesArmed());

    button->click();
    QVERIFY(live->seriesArmed());
    Config::setSnapshotMode(CanvasModes::Single);
    button->click();
    QVERIFY(!live->seriesArmed());
    QVERIFY(!button->isCheckable());
}

void WindowCaptureTest::aSeriesWhoseFolderIsAwayStaysAsItWas()
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath("shots");
    const QString renamed = parent.filePath("renamed");
    QVERIFY(QDir().mkdir(folder));
    Config::setSnapshotPath(folder);
    Config::setSnapshotMode(CanvasModes::Continuous);
    Config::setSnapshotInterval(3600);
    MainWindow window;
    ImageButton *button = window.button(Command::Snapshot);
    const ImageCanvas *canvas = window.currentCanvas();
    const auto clickWithoutTheFolder = [&](bool running) {
        int asked = 0;
        whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
            asked += button->isChecked() == running ? 1 : 100;
            box->accept();
        });
        button->click();
        QCOMPARE(asked, 1);
        QCOMPARE(button->isChecked(), running);
        QCOMPARE(canvas->seriesArmed(), running);
    };
    button->click();
    QVERIFY(canvas->seriesArmed());
    QVERIFY(QDir().rename(folder, renamed));
    clickWithoutTheFolder(true);
    clickWithoutTheFolder(true);
    // With the folder there again, the next click ends the series.
    QVERIFY(QDir().rename(renamed, folder));
    button->click();
    QVERIFY(!button->isChecked());
    QVERIFY(!canvas->seriesArmed());
    QVERIFY(QDir().rename(folder, renamed));
    clickWithoutTheFolder(false);
}

void WindowCaptureTest::recordingWithoutAFolderSaysSo()
{
    MainWindow window;
    Config::setRecordPath("/no/such/folder");
    const auto buttons = window.findChildren<ImageButton *>();
    for (ImageButton *record : buttons) {
        if (record->accessibleName() != "Record video")
            continue;
        QString message;
        whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
            message = box->text();
            box->accept();
        });
        record->click();
        QCOMPARE(message, QString("Please select a folder first."));
        QVERIFY(!record->isChecked());
        QVERIFY(!window.recording());
    }
}

void WindowCaptureTest::recordingShowsItselfAndUnfreezes()
{
    MainWindow window;
    QList<ImageButton *> records;
    for (ImageButton *each : window.findChildren<ImageButton *>()) {
        if (each->accessibleName() == "Record video")
            records << each;
    }
    QCOMPARE(records.size(), 2);
    window.button(Command::Freeze)->click();
    for (ImageButton *starter : qAsConst(records)) {
        for (ImageButton *stopper : qAsConst(records)) {
            starter->click();
            QVERIFY(window.recording());
            QVERIFY(records[0]->isChecked() && records[1]->isChecked());
            QVERIFY(!window.currentCanvas()->frozen);
            QVERIFY(!window.button(Command::Freeze)->isChecked());
            stopper->click();
            QVERIFY(!window.recording());
            QVERIFY(!records[0]->isChecked() && !records[1]->isChecked());
        }
    }
}

void WindowCaptureTest::aRecordingReplacesTheFileOfItsSecond()
{
    const QTemporaryDir folder;
    Config::setRecordPath(folder.path());
    const QDateTime now = QDateTime::currentDateTime();
    constexpr int COMING_SECONDS = 60;
    for (int i = 0; i < COMING_SECONDS; ++i) {
        QFile file(folder.filePath(now.addSecs(i).toString("yyyy-MM-dd_hh-mm-ss") + ".mov"));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    // Without a camera no button takes the place of the one that is hidden.
    const MainWindow window;
    window.button(Command::Record)->click();
    QVERIFY(window.recording());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), COMING_SECONDS - 1);
}

void WindowCaptureTest::recordingSurvivesAModeChange()
{
    MainWindow window;
    window.button(Command::Record)->click();
    enter(window, 1);
    QVERIFY(window.recording());
    // It fails while another mode is shown.
    QString title;
    QString text;
    whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
        title = box->windowTitle();
        text = box->text();
        box->accept();
    });
    emit window.liveSource()->recordFailed("The disk is full.");
    QCOMPARE(title, QString("Error"));
    QCOMPARE(text, QString("The disk is full."));
    QVERIFY(!window.recording());
    QVERIFY(!window.button(Command::Record)->isChecked());
    // Once more says nothing.
    emit window.liveSource()->recordFailed("The disk is full.");
}

void WindowCaptureTest::withoutAPrinterItSaysSo()
{
    MainWindow window;
    QString title;
    QString message;
    whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
        title = box->windowTitle();
        message = box->text();
        box->accept();
    });
    window.button(Command::Print)->click();
    QCOMPARE(title, QString("Error"));
    QCOMPARE(message, QString("No printers found on this system."));
}

REGISTER_TEST(WindowCaptureTest)
#include "tst_window_capture.moc"
