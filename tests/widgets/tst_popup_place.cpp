#include "tests/TestProgram.h"
#include "widgets/PopupPlace.h"

#include <QtTest>

namespace
{

const QRect WINDOW(0, 0, 938, 768);
const QRect LEFT(40, 100, 65, 47);
const QRect RIGHT(105, 100, 65, 47);
const QRect LOWEST(40, 690, 65, 47);

} // namespace

/// The place of a pop-up that is a part of its window.
class PopupPlaceTest : public QObject
{
    Q_OBJECT

private slots:
    void rightOfTheButtonAndLevelWithIt()
    {
        QCOMPARE(PopupPlace::beside(RIGHT, {292, 47}, WINDOW, {LEFT}), QPoint(173, 100));
    }
    void neverOverAnotherButton()
    {
        QCOMPARE(PopupPlace::beside(LEFT, {292, 47}, WINDOW, {RIGHT}), QPoint(108, 150));
        // Beside before far below.
        const QVector<QRect> around{RIGHT, RIGHT.translated(0, -50), RIGHT.translated(0, 47),
                                    LEFT.translated(0, -50), LEFT.translated(0, 47)};
        QCOMPARE(PopupPlace::beside(LEFT, {292, 47}, WINDOW, around), QPoint(173, 100));
    }
    void neverOffTheWindow()
    {
        QCOMPARE(PopupPlace::beside(LOWEST, {370, 306}, WINDOW, {}), QPoint(108, 462));
        QCOMPARE(PopupPlace::beside(QRect(900, 0, 38, 30), {100, 100}, WINDOW, {}), QPoint(797, 0));
    }
    void aWindowThatIsTooSmallIsCovered()
    {
        QCOMPARE(PopupPlace::beside(LEFT, {900, 760}, {0, 0, 500, 400}, {RIGHT}), QPoint(0, 0));
    }
};

REGISTER_PLAIN_TEST(PopupPlaceTest)
#include "tst_popup_place.moc"
