#include "canvas/osd/BrightnessScale.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <algorithm>
#include <climits>

using namespace BrightnessScale;

namespace
{

constexpr QSize WIDGET(745, 640);
constexpr Widths WIDTHS{34, 34, 14, 16};

QVector<PlacedPiece> scaleOf(int value, int minimum, int maximum)
{
    return layout(WIDGET, value, minimum, maximum, WIDTHS);
}

int countOf(const QVector<PlacedPiece> &pieces, Piece piece)
{
    return static_cast<int>(
        std::count_if(pieces.begin(), pieces.end(),
                      [piece](const auto &placed) { return placed.piece == piece; }));
}

} // namespace

class BrightnessScaleTest : public QObject
{
    Q_OBJECT

private slots:
    void sevenStepsHaveTheFourthLongWithTheCentreMarkerOnIt()
    {
        // (745 - 34 - 34 - 16 - 6 x 14) / 2 = 288
        const int top = 590;
        const QVector<PlacedPiece> expected{
            {Piece::MinimumEnd, {288, top}},   {Piece::ShortSegment, {322, top}},
            {Piece::ShortSegment, {336, top}}, {Piece::ShortSegment, {350, top}},
            {Piece::LongSegment, {364, top}},  {Piece::CentreMarker, {368, 600}},
            {Piece::ShortSegment, {380, top}}, {Piece::ShortSegment, {394, top}},
            {Piece::ShortSegment, {408, top}}, {Piece::MaximumEnd, {422, top}}};
        QVERIFY(scaleOf(3, 0, 6) == expected);
    }

    void theLowestValueMarksTheFirstShortSegment()
    {
        const QVector<PlacedPiece> pieces = scaleOf(0, 0, 6);
        QCOMPARE(pieces.at(1).piece, Piece::ShortSegment);
        QCOMPARE(pieces.at(2).piece, Piece::Marker);
        QCOMPARE(pieces.at(2).position, QPoint(322 + 5, 640 - 37));
        QCOMPARE(countOf(pieces, Piece::CentreMarker), 0);
        QCOMPARE(countOf(pieces, Piece::Marker), 1);
    }

    void aValueOutsideTheRangeHasNoMarker()
    {
        QCOMPARE(countOf(scaleOf(16, 1, 15), Piece::Marker), 0);
        QCOMPARE(countOf(scaleOf(0, 1, 15), Piece::Marker), 0);
        QCOMPARE(countOf(scaleOf(-5, 0, 100000), Piece::Marker), 0);
    }

    void oneStepIsOneLongSegment()
    {
        const QVector<PlacedPiece> pieces = scaleOf(0, 0, 0);
        QCOMPARE(pieces.size(), 4);
        QCOMPARE(pieces.at(1).piece, Piece::LongSegment);
        QCOMPARE(pieces.at(2).piece, Piece::CentreMarker);
    }

    void aReversedRangeLeavesTheTwoEnds()
    {
        const QVector<PlacedPiece> pieces = scaleOf(3, 5, 1);
        QCOMPARE(pieces.size(), 2);
        // (745 - 34 - 34 - 16 + 4 x 14) / 2 = 358
        QCOMPARE(pieces.at(0).position, QPoint(358, 590));
        QCOMPARE(pieces.at(1).position, QPoint(392, 590));
    }

    void aNegativeRangeIsCentredTowardsZero()
    {
        const QVector<PlacedPiece> pieces = scaleOf(-1, -3, 0);
        QCOMPARE(pieces.at(3).piece, Piece::LongSegment);
        QCOMPARE(pieces.at(4).piece, Piece::CentreMarker);
    }

    void anEvenNumberOfStepsHasTheLowerOfTheTwoMiddleOnesLong()
    {
        const QVector<PlacedPiece> pieces = scaleOf(2, 0, 5);
        QCOMPARE(pieces.at(3).piece, Piece::LongSegment);
        QCOMPARE(pieces.at(4).piece, Piece::CentreMarker);
        QCOMPARE(countOf(pieces, Piece::LongSegment), 1);
    }

    void aHundredStepsAreDrawnEach()
    {
        const QVector<PlacedPiece> pieces = scaleOf(1, 1, 100);
        QCOMPARE(countOf(pieces, Piece::ShortSegment), 99);
        QCOMPARE(countOf(pieces, Piece::LongSegment), 1);
    }

    void moreStepsShareAHundredSegments_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("markedSegment");
        QTest::newRow("101 steps, first") << 0 << 0 << 100 << 0;
        QTest::newRow("101 steps, last") << 100 << 0 << 100 << 99;
        QTest::newRow("everything, lowest") << INT_MIN << INT_MIN << INT_MAX << 0;
        QTest::newRow("everything, highest") << INT_MAX << INT_MIN << INT_MAX << 99;
        QTest::newRow("quarter") << 25000 << 0 << 100000 << 24;
    }

    void moreStepsShareAHundredSegments()
    {
        QFETCH(int, value);
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QFETCH(int, markedSegment);
        const QVector<PlacedPiece> pieces = scaleOf(value, minimum, maximum);
        QCOMPARE(countOf(pieces, Piece::ShortSegment) + countOf(pieces, Piece::LongSegment), 100);
        QCOMPARE(pieces.at(markedSegment + 2).piece, Piece::Marker);
    }

    void anAbsurdlyReversedRangeStaysInBounds()
    {
        QCOMPARE(scaleOf(0, INT_MAX, INT_MIN).size(), 2);
    }

    void missingImagesCountAsNothingWide()
    {
        const QVector<PlacedPiece> pieces = layout(WIDGET, 3, 0, 6, {});
        QCOMPARE(pieces.first().position, QPoint(372, 590));
        QCOMPARE(pieces.last().position, QPoint(372, 590));
    }
};

REGISTER_PLAIN_TEST(BrightnessScaleTest)
#include "tst_brightness_scale.moc"
