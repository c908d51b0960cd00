#include "canvas/picture/ViewGeometry.h"
#include "tests/TestProgram.h"
#include "tests/canvas/ViewOf.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace
{

ViewGeometry turned(ViewGeometry view, int clockwiseTurns)
{
    for (int i = 0; i < clockwiseTurns; ++i)
        view.turn(true);
    return view;
}

/// Scales about what is seen at that point of the processed picture.
void zoomAbout(ViewGeometry &view, QPointF processedPoint, double scale)
{
    view.place(view.rotatedPoint(processedPoint), processedPoint, scale);
}

} // namespace

class ViewGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void startsAtScaleOneWithoutAFrame()
    {
        const ViewGeometry view;
        QCOMPARE(view.frameSize(), QSize(-1, -1));
        QCOMPARE(view.scale(), 1.0);
        QCOMPARE(view.offset(), QPoint(0, 0));
        QCOMPARE(view.centerPoint(), QPointF(0, 0));
        QCOMPARE(view.minimumScale(), 1.0);
    }

    void zoomsInByWholeStepsUpToSix()
    {
        ViewGeometry view = viewOf({1280, 720});
        for (const double expected : {2.0, 3.0, 4.0, 5.0, 6.0}) {
            QVERIFY(view.zoomIn());
            QCOMPARE(view.scale(), expected);
        }
        const ViewGeometry before = view;
        QVERIFY(!view.zoomIn());
        QVERIFY(view == before);
    }

    void zoomsOutByWholeStepsDownToTheFit()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoom({640, 360}, 6);
        for (const double expected : {5.0, 4.0, 3.0, 2.0, 1.0, 1.0}) {
            view.zoomOut();
            QCOMPARE(view.scale(), expected);
        }
    }

    void keepsTheCentreWhileZooming()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoomIn();
        // 640 * 2 - 1280 * 0.5 and 360 * 2 - 720 * 0.5.
        QCOMPARE(view.offset(), QPoint(640, 360));
        QCOMPARE(view.centerPoint(), QPointF(640, 360));
        view.zoomOut();
        QCOMPARE(view.offset(), QPoint(0, 0));
    }

    void hasNoOffsetAtScaleOne()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.setViewport(100, 100);
        QCOMPARE(view.offset(), QPoint(0, 0));
    }

    void clampsTheViewport()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoom({640, 360}, 2);
        view.setViewport(-5, 10000);
        QCOMPARE(view.offset(), QPoint(0, 719));
        view.setViewport(10000, -5);
        QCOMPARE(view.offset(), QPoint(1279, 0));
    }

    void fitsATurnedFrameAndTurnsBackToScaleOne()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.turn(true);
        QCOMPARE(view.rotation(), 1);
        QCOMPARE(view.scale(), 0.5625);
        QCOMPARE(view.minimumScale(), 0.5625);
        QCOMPARE(view.rotatedSize(), QSize(720, 1280));
        QCOMPARE(view.transformedSize(), QSize(405, 720));
        // Off the true centre (360, 640), as the scale enters the formula twice.
        QCOMPARE(view.centerPoint(), QPointF(202.5, 360.0));
        view.turn(true);
        QCOMPARE(view.rotation(), 2);
        QCOMPARE(view.scale(), 1.0);
        view.turn(false);
        QCOMPARE(view.rotation(), 1);
        view.turn(false);
        QCOMPARE(view.rotation(), 0);
        QCOMPARE(view.scale(), 1.0);
        view.turn(false);
        QCOMPARE(view.rotation(), 3);
        QCOMPARE(view.scale(), 0.5625);
    }

    void fourTurnsAtScaleTwoFollowTheirFormulas()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoom({640, 360}, 2);
        view.setViewport(400, 300);
        QCOMPARE(turned(view, 4).offset(), QPoint(400, 300));
        // Both directions measure from the new width, so the way back is another one.
        for (const QPoint &expected :
             {QPoint(20, 39), QPoint(0, 719), QPoint(159, 439), QPoint(159, 719)}) {
            view.turn(false);
            QCOMPARE(view.offset(), expected);
        }
        QCOMPARE(view.rotation(), 0);
    }

    void zoomInFromATurnedFitGoesToOne()
    {
        ViewGeometry view = turned(viewOf({1280, 720}), 1);
        QVERIFY(view.zoomIn());
        QCOMPARE(view.scale(), 1.0);
        QVERIFY(view.zoomIn());
        QCOMPARE(view.scale(), 2.0);
    }

    void zoomResetGoesToTheFit()
    {
        ViewGeometry view = turned(viewOf({1280, 720}), 1);
        view.zoom({360, 640}, 4);
        view.zoomReset();
        QCOMPARE(view.scale(), 0.5625);
        QCOMPARE(view.offset(), QPoint(0, 0));
    }

    void aNewSizeKeepsTheRotationAndTheTruncatedScale()
    {
        ViewGeometry view = turned(viewOf({1280, 720}), 1);
        view.zoom({360, 640}, 3);
        view.setFrameSize({1920, 1080});
        QCOMPARE(view.rotation(), 1);
        QCOMPARE(view.scale(), 3.0);
        view.zoomReset();
        view.setFrameSize({1024, 768});
        QCOMPARE(view.scale(), 0.75);
    }

    void theVisiblePartLiesInsideThePicture_data()
    {
        QTest::addColumn<QSize>("frame");
        for (const QSize &size : {QSize(1, 1), QSize(4, 4), QSize(4, 1000), QSize(1000, 4),
                                  QSize(1023, 767), QSize(1280, 720), QSize(5, 7)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }

    void theVisiblePartLiesInsideThePicture()
    {
        QFETCH(QSize, frame);
        for (int turns = 0; turns < 4; ++turns) {
            for (int factor = 0; factor <= 6; ++factor) {
                for (int corner = 0; corner < 2; ++corner) {
                    ViewGeometry view = turned(viewOf(frame), turns);
                    view.zoom({frame.width() / 2.0, frame.height() / 2.0}, factor);
                    view.setViewport(corner * 1000000, corner * 1000000);
                    const QRect seen = view.visibleRectangle();
                    QVERIFY(!seen.isEmpty());
                    QVERIFY(QRect({0, 0}, view.rotatedSize()).contains(seen));
                }
            }
        }
    }

    void fourPixelsAtScaleSixShowOnePixel()
    {
        ViewGeometry view = viewOf({4, 4});
        view.zoom({2, 2}, 6);
        QCOMPARE(view.visibleRectangle().size(), QSize(1, 1));
    }

    void anEmptyFrameMapsEverythingToNothing()
    {
        for (const QSize &size : {QSize(0, 0), QSize(0, 10), QSize(10, 0)}) {
            ViewGeometry view = viewOf({1280, 720});
            view.zoomIn();
            view.setFrameSize(size);
            QCOMPARE(view.scale(), 1.0);
            QCOMPARE(view.offset(), QPoint(0, 0));
            view.zoomIn();
            view.zoomOut();
            view.zoomReset();
            view.turn(true);
            view.zoom({1, 1}, 5);
            view.setViewport(7, 7);
            QCOMPARE(view.scale(), 1.0);
            QCOMPARE(view.offset(), QPoint(0, 0));
            QCOMPARE(view.centerPoint(), QPointF(0, 0));
            QVERIFY(view.visibleRectangle().isEmpty());
            // The rotation stays, and so does the scale, which is above the fit.
            view.setFrameSize({1280, 720});
            QCOMPARE(view.scale(), 1.0);
            QCOMPARE(view.minimumScale(), 0.5625);
        }
    }

    void survivesNumbersThatNoIntHolds()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoom({std::numeric_limits<double>::quiet_NaN(), 1e300}, 1000000000);
        QVERIFY(view.scale() > 0);
        const QRect seen = view.visibleRectangle();
        QVERIFY(QRect(0, 0, 1280, 720).contains(seen));
        view.zoomReset();
        QCOMPARE(view.scale(), 1.0);
    }

    void mapsWidgetPointsIntoThePicture()
    {
        const QSize picture(1280, 720);
        const QSize widget(1000, 1000);
        const ViewGeometry::Fit fit = ViewGeometry::fit(picture, widget);
        QCOMPARE(fit.factor, 0.78125);
        QCOMPARE(fit.size, QSize(1000, 562));
        QCOMPARE(fit.margin, QPoint(0, 219));
        QCOMPARE(ViewGeometry::picturePoint({500, 500}, picture, widget), QPoint(640, 359));
        // Toward zero, not down: one pixel above the picture is still row 0.
        QCOMPARE(ViewGeometry::picturePoint({0, 219}, picture, widget), QPoint(0, 0));
        QCOMPARE(ViewGeometry::picturePoint({0, 217}, picture, widget), QPoint(0, -2));
        QCOMPARE(ViewGeometry::picturePoint({-1, 218}, picture, widget), QPoint(-1, -1));
        QCOMPARE(ViewGeometry::picturePoint({3, 3}, {0, 0}, widget), QPoint(0, 0));
        QCOMPARE(ViewGeometry::picturePoint({3, 3}, picture, {0, 0}), QPoint(0, 0));
    }

    void aVeryNarrowPictureIsALineOfOnePixel()
    {
        for (const int width : {1, 8}) {
            const ViewGeometry::Fit fit = ViewGeometry::fit({width, 20000}, {900, 700});
            QCOMPARE(fit.size, QSize(1, 700));
            QCOMPARE(fit.margin, QPoint(449, 0));
            QCOMPARE(ViewGeometry::fit({20000, width}, {900, 700}).size, QSize(900, 1));
        }
    }

    void mapsPictureRectanglesIntoTheWidget()
    {
        const QRect part(QPoint(128, 64), QPoint(255, 191));
        QCOMPARE(ViewGeometry::widgetRectangle(part, {1280, 720}, {1000, 1000}),
                 QRectF(100, 269, 100, 100));
    }

    void zoomingAboutAPointKeepsWhatIsSeenThere_data()
    {
        QTest::addColumn<QSize>("frame");
        QTest::addColumn<int>("turns");
        for (const QSize frame : {QSize(1280, 720), QSize(1024, 768), QSize(300, 400)}) {
            for (int turns = 0; turns < 4; ++turns)
                QTest::addRow("%dx%d %d", frame.width(), frame.height(), turns) << frame << turns;
        }
    }

    void zoomingAboutAPointKeepsWhatIsSeenThere()
    {
        QFETCH(QSize, frame);
        QFETCH(int, turns);
        ViewGeometry view = turned(viewOf(frame), turns);
        // Two places that stay inside at each of these scales.
        zoomAbout(view, {frame.width() / 2.0, frame.height() / 2.0}, 3.0);
        for (const QPointF part : {QPointF(0.4, 0.55), QPointF(0.5, 0.5)}) {
            const QPointF point(frame.width() * part.x(), frame.height() * part.y());
            for (const double scale : {3.7, 6.0, 2.2, 5.51, 3.0}) {
                const QPointF before = view.rotatedPoint(point);
                zoomAbout(view, point, scale);
                QCOMPARE(view.scale(), scale);
                // Offsets are whole output pixels, and the view ends a pixel before the picture.
                const QPointF way = (view.rotatedPoint(point) - before) * scale;
                const double most = turns % 2 == 0 ? 0.51 : 1.01;
                QVERIFY2(std::abs(way.x()) <= most && std::abs(way.y()) <= most,
                         qPrintable(QString("%1: %2, %3").arg(scale).arg(way.x()).arg(way.y())));
            }
        }
    }

    void aPlaceIsFoundAgainHoweverManyStepsLieBetween()
    {
        ViewGeometry view = viewOf({1280, 720});
        zoomAbout(view, {640, 360}, 2.0);
        const QPointF held = view.rotatedPoint({640, 360});
        for (int i = 0; i <= 1000; ++i)
            view.place(held, {640.0 + i % 7, 360.0 - i % 5}, 2.0 + i * 0.003);
        const QPointF way = view.rotatedPoint({640.0 + 1000 % 7, 360.0 - 1000 % 5}) - held;
        QVERIFY(std::abs(way.x()) <= 0.2 && std::abs(way.y()) <= 0.2);
    }

    void zoomingAboutAPointStaysWithinTheScalesAndThePicture()
    {
        constexpr double endless = std::numeric_limits<double>::infinity();
        ViewGeometry view = viewOf({1280, 720});
        zoomAbout(view, {0, 0}, endless);
        QCOMPARE(view.scale(), 6.0);
        QCOMPARE(view.offset(), QPoint(0, 0));
        zoomAbout(view, {1e300, -1e300}, 4.0);
        QCOMPARE(view.scale(), 4.0);
        QVERIFY(view.visibleRectangle().isValid());
        const ViewGeometry before = view;
        zoomAbout(view, {640, 360}, std::nan(""));
        QVERIFY(view == before);
        zoomAbout(view, {640, 360}, -3.0);
        QVERIFY(view == viewOf({1280, 720}));
        ViewGeometry upright = turned(view, 1);
        zoomAbout(upright, {640, 360}, 0.0);
        QCOMPARE(upright.scale(), 0.5625);
        ViewGeometry none;
        zoomAbout(none, {1, 1}, 3.0);
        none.zoomStepsAbout({1, 1}, 3);
        QVERIFY(none == ViewGeometry());
        QCOMPARE(none.rotatedPoint({5, 5}), QPointF());
    }

    void zoomsByWholeStepsAboutAPoint()
    {
        ViewGeometry view = viewOf({1280, 720});
        view.zoomStepsAbout({960, 180}, 2);
        QCOMPARE(view.scale(), 3.0);
        QCOMPARE(view.offset(), QPoint(1920, 360));
        zoomAbout(view, {960, 180}, 5.5);
        view.zoomStepsAbout({960, 180}, 1);
        QCOMPARE(view.scale(), 6.0);
        view.zoomStepsAbout({960, 180}, 1000000000);
        QCOMPARE(view.scale(), 6.0);
        zoomAbout(view, {960, 180}, 2.9);
        view.zoomStepsAbout({960, 180}, -1);
        QCOMPARE(view.scale(), 2.0);
        view.zoomStepsAbout({960, 180}, -1000000000);
        QVERIFY(view == viewOf({1280, 720}));
        // A turned picture steps from its fitting scale to whole ones.
        ViewGeometry upright = turned(view, 1);
        upright.zoomStepsAbout({640, 360}, 1);
        QCOMPARE(upright.scale(), 1.0);
    }
};

REGISTER_PLAIN_TEST(ViewGeometryTest)
#include "tst_view_geometry.moc"
