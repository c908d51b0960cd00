#include "mainwindow/actions/KeyBindings.h"

#include "tests/TestProgram.h"

#include <QTest>

namespace
{

constexpr int ALL_MODES = 4;

} // namespace

class TestKeyBindings : public QObject
{
    Q_OBJECT

private slots:
    void keysAct_data();
    void keysAct();
    void escapeClosesThePopUpFirst();
    void otherKeysDoNothing();
};

void TestKeyBindings::keysAct_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("fullScreen");
    // The action in each mode, live, film, photograph, board.
    QTest::addColumn<QList<int>>("actions");
    using A = PresenterAction;
    const auto each = [](A live, A film, A photograph, A board) {
        return QList<int>{int(live), int(film), int(photograph), int(board)};
    };
    const auto all = [&each](A action) { return each(action, action, action, action); };
    const auto photographs = [&each](A action) { return each(A::None, A::None, action, A::None); };
    const auto add = [](const char *name, int key, int modifiers, bool fullScreen,
                        const QList<int> &actions) {
        QTest::newRow(name) << key << modifiers << fullScreen << actions;
    };
    add("page up", Qt::Key_PageUp, 0, false, photographs(A::PreviousPhotograph));
    add("page down", Qt::Key_PageDown, 0, true, photographs(A::NextPhotograph));
    add("left", Qt::Key_Left, 0, false, photographs(A::PreviousPhotograph));
    add("right", Qt::Key_Right, 0, false, photographs(A::NextPhotograph));
    add("up", Qt::Key_Up, 0, false, photographs(A::PreviousPhotograph));
    add("down on the number pad", Qt::Key_Down, Qt::KeypadModifier, false,
        photographs(A::NextPhotograph));
    add("space", Qt::Key_Space, 0, false, each(A::Freeze, A::PlayOrPause, A::None, A::None));
    add("plus", Qt::Key_Plus, Qt::ShiftModifier, false, all(A::ZoomIn));
    add("plus on the number pad", Qt::Key_Plus, Qt::KeypadModifier, false, all(A::ZoomIn));
    add("equal", Qt::Key_Equal, 0, false, all(A::ZoomIn));
    add("minus", Qt::Key_Minus, 0, false, all(A::ZoomOut));
    add("minus above another sign", Qt::Key_Minus, Qt::ShiftModifier, false, all(A::ZoomOut));
    add("F11", Qt::Key_F11, 0, false, all(A::ToggleFullScreen));
    add("F11 back", Qt::Key_F11, 0, true, all(A::ToggleFullScreen));
    add("escape", Qt::Key_Escape, 0, false, all(A::None));
    add("escape back", Qt::Key_Escape, 0, true, all(A::ToggleFullScreen));
    add("ctrl s", Qt::Key_S, Qt::ControlModifier, false, all(A::Snapshot));
    add("ctrl p", Qt::Key_P, Qt::ControlModifier, true, all(A::Print));
    add("s", Qt::Key_S, 0, false, all(A::None));
    add("ctrl shift s", Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier, false, all(A::None));
    add("ctrl shift p", Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier, false, all(A::None));
    add("alt space", Qt::Key_Space, Qt::AltModifier, false, all(A::None));
    add("ctrl plus", Qt::Key_Plus, Qt::ControlModifier, false, all(A::None));
    add("shift page down", Qt::Key_PageDown, Qt::ShiftModifier, false, all(A::None));
    add("shift space", Qt::Key_Space, Qt::ShiftModifier, false, all(A::None));
}

void TestKeyBindings::keysAct()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, fullScreen);
    QFETCH(QList<int>, actions);
    QList<int> actual;
    for (int mode = 0; mode < ALL_MODES; ++mode)
        actual << int(presenterAction(key, Qt::KeyboardModifiers(modifiers), {mode, fullScreen}));
    QCOMPARE(actual, actions);
}

void TestKeyBindings::escapeClosesThePopUpFirst()
{
    for (const bool fullScreen : {false, true}) {
        for (int mode = 0; mode < ALL_MODES; ++mode) {
            const PresenterContext context{mode, fullScreen, true};
            QVERIFY(presenterAction(Qt::Key_Escape, Qt::NoModifier, context) ==
                    PresenterAction::ClosePopUp);
            QVERIFY(presenterAction(Qt::Key_F11, Qt::NoModifier, context) ==
                    PresenterAction::ToggleFullScreen);
        }
    }
}

void TestKeyBindings::otherKeysDoNothing()
{
    for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
        for (int mode = 0; mode < ALL_MODES; ++mode)
            QVERIFY(presenterAction(key, Qt::NoModifier, {mode, true}) == PresenterAction::None);
    }
}

REGISTER_PLAIN_TEST(TestKeyBindings)
#include "tst_key_bindings.moc"
