#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CameraPreferences.h"
#include "mainwindow/KeptControls.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "sources/camera/CameraSettings.h"
#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/VirtualCamera.h"
#include "widgets/Slider.h"

#include <QCheckBox>
#include <QComboBox>
#include <QWheelEvent>

using namespace WindowProbe;
using Control = StandardControl;

namespace
{

VirtualCameraConfig foreign(const QString &serial, std::vector<UnitControl> controls)
{
    using UsbDescriptors::StreamCoding;
    VirtualCameraConfig config;
    ForeignMake::apply(config, serial, "Foreign " + serial);
    config.framesPerSecond = 5; // the largest is much to draw
    config.formats = {{StreamCoding::MotionJpeg, {{640, 480}, {1280, 720}, {3840, 2160}}},
                      {StreamCoding::Yuyv, {{640, 480}, {7680, 4320}}}};
    config.controls = std::move(controls);
    return config;
}

const std::vector<UnitControl> USUAL{
    {Control::PowerLine, 0, 2, 1, 1},
    {Control::Exposure, 1, 5000, 1, 157},
    {Control::ExposureAuto, 0, 0, 9, 8},
    {Control::Focus, 0, 250, 5, 60},
    {Control::FocusAuto, 0, 1, 1, 1},
    {Control::Zoom, 100, 500, 1, 100},
    {Control::WhiteBalance, 2800, 6500, 1, 4600},
};

} // namespace

/// The sliders and the sizes of the page "Camera", and that they are kept for each camera.
class WindowCameraControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("Window camera controls");
        beOnOneself();
        usualSettings();
        m_camera = std::make_unique<VirtualCamera>(foreign("A", USUAL));
        openWindow();
        choose("A");
        QVERIFY(m_camera->plug());
        QVERIFY(shows({1280, 720}));
        QVERIFY(asked());
    }
    void cleanupTestCase()
    {
        m_window.reset();
        m_camera.reset();
    }

    void whatACameraHasIsOnThePage()
    {
        QVERIFY(slider("Exposure")->isVisible());
        QVERIFY(slider("Focus")->isVisible());
        QVERIFY(slider("White balance")->isVisible());
        QVERIFY(!slider("Sharpness")->isVisible());
        QCOMPARE(slider("Exposure")->value(), 157);
        QCOMPARE(slider("Exposure")->maximum(), 5000);
        QVERIFY(automatic("Exposure")->isChecked());
        QVERIFY(automatic("Focus")->isChecked());
        QVERIFY(!automatic("White balance")->isVisible());
        const QComboBox *mains = box("Against flickering light");
        QVERIFY(mains->isVisible());
        QCOMPARE(mains->count(), 3);
        QCOMPARE(mains->currentText(), QString("50 Hz"));
    }

    void keysMoveTheSliders()
    {
        QTest::keyClick(slider("Exposure"), Qt::Key_Right);
        QVERIFY(comesTo(Control::Exposure, 158));
        QVERIFY(comesTo(Control::ExposureAuto, 1));
        QVERIFY(!automatic("Exposure")->isChecked());
        automatic("Focus")->click();
        QVERIFY(comesTo(Control::FocusAuto, 0));
        // A step is one that the camera has.
        QTest::keyClick(slider("Focus"), Qt::Key_Right);
        QVERIFY(comesTo(Control::Focus, 65));
        emit box("Against flickering light")->activated(2);
        QVERIFY(comesTo(Control::PowerLine, 2));
        for (const UnitWrite &write : m_camera->unitControls().takeWrites())
            QVERIFY(write.taken);
    }

    void theWheelScrollsThePageAlone()
    {
        for (QWidget *field : {static_cast<QWidget *>(slider("Exposure")),
                               static_cast<QWidget *>(box("Size of the picture")),
                               static_cast<QWidget *>(box("Against flickering light"))}) {
            QWheelEvent notch(QPointF(5, 5), field->mapToGlobal(QPoint(5, 5)), QPoint(),
                              QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                              false);
            QCoreApplication::sendEvent(field, &notch);
        }
        QCOMPARE(slider("Exposure")->value(), 158);
        QCOMPARE(box("Size of the picture")->currentIndex(), 0);
        QCOMPARE(m_camera->unitControls().value(Control::PowerLine), std::int64_t{2});
    }

    void theyAreSetAgainWhenTheCameraReturns()
    {
        m_camera->unplug(); // and loses its power
        QVERIFY(m_camera->plug());
        QVERIFY(standsAsKept());
        m_window.reset();
        m_camera->unplug();
        openWindow();
        QVERIFY(m_camera->plug());
        QVERIFY(standsAsKept());
        QVERIFY(!automatic("Exposure")->isChecked());
    }

    void anotherCameraHasItsOwn()
    {
        VirtualCamera other(foreign("B", USUAL));
        QVERIFY(other.plug());
        choose("B");
        QVERIFY(QTest::qWaitFor([&] { return other.statistics().framesSent > 2; }, TIMEOUT_MS));
        QVERIFY(asked());
        QCOMPARE(other.unitControls().value(Control::Exposure), std::int64_t{157});
        QVERIFY(other.unitControls().takeWrites().empty());
        QVERIFY(automatic("Exposure")->isChecked());
        choose("A");
        QVERIFY(shows({1280, 720}));
        QTRY_VERIFY_WITH_TIMEOUT(!automatic("Exposure")->isChecked(), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(slider("Exposure")->value(), 158, TIMEOUT_MS);
        QVERIFY(isClosed(other));
    }

    void whatIsKeptIsSetWhileThePageIsClosed()
    {
        VirtualCameraConfig config;
        config.serial = "V";
        config.controls = ForeignMake::usualControls();
        VirtualCamera own(config);
        CameraPreferences::choose(*m_window->findChild<CameraKeeper *>(), CameraChoice(),
                                  QString());
        QVERIFY(own.plug());
        QVERIFY(QTest::qWaitFor([&] { return own.statistics().framesSent > 2; }, TIMEOUT_MS));
        QVERIFY(asked());
        QTest::keyClick(slider("Exposure"), Qt::Key_Right);
        const auto stands = [&own] {
            return QTest::qWaitFor(
                [&own] { return own.unitControls().value(Control::Exposure) == 158; }, TIMEOUT_MS);
        };
        QVERIFY(stands());
        own.unplug(); // and loses its power
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(own.plug());
        QVERIFY(stands());
        openCameraPage();
        choose("A");
        QVERIFY(shows({1280, 720}));
        QVERIFY(isClosed(own));
    }

    void aCameraWithoutZoomZoomsTheCanvas()
    {
        QVERIFY(asked());
        const double before = m_window->currentCanvas()->zoomScale();
        QMetaObject::invokeMethod(m_window.get(), "zoomInStart");
        QVERIFY(QTest::qWaitFor(
            [this] { return m_camera->unitControls().value(Control::Zoom) > 100; }, TIMEOUT_MS));
        QMetaObject::invokeMethod(m_window.get(), "zoomInStop");
        QCOMPARE(m_window->currentCanvas()->zoomScale(), before);
        VirtualCamera plain(foreign("C", {}));
        QVERIFY(plain.plug());
        choose("C");
        QVERIFY(QTest::qWaitFor([&] { return plain.statistics().framesSent > 2; }, TIMEOUT_MS));
        QVERIFY(shows({1280, 720}));
        QMetaObject::invokeMethod(m_window.get(), "zoomInStart");
        QMetaObject::invokeMethod(m_window.get(), "zoomInStop");
        QVERIFY(m_window->currentCanvas()->zoomScale() > before);
        QMetaObject::invokeMethod(m_window.get(), "zoomReset");
        openCameraPage();
        for (const char *name : {"Exposure", "Focus", "White balance", "Sharpness"})
            QVERIFY(!slider(name)->isVisible());
        QVERIFY(!box("Against flickering light")->isVisible());
        choose("A");
        QVERIFY(shows({1280, 720}));
        QVERIFY(isClosed(plain));
    }

    void aSizeOfThePageTakesThePlaceOfTheSettings()
    {
        openCameraPage();
        QTRY_COMPARE_WITH_TIMEOUT(box("Size of the picture")->count(), 4, TIMEOUT_MS);
        QStringList sizes;
        for (int i = 0; i < box("Size of the picture")->count(); ++i)
            sizes << box("Size of the picture")->itemText(i);
        QCOMPARE(sizes, QStringList({"As in the settings (1280 x 720)", "3840 x 2160", "1280 x 720",
                                     "640 x 480"}));
        emit box("Size of the picture")->activated(1);
        QVERIFY(shows({3840, 2160}));
        m_window.reset();
        openWindow();
        QVERIFY(shows({3840, 2160}));
        QCOMPARE(box("Size of the picture")->currentText(), QString("3840 x 2160"));
        // The settings' three sizes count again as soon as one of them is chosen.
        m_window->liveSource()->setResolution({1920, 1080});
        QVERIFY(shows({1280, 720}));
        QCOMPARE(box("Size of the picture")->currentIndex(), 0);
        m_window.reset();
        openWindow();
        QVERIFY(shows({1280, 720}));
    }

    void whatIsKeptIsReadFromAnyText()
    {
        KeptControls kept;
        kept.keep(Control::Exposure, std::nullopt);
        kept.keep(Control::Focus, -5);
        QCOMPARE(kept.text(), QString("exposure=auto focus=-5"));
        QCOMPARE(KeptControls::fromText(kept.text()).text(), kept.text());
        const QString nonsense =
            "focus exposure=x =5 zoom=3 focus=9999999999999999999999 sharpness=2=3";
        QCOMPARE(KeptControls::fromText(nonsense).text(), QString());
        QCOMPARE(KeptControls::fromText(QString(100000, '=')).text(), QString());
    }

private:
    void openWindow()
    {
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        openCameraPage();
    }

    void openCameraPage()
    {
        if (!m_window->currentToolWindow())
            m_window->button(Command::More)->click();
        button(*m_window->currentToolWindow(), "Camera")->click();
    }

    void choose(const QString &serial)
    {
        CameraPreferences::choose(
            *m_window->findChild<CameraKeeper *>(),
            CameraIdentity{ForeignMake::VENDOR_ID, ForeignMake::PRODUCT_ID, serial},
            "Foreign " + serial);
    }

    template <class Widget>
    Widget *named(const QString &name) const
    {
        for (auto *widget : m_window->currentToolWindow()->findChildren<Widget *>()) {
            if (widget->accessibleName() == name)
                return widget;
        }
        qFatal("nothing is called %s", qPrintable(name));
    }
    Slider *slider(const QString &name) const { return named<Slider>(name); }
    QComboBox *box(const QString &name) const { return named<QComboBox>(name); }
    QCheckBox *automatic(const QString &name) const
    {
        return named<QCheckBox>(name + ": Automatic");
    }

    bool shows(QSize size) const
    {
        const auto *keeper = m_window->findChild<CameraKeeper *>();
        return QTest::qWaitFor(
            [&] {
                return keeper->status().state == CameraStatus::State::Showing &&
                       keeper->status().size == size;
            },
            TIMEOUT_MS);
    }

    /// Whether the camera in use has told of all its controls.
    bool asked() const
    {
        const CameraSettings &settings = m_window->liveSource()->cameraSettings();
        return QTest::qWaitFor(
            [&] { return !settings.asking() && settings.controls().has(Control::Exposure); },
            TIMEOUT_MS);
    }

    /// Whether the program has let go of a camera, which then may cease to be.
    static bool isClosed(const VirtualCamera &camera)
    {
        return QTest::qWaitFor([&] { return camera.statistics().openHandles == 0; }, TIMEOUT_MS);
    }

    bool comesTo(Control control, std::int64_t value) const
    {
        return QTest::qWaitFor([&] { return m_camera->unitControls().value(control) == value; },
                               TIMEOUT_MS);
    }

    bool standsAsKept() const
    {
        return comesTo(Control::Exposure, 158) && comesTo(Control::ExposureAuto, 1) &&
               comesTo(Control::Focus, 65) && comesTo(Control::FocusAuto, 0) &&
               comesTo(Control::PowerLine, 2);
    }

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(WindowCameraControlsTest)
#include "tst_window_camera_controls.moc"
