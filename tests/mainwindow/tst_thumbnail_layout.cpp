#include "mainwindow/bars/ThumbnailLayout.h"
#include "tests/TestProgram.h"

#include <QtTest>

using ThumbnailLayout::View;

class ThumbnailLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void aFilledStripKeepsFortyFivePixelsFreeOnEachSide_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("files");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("left");
        QTest::newRow("three pictures in 500") << 500 << 3 << 3 << 151;
        QTest::newRow("twenty pictures in 500") << 500 << 20 << 6 << 52;
        QTest::newRow("just wide enough") << 156 << 20 << 1 << 45;
        QTest::newRow("a pixel too narrow") << 155 << 20 << 0 << 77;
        QTest::newRow("no width at all") << 0 << 20 << 0 << 0;
        QTest::newRow("no pictures") << 500 << 0 << 0 << 250;
    }

    void aFilledStripKeepsFortyFivePixelsFreeOnEachSide()
    {
        QFETCH(int, width);
        QFETCH(int, files);
        QFETCH(int, count);
        QFETCH(int, left);
        const View view = ThumbnailLayout::filled(width, files);
        QCOMPARE(view.visibleCount, count);
        QCOMPARE(view.leftOffset, left);
    }

    void aResizedStripCountsFromItsOldLeftOffset()
    {
        // (700 - 52 - 40) / 66 = 9, (700 - 9 * 66) / 2 = 53
        QVERIFY(ThumbnailLayout::resized(700, 20, 52) == (View{9, 53}));
        // (500 - 52 - 40) / 66 = 6: the same again
        QVERIFY(ThumbnailLayout::resized(500, 20, 52) == (View{6, 52}));
        QVERIFY(ThumbnailLayout::resized(1900, 3, 52) == (View{3, 851}));
    }

    void aShrunkenStripShowsTheButtonsThatFitAlthoughTheOldOffsetLeavesNoRoom()
    {
        QVERIFY(ThumbnailLayout::resized(607, 3, 801) == ThumbnailLayout::filled(607, 3));
        QCOMPARE(ThumbnailLayout::resized(607, 3, 801).visibleCount, 3);
        QCOMPARE(ThumbnailLayout::resized(20, 3, 801).visibleCount, 0);
    }

    void theFirstVisibleStaysInTheList()
    {
        QCOMPARE(ThumbnailLayout::clampedFirst(14, 3, 3), 0);
        QCOMPARE(ThumbnailLayout::clampedFirst(14, 6, 20), 14);
        QCOMPARE(ThumbnailLayout::clampedFirst(15, 6, 20), 14);
        QCOMPARE(ThumbnailLayout::clampedFirst(-1, 6, 20), 0);
        QCOMPARE(ThumbnailLayout::clampedFirst(5, 0, 0), 0);
    }

    void theStripScrollsJustFarEnoughToShowAPicture()
    {
        QCOMPARE(ThumbnailLayout::firstShowing(10, 0, 6), 5);
        QCOMPARE(ThumbnailLayout::firstShowing(2, 5, 6), 2);
        QCOMPARE(ThumbnailLayout::firstShowing(5, 5, 6), 5);
        QCOMPARE(ThumbnailLayout::firstShowing(10, 5, 6), 5);
        QCOMPARE(ThumbnailLayout::firstShowing(11, 5, 6), 6);
    }
};

REGISTER_CORE_TEST(ThumbnailLayoutTest)
#include "tst_thumbnail_layout.moc"
