#include "tests/TestProgram.h"
#include "widgets/ToolTips.h"

#include <QtTest>

/// Where a tip stands, on a screen of 400 x 300 with a widget of 40 x 20.
class ToolTipsTest : public QObject
{
    Q_OBJECT

private slots:
    void standsBelowWhereNothingIs();
    void standsAboveAtTheEndOfTheScreen();
    void takesTheShortestWayPastTheNeighbours();
    void passesSeveralNeighbours();
    void standsLeftWhereTheScreenHasNoOtherRoom();
    void staysOnTheScreenAtItsRightEdge();
    void standsAtThePointerOfALongStrip();

private:
    const QSize m_tip{60, 16};
    ToolTips::Surroundings m_around{{100, 100, 40, 20}, {}, {0, 0, 400, 300}, {110, 110}};
};

void ToolTipsTest::standsBelowWhereNothingIs()
{
    QCOMPARE(ToolTips::place(m_tip, m_around), QRect(QPoint(100, 124), m_tip));
}

void ToolTipsTest::standsAboveAtTheEndOfTheScreen()
{
    ToolTips::Surroundings around = m_around;
    around.screen.setHeight(139);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(100, 80), m_tip));
    around.screen.setHeight(140);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(100, 124), m_tip));
}

void ToolTipsTest::takesTheShortestWayPastTheNeighbours()
{
    ToolTips::Surroundings around = m_around;
    around.neighbours = {{100, 120, 40, 20}};
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(100, 80), m_tip));
    around.neighbours << QRect(100, 80, 40, 20);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(144, 100), m_tip));
    around.neighbours << QRect(140, 100, 5, 20);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(149, 100), m_tip));
}

void ToolTipsTest::passesSeveralNeighbours()
{
    ToolTips::Surroundings around = m_around;
    around.neighbours = {
        {0, 0, 400, 100}, {140, 100, 260, 20}, {100, 140, 10, 20}, {90, 121, 20, 19}};
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(100, 164), m_tip));
}

void ToolTipsTest::standsLeftWhereTheScreenHasNoOtherRoom()
{
    ToolTips::Surroundings around = m_around;
    around.neighbours = {{100, 0, 300, 100}, {100, 120, 300, 180}, {140, 100, 260, 20}};
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(36, 100), m_tip));
}

void ToolTipsTest::staysOnTheScreenAtItsRightEdge()
{
    ToolTips::Surroundings around = m_around;
    around.widget.moveRight(399);
    around.pointer.setX(390);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(340, 124), m_tip));
}

void ToolTipsTest::standsAtThePointerOfALongStrip()
{
    ToolTips::Surroundings around = m_around;
    around.widget.setWidth(200);
    around.pointer.setX(150);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(150, 124), m_tip));
    // It does not reach beyond the strip.
    around.pointer.setX(290);
    QCOMPARE(ToolTips::place(m_tip, around), QRect(QPoint(240, 124), m_tip));
}

REGISTER_CORE_TEST(ToolTipsTest)
#include "tst_tool_tips.moc"
