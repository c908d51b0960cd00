#include "mainwindow/WindowLayout.h"

#include "tests/TestProgram.h"

#include <QTest>

namespace
{

WindowLayout layout(QSize window, bool sidePanelOpen)
{
    return WindowLayout::of({window, sidePanelOpen, QSize(60, 37), QSize(100, 30), QSize(310, 37),
                             QSize(30, 120), QSize(270, 37)});
}

} // namespace

class WindowLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWithThePanelOpen();
    void closesThePanel();
    void growsWithTheWindow();
    void nothingBelowTheStackLeavesTheWindow_data();
    void nothingBelowTheStackLeavesTheWindow();
    void openingThePanelShiftsTheContentOnly();
    void oddRemaindersTruncateTowardsZero();
};

void WindowLayoutTest::startsWithThePanelOpen()
{
    const WindowLayout at = layout(QSize(938, 768), true);
    QCOMPARE(at.panelHeight, 668);
    QCOMPARE(at.aboutButton, QPoint(34, 713));
    QCOMPARE(at.sidePanelButton, QPoint(4, 50));
    QCOMPARE(at.liveButton, QPoint(178, 5));
    QCOMPARE(at.filmButton, QPoint(285, 5));
    QCOMPARE(at.photographButton, QPoint(392, 5));
    QCOMPARE(at.drawingBoardButton, QPoint(499, 5));
    QCOMPARE(at.stack, QRect(174, 25, 745, 668));
    QCOMPARE(at.liveBox, QPoint(508, 708));
    QCOMPARE(at.recordTimeLabel, QPoint(818, 708));
    QCOMPARE(at.filmBar, QPoint(383, 708));
    QCOMPARE(at.volumeSlider, QPoint(693, 625));
    QCOMPARE(at.filmPosition, QRect(174, 693, 747, 10));
    QCOMPARE(at.photographBar, QPoint(403, 708));
    QCOMPARE(at.intervalSlider, QPoint(683, 718));
    QCOMPARE(at.intervalLabel, QPoint(685, 738));
    QCOMPARE(at.indexLabel, QRect(868, 708, 70, 30));
    QCOMPARE(at.thumbnailStrip, QRect(0, 601, 745, 60));
    QCOMPARE(at.thumbnailScrollBar, QRect(174, 693, 747, 10));
}

void WindowLayoutTest::closesThePanel()
{
    const WindowLayout at = layout(QSize(800, 768), false);
    QCOMPARE(at.liveButton, QPoint(40, 5));
    QCOMPARE(at.filmButton, QPoint(147, 5));
    QCOMPARE(at.photographButton, QPoint(254, 5));
    QCOMPARE(at.drawingBoardButton, QPoint(361, 5));
    QCOMPARE(at.stack, QRect(36, 25, 745, 668));
    QCOMPARE(at.liveBox, QPoint(370, 708));
    QCOMPARE(at.filmBar, QPoint(245, 708));
    QCOMPARE(at.photographBar, QPoint(265, 708));
    QCOMPARE(at.intervalSlider, QPoint(545, 718));
    QCOMPARE(at.indexLabel, QRect(730, 708, 70, 30));
}

void WindowLayoutTest::growsWithTheWindow()
{
    const WindowLayout at = layout(QSize(1920, 1080), true);
    QCOMPARE(at.panelHeight, 980);
    QCOMPARE(at.aboutButton, QPoint(34, 1025));
    QCOMPARE(at.stack, QRect(174, 25, 1727, 980));
    QCOMPARE(at.filmBar, QPoint(874, 1020));
    QCOMPARE(at.filmPosition, QRect(174, 1005, 1729, 10));
    QCOMPARE(at.thumbnailStrip, QRect(0, 913, 1727, 60));
    QCOMPARE(at.recordTimeLabel, QPoint(1800, 1020));
}

void WindowLayoutTest::nothingBelowTheStackLeavesTheWindow_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<bool>("open");
    QTest::newRow("start") << QSize(938, 768) << true;
    QTest::newRow("closed") << QSize(800, 768) << false;
    QTest::newRow("smallest open") << QSize(800, 768) << true;
    QTest::newRow("maximised") << QSize(1920, 1053) << true;
    QTest::newRow("4k") << QSize(3840, 2160) << false;
}

void WindowLayoutTest::nothingBelowTheStackLeavesTheWindow()
{
    QFETCH(QSize, window);
    QFETCH(bool, open);
    const WindowLayout at = layout(window, open);
    const QRect all(QPoint(0, 0), window);
    QVERIFY(all.contains(at.stack));
    QVERIFY(all.contains(QRect(at.filmBar, QSize(310, 37))));
    QVERIFY(all.contains(QRect(at.photographBar, QSize(270, 37))));
    QVERIFY(all.contains(QRect(at.liveBox, QSize(60, 37))));
    QVERIFY(all.contains(QRect(at.volumeSlider, QSize(30, 120))));
    QVERIFY(all.contains(at.indexLabel));
    QVERIFY(all.contains(at.filmPosition));
    QVERIFY(QRect(QPoint(0, 0), at.stack.size()).contains(at.thumbnailStrip));
    QVERIFY(!at.stack.intersects(at.filmPosition));
    QVERIFY(!at.filmPosition.intersects(QRect(at.filmBar, QSize(310, 37))));
}

void WindowLayoutTest::openingThePanelShiftsTheContentOnly()
{
    const WindowLayout closed = layout(QSize(1920, 1080), false);
    const WindowLayout open = layout(QSize(1920, 1080), true);
    QCOMPARE(open.stack, closed.stack.adjusted(138, 0, 0, 0));
    QCOMPARE(open.filmBar - closed.filmBar, QPoint(69, 0));
    QCOMPARE(open.liveButton - closed.liveButton, QPoint(138, 0));
    QCOMPARE(open.aboutButton, closed.aboutButton);
    QCOMPARE(open.indexLabel, closed.indexLabel);
    QCOMPARE(open.sidePanelButton, closed.sidePanelButton);
}

void WindowLayoutTest::oddRemaindersTruncateTowardsZero()
{
    // (801 - 60) / 2 = 370.5
    QCOMPARE(layout(QSize(801, 768), false).liveBox.x(), 370);
    // (100 - 138 - 60) / 2 = -49; (101 - 138 - 60) / 2 = -48.5
    QCOMPARE(layout(QSize(100, 768), true).liveBox.x(), 89);
    QCOMPARE(layout(QSize(101, 768), true).liveBox.x(), 90);
}

REGISTER_PLAIN_TEST(WindowLayoutTest)
#include "tst_window_layout.moc"
