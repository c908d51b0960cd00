#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/bars/CommandCard.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/VirtualCamera.h"
#include "widgets/CameraPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSignalSpy>

using namespace WindowProbe;

/// What the pop-up "More" and its button tell of the camera and of pictures that were not saved,
/// while a camera comes and goes.
class WindowCameraPageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("Window camera page");
        beOnOneself();
        usualSettings();
        m_camera = std::make_unique<VirtualCamera>();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_more = m_window->button(Command::More);
    }
    void cleanupTestCase()
    {
        m_window.reset();
        m_camera.reset();
    }

    void thePageFollowsTheCamera()
    {
        // A camera might still be opened.
        QVERIFY(!m_more->isMarked());
        openCameraPage();
        QVERIFY(!tab("Camera")->isMarked());
        QVERIFY(QTest::qWaitFor([&] { return m_more->isMarked(); }, TIMEOUT_MS));
        QCOMPARE(sentence(), QString("No camera is plugged in."));
        QVERIFY(tab("Camera")->isMarked());

        QVERIFY(m_camera->plug());
        QVERIFY(comes("The camera shows 1280 x 720"));
        QVERIFY(!m_more->isMarked());
        QVERIFY(!tab("Camera")->isMarked());

        m_camera->unplug();
        QVERIFY(comes("The camera was unplugged."));
        QVERIFY(m_more->isMarked());
        QVERIFY(tab("Camera")->isMarked());

        QVERIFY(m_camera->plug());
        QVERIFY(comes("The camera shows 1280 x 720"));
        QVERIFY(!m_more->isMarked());
    }

    void aCameraThatIsThereIsNeverMarkedAtStart()
    {
        m_window.reset();
        m_window = std::make_unique<MainWindow>();
        m_more = m_window->button(Command::More);
        const auto *card = m_window->findChild<CommandCard *>();
        bool marked = m_more->isMarked();
        connect(card, &CommandCard::marksChanged, this,
                [this, &marked] { marked = marked || m_more->isMarked(); });
        m_window->show();
        const auto *keeper = m_window->findChild<CameraKeeper *>();
        QVERIFY(QTest::qWaitFor(
            [&] { return keeper->status().state == CameraStatus::State::Showing; }, TIMEOUT_MS));
        disconnect(card, nullptr, this, nullptr);
        QVERIFY(!marked);
        openCameraPage();
    }

    void theCameraIsChosenOnThePageAndRemembered()
    {
        VirtualCameraConfig config;
        ForeignMake::apply(config, "F1", "Foreign\tcamera");
        config.formats = {{UsbDescriptors::StreamCoding::Yuyv, {{640, 480}}}};
        VirtualCamera foreign(config);
        QCOMPARE(cameraNames(), QStringList({"The document camera", "Emulated document camera"}));
        QVERIFY(foreign.plug());
        QVERIFY(QTest::qWaitFor([this] { return cameraNames().contains("Foreign camera"); },
                                TIMEOUT_MS));
        QCOMPARE(cameras()->currentText(), QString("The document camera"));
        chooseCamera("Foreign camera");
        QVERIFY(comes("The camera shows 640 x 480"));
        QCOMPARE(m_window->liveSource()->mirrored(), Qt::Orientations());
        for (QCheckBox *mirror : m_window->currentToolWindow()->findChildren<QCheckBox *>())
            mirror->click();
        QCOMPARE(m_window->liveSource()->mirrored(), Qt::Horizontal | Qt::Vertical);

        m_window.reset();
        foreign.unplug();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_more = m_window->button(Command::More);
        openCameraPage();
        QVERIFY(comes("The chosen camera is not plugged in."));
        QCOMPARE(cameras()->currentText(), QString("Foreign camera (not plugged in)"));
        QCOMPARE(m_window->liveSource()->mirrored(), Qt::Horizontal | Qt::Vertical);
        QVERIFY(foreign.plug());
        QVERIFY(comes("The camera shows 640 x 480"));
        QCOMPARE(cameras()->currentText(), QString("Foreign camera"));
        chooseCamera("The document camera");
        QVERIFY(comes("The camera shows 1280 x 720"));
        // A camera may cease to be when the program has let go of it.
        QTRY_COMPARE_WITH_TIMEOUT(foreign.statistics().openHandles, 0, TIMEOUT_MS);
    }

    void aPictureThatWasNotSavedIsMarkedUntilItIsRead()
    {
        QVERIFY(m_window->currentToolWindow());
        m_window->currentToolWindow()->close();
        ImageCanvas *canvas = m_window->currentCanvas();
        QSignalSpy failures(canvas, SIGNAL(snapshotFailed(QString, QString)));
        canvas->snapshotFolder = "/proc"; // takes no files, not even from root
        canvas->snapshot();
        QVERIFY(failures.count() > 0 || failures.wait(TIMEOUT_MS));
        QVERIFY(m_more->isMarked());
        openCameraPage();
        QVERIFY(m_more->isMarked());
        QVERIFY(tab("Recording")->isMarked());
        tab("Recording")->click();
        QVERIFY(!tab("Recording")->isMarked());
        QVERIFY(!m_more->isMarked());
    }

private:
    void openCameraPage()
    {
        m_more->click();
        tab("Camera")->click();
    }

    QComboBox *cameras() const { return m_window->currentToolWindow()->findChild<QComboBox *>(); }

    QStringList cameraNames() const
    {
        QStringList names;
        for (int i = 0; i < cameras()->count(); ++i)
            names.append(cameras()->itemText(i));
        return names;
    }

    void chooseCamera(const QString &name)
    {
        cameras()->setCurrentIndex(cameras()->findText(name));
        emit cameras()->activated(cameras()->currentIndex());
    }

    ImageButton *tab(const QString &name) const
    {
        return button(*m_window->currentToolWindow(), name);
    }

    QString sentence() const
    {
        const auto *page = m_window->currentToolWindow()->findChild<CameraPage *>();
        return page ? page->sentence() : QString();
    }

    bool comes(const QString &beginning) const
    {
        return QTest::qWaitFor([&] { return sentence().startsWith(beginning); }, TIMEOUT_MS);
    }

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
    ImageButton *m_more = nullptr;
};

REGISTER_TEST(WindowCameraPageTest)
#include "tst_window_camera_page.moc"
