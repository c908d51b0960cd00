#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "tests/canvas/GoldenPicture.h"
#include "tests/canvas/OsdTest.h"

// These macros must stand outside every namespace.
static void removeSkin()
{
    Q_CLEANUP_RESOURCE(skin);
}

static void restoreSkin()
{
    Q_INIT_RESOURCE(skin);
}

class OSDProcessorTest : public OsdTest
{
    Q_OBJECT

private slots:
    void nothingShowsBeforeTheFirstCall() { QCOMPARE(painted(), ground()); }

    void eachMaskShowsItsPicture()
    {
        const char *names[] = {"none", "circle", "rectangle", "left", "top"};
        for (int mode = CanvasModes::MaskNone; mode <= CanvasModes::MaskTop; ++mode) {
            m_canvas->maskMode = static_cast<CanvasModes::MaskMode>(mode);
            m_osd->osdMask();
            COMPARE_GOLDEN(painted(), QString("osd-mask-%1").arg(names[mode]));
        }
    }

    void eachEffectShowsItsPictureAndName()
    {
        const char *names[] = {"color", "bw", "negative", "mosaic"};
        for (int mode = CanvasModes::EffectColor; mode <= CanvasModes::EffectMosaic; ++mode) {
            m_canvas->effectMode = static_cast<CanvasModes::EffectMode>(mode);
            m_osd->osdEffect();
            COMPARE_GOLDEN(painted(), QString("osd-effect-%1").arg(names[mode]));
        }
    }

    void zoomStepsShowPowersOfTwo()
    {
        showPicture(WIDGET);
        m_osd->osdZoomIn();
        COMPARE_GOLDEN(painted(), "osd-zoom-in-1");
        m_canvas->zoomIn();
        m_canvas->zoomIn();
        m_osd->osdZoomIn();
        COMPARE_GOLDEN(painted(), "osd-zoom-in-3");
        m_canvas->zoomOut();
        m_osd->osdZoomOut();
        COMPARE_GOLDEN(painted(), "osd-zoom-out-2");
    }

    void aTurnedPictureThatFitsShowsBestFit()
    {
        showPicture(WIDGET);
        m_canvas->rotate();
        QVERIFY(m_canvas->zoomScale() < 1.0);
        m_osd->osdZoomOut();
        COMPARE_GOLDEN(painted(), "osd-zoom-out-fit");
        m_osd->osdZoomIn();
        COMPARE_GOLDEN(painted(), "osd-zoom-in-fit");
    }

    void threeQuarterTurnsShow270()
    {
        for (int i = 0; i < 3; ++i)
            m_canvas->rotate();
        m_osd->osdRotate();
        COMPARE_GOLDEN(painted(), "osd-rotate-270");
        m_canvas->rotate();
        m_osd->osdRotate();
        COMPARE_GOLDEN(painted(), "osd-rotate-0");
    }

    void autofocusFreezeAndMacroStandSideBySide()
    {
        m_osd->osdAutoFocus();
        m_osd->osdFreeze();
        m_osd->osdMacro(true);
        m_canvas->frozen = true;
        COMPARE_GOLDEN(painted(), "osd-autofocus-freeze-macro");
        m_nowMs += 1000;
        COMPARE_GOLDEN(painted(), "osd-freeze-macro");
        m_canvas->frozen = false;
        COMPARE_GOLDEN(painted(), "osd-macro");
        m_osd->osdMacro(false);
        QCOMPARE(painted(), ground());
    }

    void missingPicturesDrawOnlyTheirTexts()
    {
        removeSkin();
        m_camera->setBrightness(3, 0, 6);
        m_osd->osdBrightness();
        m_osd->osdMask();
        m_osd->osdAutoFocus();
        m_osd->osdSnapshot();
        QCOMPARE(painted(), ground());
        m_osd->osdEffect();
        m_osd->osdRotate();
        m_osd->osdRecord();
        const QImage shown = painted();
        restoreSkin();
        COMPARE_GOLDEN(shown, "osd-texts-without-pictures");
    }

    void picturesAreReadAnewByEveryCall()
    {
        removeSkin();
        m_osd->osdAutoFocus();
        QCOMPARE(painted(), ground());
        restoreSkin();
        QCOMPARE(painted(), ground());
        m_osd->osdAutoFocus();
        QVERIFY(painted() != ground());
    }

    void everythingAtOnceKeepsItsOrderInANarrowCanvas()
    {
        m_canvas->resize(607, 160);
        showPicture({607, 160});
        m_canvas->maskMode = CanvasModes::MaskTop;
        m_canvas->effectMode = CanvasModes::EffectNegative;
        m_canvas->frozen = true;
        m_camera->setBrightness(8, 1, 15);
        m_camera->setZoom(75, 1500);
        for (int which = 0; which <= 6; ++which)
            call(which);
        m_osd->osdOpticalZoomOn();
        m_osd->osdFreeze();
        m_osd->osdMacro(true);
        m_osd->osdRecord();
        m_osd->osdSnapshot();
        COMPARE_GOLDEN(painted(), "osd-everything-607");
    }

    void thePainterIsGivenBackAsItCame()
    {
        QImage picture = ground();
        QPainter painter(&picture);
        painter.setPen(QPen(Qt::green, 7));
        painter.setBrush(Qt::yellow);
        m_osd->osdRecord();
        m_osd->osdZoomIn();
        m_osd->postPaint(&painter);
        QCOMPARE(painter.pen(), QPen(Qt::green, 7));
        QCOMPARE(painter.brush(), QBrush(Qt::yellow));
    }

    void aProcessorWithoutACanvasPaintsNothing()
    {
        OSDProcessor osd(nullptr, nullptr);
        osd.osdMask();
        osd.osdEffect();
        osd.osdZoomIn();
        osd.osdZoomOut();
        osd.osdRotate();
        QImage picture = ground();
        QPainter painter(&picture);
        osd.postPaint(&painter);
        painter.end();
        QCOMPARE(picture, ground());
        osd.postPaint(nullptr);
    }
};

REGISTER_TEST(OSDProcessorTest)
#include "tst_osd_processor.moc"
