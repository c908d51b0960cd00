#include "tests/TestProgram.h"
#include "tests/canvas/GoldenPicture.h"
#include "tests/canvas/OsdTest.h"

/// The indications that ask the camera: brightness and its zoom.
class OsdCameraTest : public OsdTest
{
    Q_OBJECT

private slots:
    void sevenBrightnessStepsHaveTheCentreMarkerOnTheFourth()
    {
        m_camera->setBrightness(3, 0, 6);
        m_osd->osdBrightness();
        COMPARE_GOLDEN(painted(), "osd-brightness-centre");
    }

    void theLowestBrightnessIsMarkedOnTheFirstSegment()
    {
        m_camera->setBrightness(0, 0, 6);
        m_osd->osdBrightness();
        COMPARE_GOLDEN(painted(), "osd-brightness-lowest");
    }

    void aCameraWithoutARangeShowsFifteenSteps()
    {
        m_camera->setBrightness(15, 0, 0);
        m_osd->osdBrightness();
        COMPARE_GOLDEN(painted(), "osd-brightness-fifteen");
    }

    void aStoppedOrMissingCameraShowsOneLongSegment()
    {
        m_camera->isRunning = false;
        m_osd->osdBrightness();
        const QImage stopped = painted();
        COMPARE_GOLDEN(stopped, "osd-brightness-none");
        m_window->camera = nullptr;
        QCOMPARE(painted(), stopped);
    }

    void withoutAWindowThereIsNoCamera()
    {
        m_camera->isRunning = false;
        m_osd->osdBrightness();
        const QImage stopped = painted();
        m_osd = std::make_unique<OSDProcessor>(nullptr, m_canvas.get());
        m_osd->setClock([this] { return m_nowMs; });
        m_osd->osdBrightness();
        QCOMPARE(painted(), stopped);
    }

    void brightnessModeKeepsTheScale()
    {
        m_camera->setBrightness(3, 0, 6);
        m_osd->setBrightnessMode(true);
        const QImage shown = painted();
        QVERIFY(shown != ground());
        m_nowMs += 100000;
        QCOMPARE(painted(), shown);
        m_osd->setBrightnessMode(false);
        QCOMPARE(painted(), ground());
    }

    void opticalZoomShowsItsBarAndTheDigitalFactor()
    {
        m_osd->osdZoomIn();
        m_nowMs += 2000;
        m_osd->osdOpticalZoomOn();
        m_camera->setZoom(50, 1000);
        COMPARE_GOLDEN(painted(), "osd-optical-half");
        m_camera->setZoom(100, 2000);
        COMPARE_GOLDEN(painted(), "osd-optical-full-digital-2");
        m_camera->setZoom(0, 1000);
        QCOMPARE(painted(), ground());
        m_camera->setZoom(100, 2000);
        m_osd->osdOpticalZoomOff();
        QCOMPARE(painted(), ground());
    }

    void opticalZoomTakesTheStepsTextAway()
    {
        m_osd->osdZoomIn();
        m_camera->setZoom(0, 1000);
        const QImage withText = painted();
        m_osd->osdOpticalZoomOn();
        const QImage without = painted();
        QVERIFY(without != withText);
        QVERIFY(without != ground());
    }

    void anAbsurdZoomAnswerEndsAtTheWidgetsEdge()
    {
        m_osd->osdOpticalZoomOn();
        m_camera->setZoom(~0UL, 1000);
        const QImage shown = painted();
        QCOMPARE(shown.pixelColor(WIDGET.width() - 1, WIDGET.height() - 30), QColor(0x0080FF));
        QCOMPARE(shown.pixelColor(WIDGET.width() - 184, WIDGET.height() - 40), QColor(0x0080FF));
    }

    void theZoomFactorHasADarkGroundOnWhitePaper()
    {
        m_osd->osdOpticalZoomOn();
        m_camera->setZoom(0, 2000);
        QImage paper(WIDGET, QImage::Format_RGB32);
        paper.fill(Qt::white);
        QPainter painter(&paper);
        m_osd->postPaint(&painter);
        painter.end();
        // Inside the ground, left of the first letter, and outside.
        QCOMPARE(paper.pixelColor(WIDGET.width() - 115, WIDGET.height() - 60), QColor(77, 77, 77));
        QCOMPARE(paper.pixelColor(WIDGET.width() - 120, WIDGET.height() - 60), QColor(Qt::white));
    }
};

REGISTER_TEST(OsdCameraTest)
#include "tst_osd_camera.moc"
