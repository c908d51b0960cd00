#include "tests/canvas/CanvasMouse.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"

#include "tests/TestProgram.h"

#include <QTextEdit>

#include <memory>

using namespace WindowProbe;

namespace
{

QTextEdit *openText(const MainWindow &window)
{
    window.button(Command::Text)->click();
    CanvasMouse::click(*window.currentCanvas(), {100, 100});
    auto *editor = window.currentCanvas()->findChild<QTextEdit *>();
    return editor->isVisible() ? editor : nullptr;
}

/// As the window system delivers a key: to the window, which hands it to what has the focus.
void press(const MainWindow &window, Qt::Key key)
{
    QTest::keyClick(window.windowHandle(), key);
}

} // namespace

/// A text on the canvas and the keys of the whole window.
class WindowTextTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }

    void init()
    {
        usualSettings();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        enter(*m_window, 3);
    }

    void cleanup() { m_window.reset(); }

    void keysWorkAfterAText_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("click") << 0;
        QTest::newRow("Escape") << 1;
        QTest::newRow("other tool") << 2;
    }

    void keysWorkAfterAText()
    {
        QFETCH(int, end);
        const QTextEdit *editor = openText(*m_window);
        QVERIFY(editor);
        press(*m_window, Qt::Key_H);
        QCOMPARE(editor->toPlainText(), QString("h"));
        if (end == 0)
            CanvasMouse::click(*m_window->currentCanvas(), {10, 10});
        else if (end == 1)
            press(*m_window, Qt::Key_Escape);
        else
            m_window->button(Command::Line)->click();
        QVERIFY(editor->isHidden());
        press(*m_window, Qt::Key_F11);
        QVERIFY(m_window->isFullScreen());
        press(*m_window, Qt::Key_Escape);
        QVERIFY(!m_window->isFullScreen());
        QCOMPARE(m_window->currentMode(), 3);
    }

    void keysWorkInAnotherModeAndBack()
    {
        const QTextEdit *editor = openText(*m_window);
        QVERIFY(editor);
        enter(*m_window, 1);
        press(*m_window, Qt::Key_F11);
        QVERIFY(m_window->isFullScreen());
        QCOMPARE(editor->toPlainText(), QString());
        enter(*m_window, 3);
        QVERIFY(editor->isVisible());
        press(*m_window, Qt::Key_H);
        QCOMPARE(editor->toPlainText(), QString("h"));
    }

    void escapeEndsTheTextBeforeTheFullScreen()
    {
        press(*m_window, Qt::Key_F11);
        const QTextEdit *editor = openText(*m_window);
        QVERIFY(editor);
        press(*m_window, Qt::Key_Escape);
        QVERIFY(editor->isHidden());
        QVERIFY(m_window->isFullScreen());
        press(*m_window, Qt::Key_Escape);
        QVERIFY(!m_window->isFullScreen());
    }

private:
    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(WindowTextTest)
#include "tst_window_text.moc"
