#include "settings/Config.h"
#include "sources/LiveSource.h"
#include "tests/widgets/PopupTest.h"
#include "widgets/SettingsToolWindow.h"

#include "tests/TestProgram.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

#include <functional>

namespace
{

enum Box { Resolution, Recording, Capture, Time };

QComboBox *box(const QWidget &popup, Box which)
{
    return popup.findChildren<QComboBox *>()[which];
}

ImageButton *button(const QWidget &popup, const QString &name)
{
    for (ImageButton *candidate : popup.findChildren<ImageButton *>()) {
        if (candidate->accessibleName() == name)
            return candidate;
    }
    return nullptr;
}

/// Lets `answer` deal with the modal dialog that the next event loop shows.
template <typename Dialog>
void whenAsked(QObject *context, std::function<void(Dialog *)> answer)
{
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, answer] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->deleteLater();
        answer(dialog);
    });
    timer->start(10);
}

/// The pop-up of a window that has a camera's source.
struct SettingsOfACamera {
    SettingsOfACamera()
    {
        scene.window.camera = &live;
        popup.show();
    }

    PopupScene scene;
    LiveSource live{&scene.canvas, Config::resolution(), Config::recordingResolution(), nullptr};
    SettingsToolWindow popup{&scene.toolButton, &scene.window};
};

} // namespace

class SettingsToolWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsWhatIsStored_data();
    void showsWhatIsStored();
    void everyIntervalIsOffered();
    void okStoresEverythingAndAppliesIt();
    void okWithoutACameraStoresAllTheSame();
    void cancelLeavesEverythingUntouched();
    void theLargestRecordingSizeIsAskedFor_data();
    void theLargestRecordingSizeIsAskedFor();
    void aStoredLargestSizeIsNotAskedFor();
    void browsingStoresNothingBeforeOk();
    void aDismissedFolderDialogKeepsThePath();
    void anEmptyChoiceIsLeftAlone();
    void aNewPreviewSizeEndsARunningRecording();
    void closingTheWindowUnderAQuestionIsHarmless();
    void nothingIsClipped();
};

void SettingsToolWindowTest::init()
{
    Config::setSnapshotMode(CanvasModes::Single);
    Config::setSnapshotInterval(5);
    Config::setSnapshotPath("/tmp/snapshots");
    Config::setRecordPath("/tmp/recordings");
    Config::setResolutionIndex(1);
    Config::setRecordingResolutionIndex(1);
}

void SettingsToolWindowTest::showsWhatIsStored_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("mode");
    QTest::addColumn<quint64>("interval");
    QTest::addColumn<QList<int>>("entries");
    QTest::newRow("smallest") << 0 << 0 << quint64(1) << QList<int>{0, 0, 0, 0};
    QTest::newRow("middle") << 1 << 1 << quint64(60) << QList<int>{1, 1, 1, 8};
    QTest::newRow("largest") << 2 << 1 << quint64(3600) << QList<int>{2, 2, 1, 16};
    QTest::newRow("out of range above") << 7 << 7 << quint64(7) << QList<int>{2, 2, 0, 0};
    QTest::newRow("out of range below") << -1 << -1 << quint64(0) << QList<int>{2, 2, 0, 0};
}

void SettingsToolWindowTest::showsWhatIsStored()
{
    QFETCH(int, resolution);
    QFETCH(int, mode);
    QFETCH(quint64, interval);
    QFETCH(QList<int>, entries);
    Config::setResolutionIndex(resolution);
    Config::setRecordingResolutionIndex(resolution);
    Config::setSnapshotMode(CanvasModes::SnapshotMode(mode));
    Config::setSnapshotInterval(interval);
    PopupScene scene;
    const SettingsToolWindow popup(&scene.toolButton, &scene.window);
    QList<int> shown;
    for (const Box which : {Resolution, Recording, Capture, Time})
        shown << box(popup, which)->currentIndex();
    QCOMPARE(shown, entries);
    QStringList fields;
    for (const QLineEdit *field : popup.findChildren<QLineEdit *>()) {
        QVERIFY(field->isReadOnly());
        fields << field->text();
    }
    QCOMPARE(fields, (QStringList{"Document Camera", "/tmp/snapshots", "/tmp/recordings"}));
    QCOMPARE(box(popup, Resolution)->itemText(0), QString("XGA 1024 x 768"));
    QCOMPARE(box(popup, Recording)->itemText(2), QString("FHD 1920 x 1080"));
    QCOMPARE(box(popup, Capture)->itemText(1), QString("Continuous"));
}

void SettingsToolWindowTest::everyIntervalIsOffered()
{
    PopupScene scene;
    const SettingsToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(box(popup, Time)->count(), 17);
    QCOMPARE(box(popup, Time)->itemText(0), QString("1 sec"));
    QCOMPARE(box(popup, Time)->itemText(13), QString("10 min"));
    QCOMPARE(box(popup, Time)->itemText(16), QString("1 hr"));
}

void SettingsToolWindowTest::okStoresEverythingAndAppliesIt()
{
    SettingsOfACamera shown;
    SettingsToolWindow &popup = shown.popup;
    box(popup, Resolution)->setCurrentIndex(0);
    box(popup, Recording)->setCurrentIndex(0);
    box(popup, Capture)->setCurrentIndex(1);
    box(popup, Time)->setCurrentIndex(9);
    QTest::mouseClick(button(popup, "OK"), Qt::LeftButton);

    QCOMPARE(Config::snapshotMode(), CanvasModes::Continuous);
    QCOMPARE(Config::snapshotInterval(), 120ULL);
    QCOMPARE(Config::snapshotPath(), QString("/tmp/snapshots"));
    QCOMPARE(Config::recordPath(), QString("/tmp/recordings"));
    QCOMPARE(Config::resolutionIndex(), 0);
    QCOMPARE(Config::recordingResolutionIndex(), 0);
    QCOMPARE(shown.live.resolution(), QSize(1024, 768));
    QCOMPARE(shown.live.recordingResolution(), QSize(1024, 768));
    QVERIFY(!popup.isVisible());
}

void SettingsToolWindowTest::okWithoutACameraStoresAllTheSame()
{
    PopupScene scene;
    SettingsToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    box(popup, Resolution)->setCurrentIndex(2);
    QTest::mouseClick(button(popup, "OK"), Qt::LeftButton);
    QCOMPARE(Config::resolution(), QSize(1920, 1080));
}

void SettingsToolWindowTest::cancelLeavesEverythingUntouched()
{
    SettingsOfACamera shown;
    SettingsToolWindow &popup = shown.popup;
    box(popup, Resolution)->setCurrentIndex(0);
    box(popup, Capture)->setCurrentIndex(1);
    popup.findChildren<QLineEdit *>()[1]->setText("/elsewhere");
    QTest::mouseClick(button(popup, "Cancel"), Qt::LeftButton);
    QVERIFY(!popup.isVisible());
    QCOMPARE(Config::resolutionIndex(), 1);
    QCOMPARE(Config::snapshotMode(), CanvasModes::Single);
    QCOMPARE(Config::snapshotPath(), QString("/tmp/snapshots"));
    QCOMPARE(shown.live.resolution(), QSize(1280, 720));
}

void SettingsToolWindowTest::theLargestRecordingSizeIsAskedFor_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("entry");
    QTest::newRow("yes") << int(QMessageBox::Yes) << 2;
    QTest::newRow("no") << int(QMessageBox::No) << 1;
}

void SettingsToolWindowTest::theLargestRecordingSizeIsAskedFor()
{
    QFETCH(int, answer);
    QFETCH(int, entry);
    PopupScene scene;
    scene.window.show();
    const SettingsToolWindow popup(&scene.toolButton, &scene.window);
    QString title;
    QString question;
    whenAsked<QMessageBox>(&scene.window, [&](QMessageBox *message) {
        title = message->windowTitle();
        question = message->text();
        message->button(QMessageBox::StandardButton(answer))->click();
    });
    box(popup, Recording)->setCurrentIndex(2);
    QCOMPARE(title, QString("Question"));
    QCOMPARE(question, QString("Using a recording resolution of 1920x1080 may cause low framerate "
                               "when the PC isn't powerful. Continue?"));
    QCOMPARE(box(popup, Recording)->currentIndex(), entry);
}

void SettingsToolWindowTest::aStoredLargestSizeIsNotAskedFor()
{
    Config::setRecordingResolutionIndex(2);
    PopupScene scene;
    bool asked = false;
    whenAsked<QMessageBox>(&scene.window, [&](QMessageBox *message) {
        asked = true;
        message->reject();
    });
    const SettingsToolWindow popup(&scene.toolButton, &scene.window);
    box(popup, Recording)->setCurrentIndex(0);
    QCoreApplication::processEvents();
    QVERIFY(!asked);
}

void SettingsToolWindowTest::browsingStoresNothingBeforeOk()
{
    PopupScene scene;
    scene.window.show();
    SettingsToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    const QString folder = QDir::tempPath();
    for (const char *name : {"Browse for the snapshot folder", "Browse for the recording folder"}) {
        whenAsked<QFileDialog>(&scene.window, [&](QFileDialog *dialog) {
            QCOMPARE(dialog->parentWidget(), &scene.window);
            dialog->setDirectory(folder);
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(folder);
            QMetaObject::invokeMethod(dialog, "accept");
        });
        QTest::mouseClick(button(popup, name), Qt::LeftButton);
    }
    const auto fields = popup.findChildren<QLineEdit *>();
    QCOMPARE(fields[1]->text(), folder);
    QCOMPARE(fields[2]->text(), folder);
    QCOMPARE(Config::snapshotPath(), QString("/tmp/snapshots"));
    QCOMPARE(Config::recordPath(), QString("/tmp/recordings"));
    QTest::mouseClick(button(popup, "OK"), Qt::LeftButton);
    QCOMPARE(Config::snapshotPath(), folder);
    QCOMPARE(Config::recordPath(), folder);
}

void SettingsToolWindowTest::aDismissedFolderDialogKeepsThePath()
{
    PopupScene scene;
    scene.window.show();
    SettingsToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    whenAsked<QFileDialog>(&scene.window, [](QFileDialog *dialog) { dialog->reject(); });
    QTest::mouseClick(button(popup, "Browse for the snapshot folder"), Qt::LeftButton);
    QCOMPARE(popup.findChildren<QLineEdit *>()[1]->text(), QString("/tmp/snapshots"));
}

void SettingsToolWindowTest::anEmptyChoiceIsLeftAlone()
{
    PopupScene scene;
    SettingsToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    for (const Box which : {Resolution, Recording, Capture, Time})
        box(popup, which)->setCurrentIndex(-1);
    QTest::mouseClick(button(popup, "OK"), Qt::LeftButton);
    QCOMPARE(Config::resolutionIndex(), 1);
    QCOMPARE(Config::recordingResolutionIndex(), 1);
    QCOMPARE(Config::snapshotMode(), CanvasModes::Single);
    QCOMPARE(Config::snapshotInterval(), 5ULL);
}

void SettingsToolWindowTest::aNewPreviewSizeEndsARunningRecording()
{
    PopupScene scene;
    SettingsToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    popup.settingsOk();
    QCOMPARE(scene.window.recordingStops, 0);
    box(popup, Resolution)->setCurrentIndex(0);
    popup.settingsOk();
    QCOMPARE(scene.window.recordingStops, 1);
}

void SettingsToolWindowTest::closingTheWindowUnderAQuestionIsHarmless()
{
    PopupScene scene;
    scene.window.show();
    auto *popup = new SettingsToolWindow(&scene.toolButton, &scene.window);
    whenAsked<QMessageBox>(&scene.window, [popup](QMessageBox *message) {
        delete popup;
        message->button(QMessageBox::No)->click();
    });
    // Called from outside of the box, which goes with its window.
    popup->recordingResolutionChanged(2);
}

void SettingsToolWindowTest::nothingIsClipped()
{
    PopupScene scene;
    const SettingsToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(popup.size(), QSize(370, 306));
    const QList<QWidget *> children =
        popup.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        QVERIFY(popup.rect().contains(child->geometry()));
        for (const QWidget *other : children) {
            if (child != other && !other->inherits("QLabel") && !child->inherits("QLabel"))
                QVERIFY(!child->geometry().intersects(other->geometry()));
        }
    }
    for (const QLabel *label : popup.findChildren<QLabel *>()) {
        label->ensurePolished();
        QVERIFY2(label->sizeHint().width() <= qMax(label->width(), 122), qPrintable(label->text()));
    }
}

REGISTER_TEST(SettingsToolWindowTest)
#include "tst_settings_tool_window.moc"
