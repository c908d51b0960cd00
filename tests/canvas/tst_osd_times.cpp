#include "tests/TestProgram.h"
#include "tests/canvas/GoldenPicture.h"
#include "tests/canvas/OsdTest.h"

#include <QProxyStyle>

#include <cstdlib>

namespace
{

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

/// How long indications show, and how they move.
class OsdTimesTest : public OsdTest
{
    Q_OBJECT

private slots:
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

    void recordTimeStandsStillWhileItIsHeld()
    {
        m_osd->holdOsdRecord(true); // nothing to hold
        QCOMPARE(painted(), ground());
        m_osd->osdRecord();
        m_nowMs += 59999;
        m_osd->holdOsdRecord(true);
        m_nowMs += 100000;
        m_osd->holdOsdRecord(true);
        COMPARE_GOLDEN(painted(), "osd-record-59");
        m_osd->holdOsdRecord(false);
        COMPARE_GOLDEN(painted(), "osd-record-59");
        m_nowMs += 3725000 - 59999;
        COMPARE_GOLDEN(painted(), "osd-record-3725");
        m_osd->holdOsdRecord(true);
        m_osd->stopOsdRecord();
        m_osd->osdRecord();
        COMPARE_GOLDEN(painted(), "osd-record-0");
        m_nowMs += 59999;
        COMPARE_GOLDEN(painted(), "osd-record-59");
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

    void drag(QEvent::Type type, QPoint point)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, point, button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(m_canvas.get(), &event);
    }

    MotionStyle m_still{false};
    MotionStyle m_moving{true};
};

REGISTER_TEST(OsdTimesTest)
#include "tst_osd_times.moc"
