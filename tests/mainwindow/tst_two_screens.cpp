#include "mainwindow/MainWindow.h"
#include "mainwindow/PulledScreens.h"
#include "resources/Skin.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/Outputs.h"

#include <QScreen>

#include <memory>

/// The main window on a display of two screens, side by side, with a window manager.
class TwoScreensTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initialiseSkin();
        Outputs::plug("DUMMY1", "1280x1024", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
    }
    void init()
    {
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTRY_VERIFY(m_window->frameGeometry() != m_window->geometry());
    }
    void cleanup() { m_window.reset(); }

    void fullScreenGoesToTheScreenThatHoldsMostOfTheWindow_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("screen");
        QTest::newRow("on the first") << 100 << 0;
        QTest::newRow("mostly on the first") << 700 << 0;
        QTest::newRow("mostly on the second") << 1000 << 1;
        QTest::newRow("on the second") << 1500 << 1;
    }

    void fullScreenGoesToTheScreenThatHoldsMostOfTheWindow()
    {
        QFETCH(int, left);
        QFETCH(int, screen);
        moveTo(left);
        const QRect before = m_window->frameGeometry();
        m_window->toggleFullScreen();
        QTRY_COMPARE(m_window->geometry(), QGuiApplication::screens().at(screen)->geometry());
        m_window->leave();
        QTRY_COMPARE(m_window->frameGeometry(), before);
    }

    void aPanelClosedInFullScreenLeavesTheRightEdgeWhereItWas()
    {
        moveTo(700);
        const QRect before = m_window->frameGeometry();
        m_window->toggleFullScreen();
        QTRY_COMPARE(m_window->geometry(), QGuiApplication::screens().first()->geometry());
        m_window->expand();
        m_window->leave();
        QTRY_VERIFY(m_window->frameGeometry().width() < before.width());
        QTRY_COMPARE(m_window->frameGeometry().topRight(), before.topRight());
    }

    void aFrameMovesAsLittleAsPossible()
    {
        const QRect area(0, 30, 1280, 994);
        QCOMPARE(PulledScreens::placeWithin({100, 50, 900, 800}, area), QPoint(100, 50));
        QCOMPARE(PulledScreens::placeWithin({1500, 900, 900, 800}, area), QPoint(380, 224));
        QCOMPARE(PulledScreens::placeWithin({-1000, 0, 900, 800}, area), QPoint(0, 30));
        QCOMPARE(PulledScreens::placeWithin({1500, 900, 2000, 2000}, area), QPoint(0, 30));
    }

    void aPulledScreenBringsTheWindowBack()
    {
        moveTo(1500);
        Outputs::pull("DUMMY1");
        QTRY_COMPARE(QGuiApplication::screens().size(), 1);
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QTRY_COMPARE(area.united(m_window->frameGeometry()), area);
        Outputs::plug("DUMMY1", "1280x1024", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
    }

private:
    void moveTo(int left)
    {
        m_window->move(left, 50);
        QTRY_COMPARE(m_window->frameGeometry().topLeft(), QPoint(left, 50));
    }

    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(TwoScreensTest)
#include "tst_two_screens.moc"
