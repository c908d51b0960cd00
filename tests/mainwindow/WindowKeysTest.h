#pragma once

#include "tests/mainwindow/WindowProbe.h"

#include <QtTest>

#include <memory>

/// Presses keys in a main window of its own for each test.
class WindowKeysTest : public QObject
{
    Q_OBJECT

protected:
    /// Whether the keys go there, at once or after a while. The platform also calls a pop-up active
    /// when they go to its parent.
    static bool becomesActive(const QWidget *window)
    {
        return QTest::qWaitFor([window] { return QApplication::activeWindow() == window; });
    }

    /// To the widget of the active window that has the focus.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget *window = QApplication::activeWindow();
        QVERIFY(window);
        QWidget *focus = window->focusWidget();
        QTest::keyClick(focus ? focus : window, Qt::Key(key), modifiers);
    }

    void send(QEvent::Type type, int key, quint32 scanCode, bool repeated = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, scanCode, 0, 0, QString(), repeated);
        QWidget *focus = m_window->focusWidget();
        QCoreApplication::sendEvent(focus ? focus : m_window.get(), &event);
    }

    std::unique_ptr<MainWindow> m_window;

private slots:
    void initTestCase() { WindowProbe::beOnOneself(); }

    void init()
    {
        WindowProbe::usualSettings();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(becomesActive(m_window.get()));
    }

    void cleanup() { m_window.reset(); }
};
