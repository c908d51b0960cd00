#include "canvas/drawing/AnnotationShapes.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QImage>
#include <QPainter>

using namespace AnnotationShapes;

class AnnotationShapesTest : public QObject
{
    Q_OBJECT

private slots:
    void anArrowOfAHundredToTheRightHasTheseSevenPoints()
    {
        QCOMPARE(arrow({0, 0}, {100, 0}),
                 QPolygonF({{0, 5}, {80, 5}, {80, 10}, {100, 0}, {80, -10}, {80, -5}, {0, -5}}));
    }

    void aShortArrowKeepsItsFractions()
    {
        const QPolygonF points = arrow({3, 4}, {3, 14});
        QCOMPARE(points.at(0), QPointF(2.5, 4.0));
        QCOMPARE(points.at(2), QPointF(2.0, 12.0));
        QCOMPARE(points.at(3), QPointF(3.0, 14.0));
        QCOMPARE(points.at(6), QPointF(3.5, 4.0));
    }

    void anArrowWithoutLengthIsAPoint()
    {
        for (const QPointF &point : arrow({7, 8}, {7, 8}))
            QCOMPARE(point, QPointF(7, 8));
    }

    void aTriangleOfAHundredDownIsEquilateral()
    {
        QCOMPARE(triangle({0, 0}, {0, 100}), QPolygon({{0, 0}, {-58, 100}, {58, 100}}));
    }

    void trianglesOfMirroredDragsAreMirrored()
    {
        // Every length, as the halves are where roundings differ.
        for (int length = 1; length < 400; ++length) {
            const QPolygon down = triangle({0, 0}, {0, length});
            const QPolygon up = triangle({0, 0}, {0, -length});
            QCOMPARE(up.at(1), -down.at(1));
            QCOMPARE(up.at(2), -down.at(2));
            const QPolygon right = triangle({0, 0}, {length, 0});
            QCOMPARE(right.at(1), QPoint(length, down.at(2).x()));
        }
    }

    void aDragBoxOutlinesUpToBothPoints_data()
    {
        QTest::addColumn<QPoint>("press");
        QTest::addColumn<QPoint>("current");
        QTest::newRow("down right") << QPoint(4, 5) << QPoint(20, 15);
        QTest::newRow("up left") << QPoint(20, 15) << QPoint(4, 5);
        QTest::newRow("down left") << QPoint(20, 5) << QPoint(4, 15);
    }

    void aDragBoxOutlinesUpToBothPoints()
    {
        QFETCH(QPoint, press);
        QFETCH(QPoint, current);
        QImage picture(32, 24, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.drawRect(dragBox(press, current));
        painter.end();
        const QRect outline = QRect(QPoint(4, 5), QPoint(20, 15));
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool onOutline =
                    outline.contains(x, y) && !outline.adjusted(1, 1, -1, -1).contains(x, y);
                QCOMPARE(qAlpha(picture.pixel(x, y)) != 0, onOutline);
            }
        }
    }

    void theEraserClearsTwiceThePenWidthAndOneToEachSide_data()
    {
        QTest::addColumn<int>("penWidth");
        QTest::addColumn<QRect>("square");
        QTest::newRow("3") << 3 << QRect(93, 43, 15, 15);
        QTest::newRow("12") << 12 << QRect(75, 25, 51, 51);
        QTest::newRow("none") << 0 << QRect(99, 49, 3, 3);
        QTest::newRow("negative") << -7 << QRect(99, 49, 3, 3);
    }

    void theEraserClearsTwiceThePenWidthAndOneToEachSide()
    {
        QFETCH(int, penWidth);
        QFETCH(QRect, square);
        QCOMPARE(eraserSquare({100, 50}, penWidth), square);
    }

    void anEraserOfAbsurdWidthCoversEveryLayer()
    {
        QVERIFY(eraserSquare({0, 0}, INT_MAX).contains(QRect(0, 0, 8000, 8000)));
    }

    void aPointMapsIntoTheLayerAtEachView_data()
    {
        QTest::addColumn<QPoint>("picturePoint");
        QTest::addColumn<QSize>("layerSize");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QPoint>("offset");
        QTest::addColumn<QPoint>("layer");
        const QSize upright(1280, 720);
        const QSize turned(720, 1280);
        QTest::newRow("unzoomed") << QPoint(640, 359) << upright << 1.0 << QPoint()
                                  << QPoint(640, 359);
        QTest::newRow("zoomed and panned")
            << QPoint(10, 20) << upright << 3.0 << QPoint(300, 601) << QPoint(103, 207);
        // 720 x 0.5625 is 405 wide, so the bars are 437 wide.
        QTest::newRow("turned, at the picture's left edge")
            << QPoint(437, 0) << turned << 0.5625 << QPoint() << QPoint(0, 0);
        QTest::newRow("turned, at its lower right")
            << QPoint(841, 719) << turned << 0.5625 << QPoint() << QPoint(718, 1278);
        QTest::newRow("turned, in the left bar")
            << QPoint(0, 360) << turned << 0.5625 << QPoint() << QPoint(-776, 640);
        QTest::newRow("no scale") << QPoint(5, 5) << upright << 0.0 << QPoint() << QPoint(0, 0);
    }

    void aPointMapsIntoTheLayerAtEachView()
    {
        QFETCH(QPoint, picturePoint);
        QFETCH(QSize, layerSize);
        QFETCH(double, scale);
        QFETCH(QPoint, offset);
        QFETCH(QPoint, layer);
        QCOMPARE(layerPoint(picturePoint, {1280, 720}, layerSize, scale, offset), layer);
    }

    void aClipSelectionIsKeptToTheFrame_data()
    {
        QTest::addColumn<QPoint>("press");
        QTest::addColumn<QPoint>("current");
        QTest::addColumn<QRect>("selection");
        QTest::newRow("inside") << QPoint(10, 20) << QPoint(30, 25)
                                << QRect({10, 20}, QPoint(30, 25));
        QTest::newRow("backwards")
            << QPoint(30, 25) << QPoint(10, 20) << QRect({10, 20}, QPoint(30, 25));
        QTest::newRow("partly outside")
            << QPoint(-50, -60) << QPoint(2000, 900) << QRect({0, 0}, QPoint(1280, 720));
    }

    void aClipSelectionIsKeptToTheFrame()
    {
        QFETCH(QPoint, press);
        QFETCH(QPoint, current);
        QFETCH(QRect, selection);
        QCOMPARE(clipRectangle(press, current, {1280, 720}), selection);
    }

    void aClipSelectionWhollyLeftOfThePictureIsInvalid()
    {
        QVERIFY(!clipRectangle({-50, 10}, {-20, 30}, {1280, 720}).isValid());
    }

    void aClipSelectionBeyondThePictureMeetsNoPixel()
    {
        const QRect picture(0, 0, 1280, 720);
        QVERIFY(!clipRectangle({1300, 10}, {1400, 30}, {1280, 720}).intersects(picture));
        QVERIFY(!clipRectangle({1280, 10}, {1400, 30}, {1280, 720}).intersects(picture));
    }
};

REGISTER_PLAIN_TEST(AnnotationShapesTest)
#include "tst_annotation_shapes.moc"
