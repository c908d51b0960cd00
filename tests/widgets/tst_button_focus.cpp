#include "tests/TestProgram.h"
#include "widgets/ImageButton.h"

#include <QApplication>
#include <QButtonGroup>
#include <QSignalSpy>
#include <QtTest>

namespace
{

QImage grabbed(QWidget &widget)
{
    return widget.grab().toImage();
}

} // namespace

/// Two buttons in a window, and which of them is marked.
class ButtonFocusTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_first = new ImageButton("ICON_LINE", m_window.get(), 0, 0);
        m_second = new ImageButton("POPUP_BUTTON", m_window.get(), 80, 0);
        m_window->resize(200, 60);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_window->setFocus();
        m_plainFirst = grabbed(*m_first);
        m_plainSecond = grabbed(*m_second);
    }

    void theTabKeyMovesTheRing()
    {
        m_first->setFocus(Qt::TabFocusReason);
        QVERIFY(grabbed(*m_first) != m_plainFirst);
        QTest::keyClick(m_first, Qt::Key_Tab);
        QVERIFY(m_second->hasFocus());
        QCOMPARE(grabbed(*m_first), m_plainFirst);
        QVERIFY(grabbed(*m_second) != m_plainSecond);
        QTest::keyClick(m_second, Qt::Key_Backtab);
        QVERIFY(grabbed(*m_first) != m_plainFirst);
    }

    void theRingIsTwoPixelsAlongTheEdge()
    {
        m_second->setFocus(Qt::TabFocusReason);
        const QImage marked = grabbed(*m_second);
        const QRect edge = marked.rect();
        QCOMPARE(marked.pixel(edge.topLeft()), qRgb(0xff, 0xff, 0xff));
        QCOMPARE(marked.pixel(edge.bottomRight()), qRgb(0xff, 0xff, 0xff));
        QCOMPARE(marked.pixel(edge.topLeft() + QPoint(1, 1)), qRgb(0x15, 0x18, 0x1b));
        QCOMPARE(marked.pixel(edge.bottomRight() - QPoint(1, 1)), qRgb(0x15, 0x18, 0x1b));
        const QRect inside = edge.adjusted(2, 2, -2, -2);
        QCOMPARE(marked.copy(inside), m_plainSecond.copy(inside));
    }

    void theMouseLeavesNoRing()
    {
        QTest::mouseClick(m_second, Qt::LeftButton);
        m_second->setFocus(Qt::MouseFocusReason);
        QVERIFY(m_second->hasFocus());
        QCOMPARE(grabbed(*m_second), m_plainSecond);
        m_second->clearFocus();
        m_second->setFocus(Qt::OtherFocusReason);
        QCOMPARE(grabbed(*m_second), m_plainSecond);
    }

    void theRingOutlivesAnotherWindow()
    {
        m_first->setFocus(Qt::TabFocusReason);
        const QImage marked = grabbed(*m_first);
        sendFocus(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        sendFocus(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCOMPARE(grabbed(*m_first), marked);
        sendFocus(QEvent::FocusOut, Qt::MouseFocusReason);
        sendFocus(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCOMPARE(grabbed(*m_first), m_plainFirst);
    }

    void noClickTakesTheFocus()
    {
        QTest::mouseClick(m_second, Qt::LeftButton);
        QVERIFY(m_window->hasFocus());
    }

    void enterPresses()
    {
        QSignalSpy clicks(m_first, &ImageButton::clicked);
        m_first->setFocus(Qt::TabFocusReason);
        QTest::keyClick(m_first, Qt::Key_Return);
        QTest::keyClick(m_first, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(clicks.size(), 2);
        QTest::keyClick(m_first, Qt::Key_Return, Qt::ControlModifier);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(m_first, &held);
        m_first->setGray(true);
        QTest::keyClick(m_first, Qt::Key_Return);
        QCOMPARE(clicks.size(), 2);
    }

    void arrowsLeaveAGroupAloneAndTheTabKeyReachesAllOfIt()
    {
        QButtonGroup group;
        for (ImageButton *button : {m_first, m_second}) {
            button->setCheckable(true);
            group.addButton(button);
        }
        m_first->setChecked(true);
        m_first->setFocus(Qt::TabFocusReason);
        for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
            QTest::keyClick(m_first, Qt::Key(key));
        QVERIFY(m_first->isChecked());
        QVERIFY(m_first->hasFocus());
        QTest::keyClick(m_first, Qt::Key_Tab);
        QVERIFY(m_second->hasFocus());
        QTest::keyClick(m_second, Qt::Key_Tab);
        QVERIFY(m_first->hasFocus());
        QVERIFY(m_first->isChecked());
    }

    void theSpaceBarClicksButNotWhenGray()
    {
        QSignalSpy clicks(m_first, &ImageButton::clicked);
        m_first->setFocus(Qt::TabFocusReason);
        QTest::keyClick(m_first, Qt::Key_Space);
        QCOMPARE(clicks.size(), 1);
        m_first->setGray(true);
        QTest::keyClick(m_first, Qt::Key_Space);
        QCOMPARE(clicks.size(), 1);
        QVERIFY(!m_first->isDown());
    }

    void aGrayButtonIsMarkedToo()
    {
        m_first->setGray(true);
        const QImage gray = grabbed(*m_first);
        m_first->setFocus(Qt::BacktabFocusReason);
        QVERIFY(grabbed(*m_first) != gray);
    }

private:
    void sendFocus(QEvent::Type type, Qt::FocusReason reason)
    {
        QFocusEvent event(type, reason);
        QCoreApplication::sendEvent(m_first, &event);
    }

    std::unique_ptr<QWidget> m_window;
    ImageButton *m_first = nullptr;
    ImageButton *m_second = nullptr;
    QImage m_plainFirst;
    QImage m_plainSecond;
};

REGISTER_TEST(ButtonFocusTest)
#include "tst_button_focus.moc"
