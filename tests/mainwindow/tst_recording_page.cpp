#include "mainwindow/RecordingPreferences.h"
#include "mainwindow/RecordingStatus.h"
#include "mainwindow/pages/MicrophoneLevel.h"
#include "mainwindow/pages/MicrophoneList.h"
#include "mainwindow/pages/Pages.h"

#include "settings/Preferences.h"
#include "settings/StoredSettings.h"
#include "sources/LiveSource.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/mainwindow/HelperScene.h"
#include "tests/media/SoundServer.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(RecordingState)

#include <functional>
#include <vector>

namespace
{

bool hasThread(const QByteArray &name)
{
    const QDir tasks("/proc/self/task");
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task + "/comm"));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name)
            return true;
    }
    return false;
}

struct RecordingPageScene : HelperScene {
    RecordingPageScene()
        : source(deck.current(), {640, 480}, {640, 480}, nullptr)
        , page(Pages::makeRecordingPage({&deck, nullptr, &source, nullptr}, nullptr))
    {
        page->resize(320, 500);
    }

    MicrophoneList *list() const { return page->findChild<MicrophoneList *>(); }
    void choose(const QString &name) const
    {
        list()->setCurrentIndex(list()->findText(name));
        emit list()->activated(list()->currentIndex());
    }
    QString text() const
    {
        QString all;
        for (const QLabel *label : page->findChildren<QLabel *>())
            all += label->text() + '\n';
        return all;
    }

    LiveSource source;
    std::unique_ptr<QWidget> page;
};

int pixelsOf(QWidget &widget, QRgb colour)
{
    const QImage image = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == colour ? 1 : 0;
    }
    return count;
}

/// How often a widget is painted.
class PaintCount : public QObject
{
public:
    explicit PaintCount(QWidget &widget)
        : m_widget(widget)
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        count += object == &m_widget && event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;

private:
    QWidget &m_widget;
};

constexpr QRgb AMBER = 0xFFFFC83D;

RecordingState goodState()
{
    RecordingState state;
    state.running = true;
    state.heard = "Desk";
    state.level.shownPeak = -25;
    state.movie.freeBytes = 10LL * 1000 * 1000 * 1000;
    state.movie.bytes = qint64{60} * 1000 * 1000;
    state.movie.elapsedUs = qint64{60} * 1000000;
    return state;
}

} // namespace

/// The page "Recording", and the sign of how a recording is doing.
class RecordingPageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { StoredSettings::nameFiles(); }
    void init()
    {
        m_server = std::make_unique<SoundServer>(m_folder.path());
        QFile::remove(Preferences::fileName());
    }
    void cleanup() { m_server.reset(); }

    void theMicrophoneIsHeardWhileThePageIsSeenAndNoLonger()
    {
        QVERIFY(m_server->start());
        RecordingPageScene scene;
        QTRY_VERIFY_WITH_TIMEOUT(!hasThread("SoundDevice"), TIMEOUT_MS);
        scene.page->show();
        QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("Heard now: CameraMic"), TIMEOUT_MS);
        QVERIFY(hasThread("SoundDevice"));
        scene.page->hide();
        QTRY_VERIFY_WITH_TIMEOUT(!hasThread("SoundDevice"), TIMEOUT_MS);
        QVERIFY(!QFile::exists(Preferences::fileName()));
    }

    void aMicrophoneIsChosenAndRemembered()
    {
        QVERIFY(m_server->start() && m_server->plugOther("desk"));
        {
            RecordingPageScene scene;
            scene.page->show();
            QTRY_VERIFY_WITH_TIMEOUT(scene.list()->findText("desk") > 0, TIMEOUT_MS);
            QCOMPARE(scene.list()->currentText(), QString("That of the camera"));
            scene.choose("desk");
            QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("Heard now: desk"), TIMEOUT_MS);
        }
        QVERIFY(m_server->unplugOthers());
        RecordingPageScene scene;
        RecordingPreferences::restore(scene.source.liveRecording());
        scene.page.reset(Pages::makeRecordingPage({nullptr, nullptr, &scene.source}, nullptr));
        scene.page->show();
        QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("No microphone is heard"), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(scene.list()->currentText(), QString("desk (not plugged in)"),
                                  TIMEOUT_MS);
        QVERIFY(m_server->plugOther("desk"));
        QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("Heard now: desk"), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(scene.list()->currentText(), QString("desk"), TIMEOUT_MS);
        scene.choose("None");
        QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("No microphone is heard"), TIMEOUT_MS);
        QVERIFY(scene.source.liveRecording().microphone() == MicrophoneChoice::none());
        scene.choose("That of the camera");
        QTRY_VERIFY_WITH_TIMEOUT(scene.text().contains("Heard now: CameraMic"), TIMEOUT_MS);
        QCOMPARE(Preferences::text("microphone"), QString());
    }

    void qualityAndTimeLapseAreChosenAndRemembered()
    {
        const auto choose = [](const RecordingPageScene &scene, const QString &text) {
            for (QComboBox *list : scene.page->findChildren<QComboBox *>()) {
                const int place = list->findText(text);
                if (place < 0)
                    continue;
                list->setCurrentIndex(place);
                emit list->activated(place);
                return true;
            }
            return false;
        };
        {
            const RecordingPageScene scene;
            const LiveRecording &recording = scene.source.liveRecording();
            QVERIFY(choose(scene, "Small (half the size)"));
            QCOMPARE(recording.quality(), MovieQuality::Small);
            QVERIFY(choose(scene, "A picture every 10 s, no sound"));
            QCOMPARE(int(recording.timeLapse().count()), 10);
        }
        RecordingPageScene scene;
        LiveRecording &recording = scene.source.liveRecording();
        RecordingPreferences::restore(recording);
        QCOMPARE(recording.quality(), MovieQuality::Small);
        QCOMPARE(int(recording.timeLapse().count()), 10);
        QVERIFY(choose(scene, "Standard"));
        QCOMPARE(recording.quality(), MovieQuality::Standard);
        QVERIFY(choose(scene, "Off"));
        QCOMPARE(int(recording.timeLapse().count()), 0);
        RecordingPreferences::restore(recording);
        QCOMPARE(recording.quality(), MovieQuality::Standard);
        QCOMPARE(int(recording.timeLapse().count()), 0);
    }

    void aServerThatHangsDoesNotHoldThePage()
    {
        QVERIFY(m_server->start());
        m_server->freeze(true);
        {
            RecordingPageScene scene;
            QElapsedTimer took;
            took.start();
            scene.page->show();
            QTest::qWait(300);
            took.restart();
            scene.page->hide();
            scene.page.reset();
            QVERIFY2(took.elapsed() < 900, qPrintable(QString::number(took.elapsed())));
        }
        m_server->freeze(false);
        QTRY_VERIFY_WITH_TIMEOUT(!hasThread("SoundDevice"), TIMEOUT_MS);
    }

    void choicesAreTexts()
    {
        const auto there = [](const MicrophoneChoice &choice) {
            return RecordingPreferences::toChoice(RecordingPreferences::toText(choice)) == choice;
        };
        QVERIFY(there({}));
        QVERIFY(there(MicrophoneChoice::none()));
        QVERIFY(there(MicrophoneChoice::ofSource("none")));
        QVERIFY(RecordingPreferences::toChoice("garbage") == MicrophoneChoice());
    }

    void whatIsWellIsNotMarked()
    {
        QWidget window;
        RecordingStatus status(&window);
        status.showState(goodState(), 0);
        QCOMPARE(status.toolTip(), QString("The disk lasts 165 minutes"));
        QCOMPARE(pixelsOf(status, AMBER), 0);
    }

    void onlyWhatChangesIsPainted()
    {
        QWidget window;
        RecordingStatus status(&window);
        status.show();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        status.showState(goodState(), 0);
        PaintCount paints(status);
        for (int n = 0; n < 10; ++n) {
            RecordingState state = goodState();
            // Less than a bar and less than a minute.
            state.level.shownPeak += n / 20.0;
            state.movie.freeBytes -= qint64{1000} * n;
            status.showState(state, 0);
            QCoreApplication::processEvents();
        }
        QCOMPARE(paints.count, 0);
        RecordingState state = goodState();
        for (const auto &change : std::vector<std::function<void()>>{
                 [&] { state.level.shownPeak = -12; }, [&] { state.dropped = 1; },
                 [&] { state.movie.freeBytes /= 2; }, [&] { state.level.zerosUs = 20000000; },
                 [&] { state.withSound = false; }}) {
            change();
            paints.count = 0;
            status.showState(state, 0);
            QTRY_COMPARE_WITH_TIMEOUT(paints.count, 1, TIMEOUT_MS);
        }
    }

    void whatIsWrongIsMarkedAndSaid_data()
    {
        QTest::addColumn<RecordingState>("state");
        QTest::addColumn<qint64>("missed");
        QTest::addColumn<QString>("said");
        RecordingState state = goodState();
        state.movie.freeBytes = qint64{300} * 1000 * 1000;
        QTest::newRow("few minutes") << state << qint64(0) << "The disk lasts 4 minutes";
        state = goodState();
        state.level.zerosUs = 11000000;
        QTest::newRow("zeros") << state << qint64(0) << "No sound is recorded";
        state = goodState();
        state.heard.clear();
        state.level.zerosUs = 2000000;
        QTest::newRow("no microphone") << state << qint64(0) << "No sound is recorded";
        state = goodState();
        state.dropped = 12;
        QTest::newRow("dropped") << state << qint64(0) << "Pictures dropped: 12";
        QTest::newRow("missed") << goodState() << qint64(3) << "Frames missed: 3";
    }

    void whatIsWrongIsMarkedAndSaid()
    {
        QFETCH(RecordingState, state);
        QFETCH(qint64, missed);
        QFETCH(QString, said);
        QWidget window;
        RecordingStatus status(&window);
        status.showState(state, missed);
        QVERIFY2(status.toolTip().contains(said), qPrintable(status.toolTip()));
        QVERIFY(status.accessibleDescription().contains(said));
        QVERIFY(pixelsOf(status, AMBER) > 50);
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
};

REGISTER_TEST(RecordingPageTest)
#include "tst_recording_page.moc"
