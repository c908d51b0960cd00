#include "mainwindow/actions/KeyBindings.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/WindowKeysTest.h"

#include <QSignalSpy>

using namespace WindowProbe;

/// A zoom lasts as long as its key is held.
class ZoomKeysTest : public WindowKeysTest
{
    Q_OBJECT

private slots:
    void aZoomEndsWithItsKeyWhateverItsSign()
    {
        QSignalSpy released(m_window->findChild<KeyBindings *>(), &KeyBindings::stopped);
        // Shift and "=" give a plus; Shift is let go first.
        send(QEvent::KeyPress, Qt::Key_Plus, 21);
        send(QEvent::KeyRelease, Qt::Key_Shift, 50);
        QCOMPARE(released.count(), 0);
        send(QEvent::KeyRelease, Qt::Key_Equal, 21);
        QCOMPARE(released.count(), 1);
        // The release of another key with the same sign does not count.
        send(QEvent::KeyPress, Qt::Key_Plus, 21);
        send(QEvent::KeyRelease, Qt::Key_Plus, 86);
        QCOMPARE(released.count(), 1);
        send(QEvent::KeyRelease, Qt::Key_Plus, 21);
        QCOMPARE(released.count(), 2);
        // Where no scan code is reported, the sign has to be enough.
        send(QEvent::KeyPress, Qt::Key_Plus, 0);
        send(QEvent::KeyRelease, Qt::Key_Plus, 0);
        QCOMPARE(released.count(), 3);
    }

    void aSecondZoomKeyEndsTheFirst()
    {
        auto *keys = m_window->findChild<KeyBindings *>();
        QStringList said;
        const auto name = [](Command command) {
            return QString(command == Command::ZoomIn ? "in" : "out");
        };
        connect(keys, &KeyBindings::started, this, [&](Command command) { said << name(command); });
        connect(keys, &KeyBindings::stopped, this,
                [&](Command command) { said << name(command) + " ends"; });
        send(QEvent::KeyPress, Qt::Key_Plus, 86);
        send(QEvent::KeyPress, Qt::Key_Minus, 82);
        send(QEvent::KeyRelease, Qt::Key_Plus, 86);
        send(QEvent::KeyRelease, Qt::Key_Minus, 82);
        QCOMPARE(said, QStringList({"in", "in ends", "out", "out ends"}));
    }

    void aModeChangeOrAnotherWindowEndsAKeysZoom_data()
    {
        QTest::addColumn<bool>("modeChange");
        QTest::newRow("mode change") << true;
        QTest::newRow("another window") << false;
    }

    void aModeChangeOrAnotherWindowEndsAKeysZoom()
    {
        QFETCH(bool, modeChange);
        send(QEvent::KeyPress, Qt::Key_Plus, 86);
        QWidget other;
        if (modeChange) {
            enter(*m_window, 1);
        } else {
            other.show();
            other.activateWindow();
            QVERIFY(becomesActive(&other));
            m_window->activateWindow();
            QVERIFY(becomesActive(m_window.get()));
        }
        // The release comes late or, in the other window, never: neither ends a zoom a second time,
        // which would close the pop-up.
        QSignalSpy released(m_window->findChild<KeyBindings *>(), &KeyBindings::stopped);
        m_window->lineHold();
        send(QEvent::KeyRelease, Qt::Key_Plus, 86);
        QVERIFY(m_window->currentToolWindow());
        send(QEvent::KeyPress, Qt::Key_Minus, 82);
        QCOMPARE(released.count(), 0);
    }
};

REGISTER_TEST(ZoomKeysTest)
#include "tst_zoom_keys.moc"
