#include "mainwindow/presentation/ScreenChoice.h"

#include "tests/TestProgram.h"

#include <QTest>

using ScreenChoice::Screen;

namespace
{

const Screen LEFT{"LEFT", {0, 0, 1280, 1024}};
const Screen RIGHT{"RIGHT", {1280, 0, 1024, 768}};
const Screen BELOW{"BELOW", {0, 1024, 640, 480}};
const Screen CLONE{"CLONE", {0, 0, 1280, 1024}};
const QRect ON_LEFT(100, 100, 800, 768);

int chosen(const std::vector<Screen> &screens, const QRect &window, const QString &wanted = {})
{
    const auto index = ScreenChoice::besides(screens, window, wanted);
    return index ? int(*index) : -1;
}

} // namespace

/// Which screen the class sees.
class ScreenChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstThatTheWindowIsNotOn()
    {
        QCOMPARE(chosen({LEFT, RIGHT, BELOW}, ON_LEFT), 1);
        QCOMPARE(chosen({LEFT, RIGHT, BELOW}, ON_LEFT.translated(1280, 0)), 0);
    }

    void theWindowIsOnTheScreenThatHoldsMostOfIt()
    {
        QCOMPARE(chosen({LEFT, RIGHT}, {1000, 100, 500, 500}), 1);
        QCOMPARE(chosen({LEFT, RIGHT}, {1100, 100, 500, 500}), 0);
        // Dragged out of all of them it counts as on the first.
        QCOMPARE(chosen({LEFT, RIGHT}, {9000, 9000, 500, 500}), 1);
    }

    void theOneAskedForComesFirst()
    {
        QCOMPARE(chosen({LEFT, RIGHT, BELOW}, ON_LEFT, "BELOW"), 2);
        QCOMPARE(chosen({LEFT, RIGHT, BELOW}, ON_LEFT, "PULLED"), 1);
        // Not even then over the main window.
        QCOMPARE(chosen({LEFT, RIGHT, BELOW}, ON_LEFT, "LEFT"), 1);
    }

    void noneWithoutASecondPartOfTheDesktop()
    {
        QCOMPARE(chosen({}, ON_LEFT), -1);
        QCOMPARE(chosen({LEFT}, ON_LEFT), -1);
        QCOMPARE(chosen({LEFT, CLONE}, ON_LEFT), -1);
        QCOMPARE(chosen({LEFT, CLONE, RIGHT}, ON_LEFT), 2);
    }

    void sixteenScreens()
    {
        std::vector<Screen> screens;
        screens.reserve(16);
        for (int i = 0; i < 16; ++i)
            screens.push_back({QString::number(i), {i * 320, 0, 320, 200}});
        QCOMPARE(chosen(screens, {0, 0, 300, 200}), 1);
        QCOMPARE(chosen(screens, {0, 0, 300, 200}, "15"), 15);
        QCOMPARE(chosen(screens, {15 * 320, 0, 300, 200}), 0);
    }
};

REGISTER_PLAIN_TEST(ScreenChoiceTest)

#include "tst_screen_choice.moc"
