#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "resources/SkinImages.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraParameters.h"
#include "tests/TestProgram.h"
#include "tests/canvas/GoldenPicture.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <QPainter>
#include <QProxyStyle>

#include <cstring>
#include <memory>

// These macros must stand outside every namespace.
static void removeSkin()
{
    Q_CLEANUP_RESOURCE(skin);
}

static void restoreSkin()
{
    Q_INIT_RESOURCE(skin);
}

namespace
{

constexpr QSize WIDGET(480, 160);
constexpr QColor DARK(0x38, 0x38, 0x38);

/// A camera that answers its parameters from a table.
class AnsweringCamera : public LiveSource
{
public:
    AnsweringCamera()
        : LiveSource(nullptr, {640, 480}, {640, 480}, nullptr)
    {
    }

    bool running() const override { return isRunning; }
    int ksPropSet(unsigned long property, void *data, unsigned long length) override
    {
        if (property == CameraParameter::ID_SELECTOR)
            std::memcpy(&m_selected, data, length);
        return static_cast<int>(length);
    }
    int ksPropGet(unsigned long, void *data, unsigned long length) override
    {
        const unsigned long value = answers.value(m_selected);
        std::memcpy(data, &value, length);
        return static_cast<int>(length);
    }

    void setBrightness(unsigned long value, unsigned long minimum, unsigned long maximum)
    {
        answers[CameraParameter::BRIGHTNESS] = value;
        answers[CameraParameter::BRIGHTNESS_MIN] = minimum;
        answers[CameraParameter::BRIGHTNESS_MAX] = maximum;
    }
    void setZoom(unsigned long lensPercent, unsigned long thousandths)
    {
        answers[CameraParameter::OPTICAL_ZOOM_PERCENT] = lensPercent;
        answers[CameraParameter::DIGITAL_ZOOM] = thousandths;
        answers[CameraParameter::SECOND_ZOOM] = 1000;
    }

    bool isRunning = true;
    QHash<unsigned long, unsigned long> answers;

private:
    unsigned long m_selected = 0;
};

/// A desktop that asks for animations, or for none.
class MotionStyle : public QProxyStyle
{
public:
    explicit MotionStyle(bool moves)
        : m_moves(moves)
    {
    }
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override
    {
        if (hint == SH_Widget_Animation_Duration)
            return m_moves ? 200 : 0;
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }

private:
    bool m_moves;
};

} // namespace

class OSDProcessorTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The zoom factor is written in the application's font, which platforms choose freely.
        QApplication::setFont(QFont("Arial", 10));
    }

    void init()
    {
        m_nowMs = 5000;
        m_camera = std::make_unique<AnsweringCamera>();
        m_canvas = std::make_unique<ImageCanvas>();
        m_canvas->resize(WIDGET);
        m_window = std::make_unique<MainWindow>();
        m_window->camera = m_camera.get();
        m_osd = std::make_unique<OSDProcessor>(m_window.get(), m_canvas.get());
        m_osd->setClock([this] { return m_nowMs; });
    }

    void cleanup()
    {
        m_osd.reset();
        m_window.reset();
        m_canvas.reset();
        m_camera.reset();
    }

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

    void recordTimeRunsUntilItIsStopped()
    {
        m_osd->osdRecord();
        COMPARE_GOLDEN(painted(), "osd-record-0");
        m_nowMs += 59999;
        COMPARE_GOLDEN(painted(), "osd-record-59");
        m_nowMs += 3725000 - 59999;
        COMPARE_GOLDEN(painted(), "osd-record-3725");
        m_nowMs += 356275000;
        COMPARE_GOLDEN(painted(), "osd-record-100h");
        m_osd->stopOsdRecord();
        QCOMPARE(painted(), ground());
        m_osd->osdRecord();
        COMPARE_GOLDEN(painted(), "osd-record-0");
    }

    void aSnapshotShowsForHalfASecond()
    {
        m_osd->osdSnapshot();
        COMPARE_GOLDEN(painted(), "osd-snapshot");
        m_nowMs += 499;
        QVERIFY(painted() != ground());
        m_nowMs += 1;
        QCOMPARE(painted(), ground());
    }

    void everyOtherTimedIndicationShowsForASecond_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("mask") << 0;
        QTest::newRow("effect") << 1;
        QTest::newRow("brightness") << 2;
        QTest::newRow("zoom in") << 3;
        QTest::newRow("zoom out") << 4;
        QTest::newRow("rotate") << 5;
        QTest::newRow("autofocus") << 6;
    }

    void everyOtherTimedIndicationShowsForASecond()
    {
        QFETCH(int, which);
        m_canvas->maskMode = CanvasModes::MaskCircle;
        call(which);
        m_nowMs += 999;
        QVERIFY(painted() != ground());
        m_nowMs += 1;
        QCOMPARE(painted(), ground());
        // Another call starts the second again.
        call(which);
        m_nowMs += 600;
        call(which);
        m_nowMs += 600;
        QVERIFY(painted() != ground());
    }

    void anIndicationFadesAtItsEndUnlessTheDesktopWantsNoMotion()
    {
        m_canvas->setStyle(&m_still);
        m_osd->osdAutoFocus();
        const QImage whole = painted();
        m_nowMs += 999;
        QCOMPARE(painted(), whole);

        m_canvas->setStyle(&m_moving);
        m_osd->osdAutoFocus();
        m_nowMs += 880;
        QCOMPARE(painted(), whole);
        m_nowMs += 60;
        const QImage half = painted();
        const QPoint middle(WIDGET.width() - 145 + 5, WIDGET.height() - 50 + 22);
        const int ground = qGreen(this->ground().pixel(middle));
        const int shown = qGreen(whole.pixel(middle));
        QVERIFY(ground != shown);
        QVERIFY(std::abs(qGreen(half.pixel(middle)) - (ground + shown) / 2) <= 2);
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

    void anIndicationThatIsOverWaitsForTheNextRepaint()
    {
        UpdateCounter counter;
        m_canvas->installEventFilter(&counter);
        for (int which = 0; which <= 6; ++which)
            call(which);
        m_osd->osdSnapshot();
        m_osd->osdRecord();
        m_nowMs += 5000;
        QCoreApplication::processEvents();
        QCOMPARE(counter.updates, 0);
        QVERIFY(m_osd->findChildren<QObject *>().isEmpty());
    }

    void aDraggedClipIsFramedAndBlinksAfterwards()
    {
        showPicture(WIDGET);
        m_canvas->setMouseMode(CanvasModes::Clip);
        drag(QEvent::MouseButtonPress, {100, 40});
        drag(QEvent::MouseMove, {299, 119});
        COMPARE_GOLDEN(painted(), "osd-clip");
        const QImage framed = painted();
        drag(QEvent::MouseButtonRelease, {299, 119});
        for (int ms = 0; ms < 1200; ms += 25) {
            const bool shown = ms < 900 && ms / 100 % 2 == 0;
            QCOMPARE(painted(), shown ? framed : ground());
            m_nowMs += 25;
        }
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

    void theRealClockRunsForwards()
    {
        OSDProcessor osd(m_window.get(), m_canvas.get());
        osd.osdSnapshot();
        QImage picture = ground();
        QTRY_COMPARE_WITH_TIMEOUT((paintOver(osd, picture), picture), ground(), 5000);
    }

private:
    struct UpdateCounter : QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint ||
                event->type() == QEvent::UpdateLater)
                ++updates;
            return false;
        }
        int updates = 0;
    };

    /// The canvas's size, in halves of white and near black: indications must read on both.
    [[nodiscard]] QImage ground() const
    {
        QImage picture(m_canvas->size(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.fillRect(picture.width() / 2, 0, picture.width(), picture.height(), DARK);
        return picture;
    }

    static void paintOver(OSDProcessor &osd, QImage &picture)
    {
        QPainter painter(&picture);
        painter.fillRect(0, 0, picture.width() / 2, picture.height(), Qt::white);
        painter.fillRect(picture.width() / 2, 0, picture.width(), picture.height(), DARK);
        osd.postPaint(&painter);
    }

    [[nodiscard]] QImage painted() const
    {
        QImage picture = ground();
        paintOver(*m_osd, picture);
        return picture;
    }

    void showPicture(QSize size)
    {
        QImage picture(size, QImage::Format_RGB888);
        picture.fill(Qt::white);
        m_canvas->imageCaptured(picture);
    }

    void call(int which)
    {
        switch (which) {
        case 0:
            return m_osd->osdMask();
        case 1:
            return m_osd->osdEffect();
        case 2:
            return m_osd->osdBrightness();
        case 3:
            return m_osd->osdZoomIn();
        case 4:
            return m_osd->osdZoomOut();
        case 5:
            return m_osd->osdRotate();
        default:
            return m_osd->osdAutoFocus();
        }
    }

    void drag(QEvent::Type type, QPoint point)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, point, button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(m_canvas.get(), &event);
    }

    qint64 m_nowMs = 0;
    MotionStyle m_still{false};
    MotionStyle m_moving{true};
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<AnsweringCamera> m_camera;
    std::unique_ptr<ImageCanvas> m_canvas;
    std::unique_ptr<OSDProcessor> m_osd;
};

REGISTER_TEST(OSDProcessorTest)
#include "tst_osd_processor.moc"
