#include "tests/TestProgram.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <memory>

/// What the folders below the main window get from it, and what they get when it is not there.
class WindowServicesTest : public QObject
{
    Q_OBJECT

private slots:
    void aNullWindowAnswersNullAndIgnoresRequests() { answersNothing(nullptr); }

    void aWindowAnswersForItself()
    {
        MainWindow first;
        MainWindow second;
        QCOMPARE(WindowServices::of(&first).widget(), static_cast<QWidget *>(&first));
        QCOMPARE(WindowServices::of(&second).object(), static_cast<QObject *>(&second));
        WindowServices::of(&second).stopRecording();
        QCOMPARE(first.recordingStops, 0);
        QCOMPARE(second.recordingStops, 1);
    }

    void aWindowThatIsGoneAnswersNothing()
    {
        auto window = std::make_unique<MainWindow>();
        const MainWindow *gone = window.get();
        window.reset();
        // The address alone is looked for.
        answersNothing(gone); // NOLINT(clang-analyzer-cplusplus.NewDelete)
    }

private:
    static void answersNothing(const MainWindow *window)
    {
        WindowServices &services = WindowServices::of(window);
        QVERIFY(!services.object());
        QVERIFY(!services.widget());
        QVERIFY(!services.currentCanvas());
        QVERIFY(!services.indications(nullptr));
        QVERIFY(!services.liveSource());
        services.refreshThumbnails();
        services.stopRecording();
        QObject receiver;
        services.notifyOfMode(&receiver);
    }
};

REGISTER_TEST(WindowServicesTest)
#include "tst_window_services.moc"
