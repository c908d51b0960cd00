#include "canvas/drawing/AnnotationLayer.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QPainter>
#include <QRandomGenerator>

#include <cstdlib>

namespace
{

constexpr QSize SIZE(300, 200);

AnnotationLayer layerOf(QSize size = SIZE)
{
    AnnotationLayer layer;
    layer.reset(size);
    return layer;
}

void fill(AnnotationLayer &layer, const QRect &part, const QColor &color)
{
    layer.paint({part}, [&](QPainter &painter) { painter.fillRect(part, color); });
}

/// The picture, transparent where none was made yet.
QImage pictureOf(const AnnotationLayer &layer)
{
    if (!layer.image().isNull())
        return layer.image().copy();
    QImage empty(layer.size(), QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::transparent);
    return empty;
}

QRegion touchedRegion(const AnnotationLayer &layer)
{
    QRegion region;
    layer.forEachTouched(layer.rect(), [&region](const QRect &part) { region += part; });
    return region;
}

bool everyDrawnPixelIsTouched(const AnnotationLayer &layer)
{
    QImage picture = pictureOf(layer);
    layer.forEachTouched(layer.rect(), [&picture](const QRect &part) {
        QPainter painter(&picture);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(part, Qt::black);
    });
    QImage empty(picture.size(), picture.format());
    empty.fill(Qt::transparent);
    return picture == empty;
}

QRect randomRect(QRandomGenerator &random)
{
    return {random.bounded(-80, 330), random.bounded(-80, 230), random.bounded(1, 120),
            random.bounded(1, 120)};
}

void drawAnything(AnnotationLayer &layer, QRandomGenerator &random)
{
    const QRect part = randomRect(random);
    if (random.bounded(3) == 0)
        layer.erase(part);
    else
        fill(layer, part, QColor::fromRgb(random.generate()));
}

} // namespace

class AnnotationLayerTest : public QObject
{
    Q_OBJECT

private slots:
    void aLayerThatNothingWasDrawnOnHasNoPicture()
    {
        AnnotationLayer layer = layerOf();
        QVERIFY(layer.image().isNull());
        QVERIFY(!layer.isUsed());
        QVERIFY(touchedRegion(layer).isEmpty());
        layer.erase(layer.rect());
        layer.beginShape();
        layer.restoreShape();
        layer.endShape();
        layer.turn(true);
        QVERIFY(layer.image().isNull());
        QCOMPARE(layer.size(), SIZE.transposed());
    }

    void drawingTouchesTheTilesItCovers()
    {
        AnnotationLayer layer = layerOf();
        fill(layer, QRect(60, 10, 10, 4), Qt::red);
        QCOMPARE(touchedRegion(layer), QRegion(0, 0, 128, 64));
        QCOMPARE(layer.image().pixelColor(60, 10), QColor(Qt::red));
        QCOMPARE(layer.image().pixelColor(59, 10).alpha(), 0);
    }

    void drawingOutsideTheLayerDoesNothing()
    {
        AnnotationLayer layer = layerOf();
        bool called = false;
        layer.paint({QRect(-50, -50, 50, 50), QRect(300, 0, 10, 10), QRect()},
                    [&called](QPainter &) { called = true; });
        QVERIFY(!called);
        QVERIFY(layer.image().isNull());
    }

    void aLayerWithoutPixelsTakesEveryOperation()
    {
        for (const QSize size : {QSize(), QSize(0, 0), QSize(0, 50), QSize(50, 0)}) {
            AnnotationLayer layer = layerOf(size);
            fill(layer, QRect(0, 0, 10, 10), Qt::red);
            layer.beginShape();
            layer.erase(QRect(0, 0, 10, 10));
            layer.restoreShape();
            layer.turn(false);
            layer.clear();
            QVERIFY(layer.image().isNull());
            QVERIFY(layer.size().isEmpty());
        }
    }

    void erasingMakesExactlyThePartTransparent()
    {
        AnnotationLayer layer = layerOf();
        fill(layer, layer.rect(), Qt::blue);
        layer.erase(QRect(290, 190, 50, 50));
        QCOMPARE(layer.image().pixelColor(289, 190), QColor(Qt::blue));
        QCOMPARE(layer.image().pixelColor(290, 189), QColor(Qt::blue));
        QCOMPARE(layer.image().pixel(290, 190), 0U);
        QCOMPARE(layer.image().pixel(299, 199), 0U);
    }

    void trimmingKeepsExactlyTheTilesWithDrawing()
    {
        AnnotationLayer layer = layerOf();
        const QRect corner(299, 199, 1, 1);
        layer.paint({layer.rect()}, [](QPainter &painter) {
            painter.fillRect(QRect(63, 0, 1, 1), Qt::red);
            painter.fillRect(QRect(299, 199, 1, 1), QColor(0, 0, 0, 1));
        });
        layer.trim();
        QCOMPARE(touchedRegion(layer), QRegion(0, 0, 64, 64) + QRect(256, 192, 44, 8));
        layer.beginShape();
        layer.erase(corner);
        layer.trim();
        QCOMPARE(touchedRegion(layer), QRegion(0, 0, 64, 64));
        layer.restoreShape();
        QCOMPARE(qAlpha(layer.image().pixel(299, 199)), 1);
        QVERIFY(touchedRegion(layer).contains(QPoint(299, 199)));
    }

    void aShapeThatIsTakenBackLeavesNoTouchedTile()
    {
        AnnotationLayer layer = layerOf();
        fill(layer, QRect(0, 0, 10, 10), Qt::green);
        const QImage before = pictureOf(layer);
        layer.beginShape();
        for (int x = 0; x < 300; x += 40) {
            layer.restoreShape();
            fill(layer, QRect(x, 0, 5, 200), Qt::red);
        }
        QCOMPARE(touchedRegion(layer).boundingRect(), QRect(0, 0, 300, 200));
        layer.restoreShape();
        QCOMPARE(touchedRegion(layer), QRegion(0, 0, 64, 64));
        QCOMPARE(pictureOf(layer), before);
    }

    void restoringBringsBackEveryPixelOfAnyDrawing()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 60; ++round) {
            AnnotationLayer layer = layerOf();
            for (int i = 0; i < round % 6; ++i)
                drawAnything(layer, random);
            const QImage before = pictureOf(layer);
            const QRegion touched = touchedRegion(layer);
            layer.beginShape();
            for (int move = 0; move < 5; ++move) {
                for (int i = 0; i < 3; ++i)
                    drawAnything(layer, random);
                QVERIFY(everyDrawnPixelIsTouched(layer));
                layer.restoreShape();
                QCOMPARE(pictureOf(layer), before);
                QCOMPARE(touchedRegion(layer), touched);
            }
            drawAnything(layer, random);
            const QImage after = pictureOf(layer);
            layer.endShape();
            layer.restoreShape();
            QCOMPARE(pictureOf(layer), after);
        }
    }

    void drawingReplacedInAShapeIsWhatComesBack_data()
    {
        QTest::addColumn<int>("replacement");
        QTest::newRow("cleared") << 0;
        QTest::newRow("another size") << 1;
        QTest::newRow("turned") << 2;
    }

    void drawingReplacedInAShapeIsWhatComesBack()
    {
        QFETCH(int, replacement);
        AnnotationLayer layer = layerOf();
        fill(layer, QRect(20, 20, 30, 30), Qt::green);
        layer.beginShape();
        fill(layer, QRect(0, 0, 40, 40), Qt::red);
        if (replacement == 0)
            layer.clear();
        else if (replacement == 1)
            layer.reset({500, 400});
        else
            layer.turn(true);
        const QImage replaced = pictureOf(layer);
        fill(layer, QRect(10, 10, 190, 190), Qt::blue);
        layer.restoreShape();
        QCOMPARE(pictureOf(layer), replaced);
        QVERIFY(everyDrawnPixelIsTouched(layer));
    }

    void turningTurnsDrawingAndTouchedTiles_data()
    {
        QTest::addColumn<bool>("clockwise");
        QTest::newRow("clockwise") << true;
        QTest::newRow("anticlockwise") << false;
    }

    void turningTurnsDrawingAndTouchedTiles()
    {
        QFETCH(bool, clockwise);
        QRandomGenerator random(11);
        AnnotationLayer layer = layerOf();
        layer.setUsed();
        for (int i = 0; i < 3; ++i)
            fill(layer, randomRect(random) & QRect(0, 0, 90, 90), Qt::red);
        fill(layer, QRect(299, 199, 1, 1), Qt::blue);
        const QImage before = pictureOf(layer);
        layer.turn(clockwise);
        QCOMPARE(layer.size(), SIZE.transposed());
        QCOMPARE(pictureOf(layer), before.transformed(QTransform().rotate(clockwise ? 90 : 270)));
        QVERIFY(everyDrawnPixelIsTouched(layer));
        QVERIFY(touchedRegion(layer) != QRegion(layer.rect()));
        QVERIFY(layer.isUsed());
        layer.turn(!clockwise);
        QCOMPARE(pictureOf(layer), before);
    }

    void turningLosesNoRowOfATile_data() { turningTurnsDrawingAndTouchedTiles_data(); }

    void turningLosesNoRowOfATile()
    {
        // The last pixel of a tile turns into the last pixel of a tile, or into the first.
        QFETCH(bool, clockwise);
        const int tile = AnnotationLayer::TILE;
        for (const QSize size : {QSize(2 * tile - 1, 2 * tile - 1), QSize(2 * tile, 2 * tile)}) {
            for (const QPoint corner : {QPoint(tile - 1, tile - 1), QPoint(0, 0)}) {
                AnnotationLayer layer = layerOf(size);
                fill(layer, QRect(corner, QSize(1, 1)), Qt::red);
                layer.turn(clockwise);
                QVERIFY(everyDrawnPixelIsTouched(layer));
            }
        }
    }

    void clearingForgetsTheUse()
    {
        AnnotationLayer layer = layerOf();
        layer.setUsed();
        fill(layer, QRect(0, 0, 5, 5), Qt::red);
        layer.clear();
        QVERIFY(!layer.isUsed());
        QVERIFY(layer.image().isNull());
        QCOMPARE(layer.size(), SIZE);
    }

    void aNewSizeDiscardsTheDrawingAndKeepsTheUse()
    {
        AnnotationLayer layer = layerOf();
        layer.setUsed();
        fill(layer, QRect(0, 0, 5, 5), Qt::red);
        layer.reset({64, 64});
        QVERIFY(layer.isUsed());
        QVERIFY(touchedRegion(layer).isEmpty());
    }

    void everyChangeShowsInTheRevision()
    {
        AnnotationLayer layer = layerOf();
        auto last = layer.revision();
        const auto grew = [&layer, &last] {
            const bool result = layer.revision() > last;
            last = layer.revision();
            return result;
        };
        layer.setUsed();
        QVERIFY(grew());
        fill(layer, QRect(0, 0, 5, 5), Qt::red);
        QVERIFY(grew());
        layer.beginShape();
        layer.erase(QRect(0, 0, 5, 5));
        QVERIFY(grew());
        layer.restoreShape();
        QVERIFY(grew());
        layer.turn(true);
        QVERIFY(grew());
        layer.clear();
        QVERIFY(grew());
        layer.reset(SIZE);
        QVERIFY(grew());
    }

    void aCopyOfThePictureIsNotDrawnOn()
    {
        AnnotationLayer layer = layerOf();
        fill(layer, QRect(0, 0, 5, 5), Qt::red);
        const QImage kept = layer.image();
        fill(layer, QRect(0, 0, 5, 5), Qt::blue);
        QCOMPARE(kept.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(layer.image().pixelColor(0, 0), QColor(Qt::blue));
    }
};

REGISTER_PLAIN_TEST(AnnotationLayerTest)
#include "tst_annotation_layer.moc"
