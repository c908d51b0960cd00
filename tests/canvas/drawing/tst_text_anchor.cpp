#include "canvas/drawing/TextAnchor.h"
#include "tests/TestProgram.h"

#include <QtTest>

namespace
{

constexpr QSize HD(1280, 720);
/// A text of 100 x 30 with a margin of 4 before it.
const QRectF TEXT(4, 4, 100, 30);

TextAnchor at(QPoint point)
{
    TextAnchor anchor;
    anchor.place(point);
    return anchor;
}

} // namespace

class TextAnchorTest : public QObject
{
    Q_OBJECT

private slots:
    void staysWhereItWasPlaced()
    {
        // Also where the text is cut off by the edge.
        for (const QPoint point : {QPoint(500, 250), QPoint(1279, 719), QPoint(-20, 900)})
            QCOMPARE(at(point).point(TEXT, HD), point);
    }

    void turnsWithTheLayer()
    {
        TextAnchor anchor = at({500, 250});
        anchor.turn(true, HD);
        QCOMPARE(anchor.point(TEXT, HD.transposed()), QPoint(469, 500));
        anchor.turn(false, HD.transposed());
        QCOMPARE(anchor.point(TEXT, HD), QPoint(500, 250));
        anchor.turn(false, HD);
        QCOMPARE(anchor.point(TEXT, HD.transposed()), QPoint(250, 779));
    }

    void keepsATurnedTextInside()
    {
        TextAnchor anchor = at({500, 10});
        anchor.turn(true, HD);
        QCOMPARE(anchor.point(TEXT, HD.transposed()), QPoint(720 - 104, 500));
        // Turned back, it stands where it was begun.
        anchor.turn(false, HD.transposed());
        QCOMPARE(anchor.point(TEXT, HD), QPoint(500, 10));
    }

    void keepsTheTextInsideASmallerLayer()
    {
        TextAnchor anchor = at({1000, 700});
        anchor.layerReplaced();
        QCOMPARE(anchor.point(TEXT, {640, 480}), QPoint(640 - 104, 480 - 34));
        QCOMPARE(anchor.point(TEXT, {1920, 1080}), QPoint(1000, 700));
    }

    void showsTheBeginningOfATextThatIsTooLarge()
    {
        TextAnchor anchor = at({1000, 700});
        anchor.layerReplaced();
        QCOMPARE(anchor.point(TEXT, {50, 20}), QPoint(-4, -4));
        QCOMPARE(anchor.point(TEXT, {0, 0}), QPoint(-4, -4));
    }

    void aNewTextBeginsAnew()
    {
        TextAnchor anchor = at({1000, 700});
        anchor.layerReplaced();
        anchor.place({1279, 719});
        QCOMPARE(anchor.point(TEXT, HD), QPoint(1279, 719));
    }
};

REGISTER_PLAIN_TEST(TextAnchorTest)
#include "tst_text_anchor.moc"
