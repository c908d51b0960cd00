#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Popups.h"
#include "mainwindow/actions/KeyBindings.h"

#include "canvas/ImageCanvas.h"

#include "tests/TestProgram.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(std::optional<Command>)

namespace
{

using Key = std::optional<Command>;

/// A window of no class of its own, with two canvases and the filter.
struct Scene {
    Scene()
        : deck(&window)
        , popups(nullptr, QImage())
    {
        for (int mode = 0; mode < Modes::COUNT; ++mode)
            deck.add(new ImageCanvas, nullptr);
        keys = new KeyBindings(&window, &deck, &popups);
        qApp->installEventFilter(keys);
        QObject::connect(keys, &KeyBindings::given, &window,
                         [this](Command command) { given << command; });
        QObject::connect(keys, &KeyBindings::started, &window,
                         [this](Command command) { started << command; });
        QObject::connect(keys, &KeyBindings::stopped, &window,
                         [this](Command command) { stopped << command; });
    }

    /// `key` with its modifiers, as in the table.
    void send(QEvent::Type type, int key, bool repeated = false)
    {
        constexpr int MODIFIERS = int(Qt::KeyboardModifierMask);
        // A window system that tells the time tells which key of the keyboard it was, too.
        const auto scanCode = static_cast<quint32>(timestamp != 0 ? key & 0xff : 0);
        QKeyEvent event(type, key & ~MODIFIERS, Qt::KeyboardModifiers(key & MODIFIERS), scanCode, 0,
                        0, {}, repeated);
        event.setTimestamp(timestamp);
        QWidget *focus = window.focusWidget();
        QCoreApplication::sendEvent(focus ? focus : &window, &event);
    }

    QWidget window;
    CanvasDeck deck;
    Popups popups;
    KeyBindings *keys;
    /// In milliseconds of the window system's clock, which tells none when it is 0.
    ulong timestamp = 0;
    QList<Command> given;
    QList<Command> started;
    QList<Command> stopped;
};

} // namespace

/// Which key gives which command, and when it gives none.
class KeyBindingsTest : public QObject
{
    Q_OBJECT

private slots:
    void keysHaveTheirCommands_data();
    void keysHaveTheirCommands();
    void aKeyGivesTheCommandOfTheCurrentMode();
    void aCommandThatLastsEndsWithItsKey();
    void aHeldKeyRepeatsStepsAlone();
    void everyKeyMayBeHeld();
    void aRepeatThatTheToolkitTookForAKeystrokeIsNone();
    void escapeIsTakenOnlyToLeaveSomething();
    void aFieldKeepsItsKeys();
};

void KeyBindingsTest::keysHaveTheirCommands_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    // In each mode, live, film, photograph, board.
    QTest::addColumn<QVector<Key>>("commands");
    using C = Command;
    const Key none;
    const auto all = [](Key command) { return QVector<Key>(Modes::COUNT, command); };
    const auto photographs = [&](Key command) { return QVector<Key>{none, none, command, none}; };
    const auto add = [](const char *name, int key, int modifiers, const QVector<Key> &commands) {
        QTest::newRow(name) << key << modifiers << commands;
    };
    const int shift = Qt::ShiftModifier;
    const int control = Qt::ControlModifier;
    add("page up", Qt::Key_PageUp, 0, photographs(C::PreviousPhotograph));
    add("page down", Qt::Key_PageDown, 0, photographs(C::NextPhotograph));
    add("left", Qt::Key_Left, 0, photographs(C::PreviousPhotograph));
    add("right", Qt::Key_Right, 0, photographs(C::NextPhotograph));
    add("up", Qt::Key_Up, 0, photographs(C::PreviousPhotograph));
    add("down on the number pad", Qt::Key_Down, Qt::KeypadModifier, photographs(C::NextPhotograph));
    add("space", Qt::Key_Space, 0, {C::Freeze, C::PlayOrPauseFilm, none, none});
    add("plus", Qt::Key_Plus, shift, all(C::ZoomIn));
    add("plus on the number pad", Qt::Key_Plus, Qt::KeypadModifier, all(C::ZoomIn));
    add("equal", Qt::Key_Equal, 0, all(C::ZoomIn));
    add("minus", Qt::Key_Minus, 0, all(C::ZoomOut));
    add("minus above another sign", Qt::Key_Minus, shift, all(C::ZoomOut));
    add("F11", Qt::Key_F11, 0, all(C::FullScreen));
    add("escape", Qt::Key_Escape, 0, all(C::Leave));
    add("ctrl s", Qt::Key_S, control, all(C::Snapshot));
    add("ctrl p", Qt::Key_P, control, all(C::Print));
    const auto live = [&](Key command) { return QVector<Key>{command, none, none, none}; };
    const struct {
        int key;
        int modifiers;
        Command command;
    } everywhere[] = {
        {Qt::Key_F, 0, C::Freehand},
        {Qt::Key_L, 0, C::Line},
        {Qt::Key_R, 0, C::Rectangle},
        {Qt::Key_C, 0, C::Circle},
        {Qt::Key_A, 0, C::Arrow},
        {Qt::Key_T, 0, C::Triangle},
        {Qt::Key_E, 0, C::Eraser},
        {Qt::Key_X, 0, C::Text},
        {Qt::Key_X, shift, C::Clip},
        {Qt::Key_1, 0, C::BlackPen},
        {Qt::Key_2, 0, C::RedPen},
        {Qt::Key_3, 0, C::YellowPen},
        {Qt::Key_4, 0, C::BluePen},
        {Qt::Key_Q, 0, C::ThinnerPen},
        {Qt::Key_W, 0, C::ThickerPen},
        {Qt::Key_Delete, control, C::EraseAll},
        {Qt::Key_M, 0, C::Mask},
        {Qt::Key_M, shift, C::NextMask},
        {Qt::Key_V, 0, C::NextEffect},
        {Qt::Key_O, 0, C::Rotate},
        {Qt::Key_1, control, C::LiveMode},
        {Qt::Key_2, control, C::FilmMode},
        {Qt::Key_3, control, C::PhotographMode},
        {Qt::Key_4, control, C::DrawingBoardMode},
        {Qt::Key_F9, 0, C::SidePanel},
        {Qt::Key_F1, 0, C::Help},
        {Qt::Key_Z, control, C::Undo},
        {Qt::Key_Z, control | shift, C::Redo},
        {Qt::Key_Y, control, C::Redo},
    };
    for (const auto &each : everywhere)
        add(qPrintable(QKeySequence(each.key | each.modifiers).toString()), each.key,
            each.modifiers, all(each.command));
    add("hand", Qt::Key_H, 0, {none, C::Hand, C::Hand, C::Hand});
    add("ctrl f", Qt::Key_F, control, live(C::AutoFocus));
    add("ctrl up", Qt::Key_Up, control, live(C::BrightnessUp));
    add("ctrl down", Qt::Key_Down, control, live(C::BrightnessDown));
    add("ctrl r", Qt::Key_R, control, live(C::Record));
    add("z", Qt::Key_Z, 0, all(none));
    add("shift f", Qt::Key_F, shift, all(none));
    add("delete", Qt::Key_Delete, 0, all(none));
    add("ctrl shift s", Qt::Key_S, control | shift, all(none));
    add("ctrl shift p", Qt::Key_P, control | shift, all(none));
    add("alt space", Qt::Key_Space, Qt::AltModifier, all(none));
    add("ctrl plus", Qt::Key_Plus, control, all(none));
    add("shift page down", Qt::Key_PageDown, shift, all(none));
    add("shift space", Qt::Key_Space, shift, all(none));
}

void KeyBindingsTest::keysHaveTheirCommands()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QVector<Key>, commands);
    for (int mode = 0; mode < Modes::COUNT; ++mode)
        QVERIFY(Commands::ofKey(key, Qt::KeyboardModifiers(modifiers), mode) == commands[mode]);
    QVERIFY(!Commands::ofKey(key, Qt::KeyboardModifiers(modifiers), -1));
    QVERIFY(!Commands::ofKey(key, Qt::KeyboardModifiers(modifiers), Modes::COUNT));
}

void KeyBindingsTest::aKeyGivesTheCommandOfTheCurrentMode()
{
    Scene scene;
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    scene.deck.setMode(Modes::Film);
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    scene.deck.setMode(Modes::DrawingBoard);
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    QCOMPARE(scene.given, QList<Command>({Command::Freeze, Command::PlayOrPauseFilm}));
    QVERIFY(scene.started.isEmpty());
}

void KeyBindingsTest::aCommandThatLastsEndsWithItsKey()
{
    Scene scene;
    scene.send(QEvent::KeyPress, Qt::Key_Plus);
    scene.send(QEvent::KeyPress, Qt::Key_Plus, true);
    QCOMPARE(scene.started, QList<Command>({Command::ZoomIn}));
    scene.send(QEvent::KeyPress, Qt::Key_Minus);
    QCOMPARE(scene.stopped, QList<Command>({Command::ZoomIn}));
    scene.send(QEvent::KeyRelease, Qt::Key_Minus);
    QCOMPARE(scene.stopped, QList<Command>({Command::ZoomIn, Command::ZoomOut}));
    // A command that the window itself has ended is not ended twice.
    scene.send(QEvent::KeyPress, Qt::Key_Plus);
    scene.keys->forgetHeldKey();
    scene.send(QEvent::KeyRelease, Qt::Key_Plus);
    QCOMPARE(scene.stopped.size(), 2);
    QVERIFY(scene.given.isEmpty());
}

void KeyBindingsTest::aHeldKeyRepeatsStepsAlone()
{
    Scene scene;
    scene.send(QEvent::KeyPress, Qt::Key_F11, true);
    QVERIFY(scene.given.isEmpty());
    scene.deck.setMode(Modes::Photograph);
    scene.send(QEvent::KeyPress, Qt::Key_PageDown);
    // Until the step is shown a repeat is dropped.
    scene.send(QEvent::KeyPress, Qt::Key_PageDown, true);
    QCOMPARE(scene.given.size(), 1);
    QTRY_VERIFY([&] {
        scene.send(QEvent::KeyPress, Qt::Key_PageDown, true);
        return scene.given.size() > 1;
    }());
}

void KeyBindingsTest::everyKeyMayBeHeld()
{
    for (int mode = 0; mode < Modes::COUNT; ++mode) {
        Scene scene;
        scene.deck.setMode(mode);
        for (const Commands::Row &row : Commands::rows()) {
            for (const int key : row.keys) {
                if (!Modes::contains(row.modes, mode) || row.command == Command::Leave)
                    continue;
                scene.given.clear();
                scene.started.clear();
                scene.stopped.clear();
                scene.send(QEvent::KeyPress, key);
                // Ten seconds of a keyboard that repeats thirty times a second.
                for (int i = 0; i < 300; ++i)
                    scene.send(QEvent::KeyPress, key, true);
                scene.send(QEvent::KeyRelease, key);
                const QList<Command> once{row.command};
                const QList<Command> none;
                QCOMPARE(scene.given, row.startSlot ? none : once);
                QCOMPARE(scene.started, row.startSlot ? once : none);
                QCOMPARE(scene.stopped, row.startSlot ? once : none);
                // The repeats of a step wait until the window has come round.
                QCoreApplication::processEvents();
            }
        }
    }
}

void KeyBindingsTest::aRepeatThatTheToolkitTookForAKeystrokeIsNone()
{
    Scene scene;
    scene.timestamp = 1000;
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    for (scene.timestamp = 1500; scene.timestamp < 2000; scene.timestamp += 40) {
        scene.send(QEvent::KeyRelease, Qt::Key_Space);
        scene.send(QEvent::KeyPress, Qt::Key_Space);
    }
    QCOMPARE(scene.given, QList<Command>({Command::Freeze}));
    scene.send(QEvent::KeyRelease, Qt::Key_Space);
    scene.timestamp += 1;
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    QCOMPARE(scene.given.size(), 2);
    // A command that lasts goes on.
    scene.send(QEvent::KeyPress, Qt::Key_Plus);
    scene.timestamp += 40;
    scene.send(QEvent::KeyRelease, Qt::Key_Plus);
    scene.send(QEvent::KeyPress, Qt::Key_Plus);
    QCOMPARE(scene.started.size(), scene.stopped.size() + 1);
    scene.timestamp += 40;
    scene.send(QEvent::KeyRelease, Qt::Key_Plus);
    QCOMPARE(scene.started.size(), scene.stopped.size());
}

void KeyBindingsTest::escapeIsTakenOnlyToLeaveSomething()
{
    Scene scene;
    scene.send(QEvent::KeyPress, Qt::Key_Escape);
    QVERIFY(scene.given.isEmpty());
    scene.window.setWindowState(Qt::WindowFullScreen);
    scene.send(QEvent::KeyPress, Qt::Key_Escape);
    QCOMPARE(scene.given, QList<Command>({Command::Leave}));
}

void KeyBindingsTest::aFieldKeepsItsKeys()
{
    Scene scene;
    auto *field = new QLineEdit(&scene.window);
    scene.window.show();
    field->setFocus();
    QCOMPARE(scene.window.focusWidget(), field);
    scene.send(QEvent::KeyPress, Qt::Key_Space);
    scene.send(QEvent::KeyPress, Qt::Key_Plus);
    QVERIFY(scene.given.isEmpty());
    QVERIFY(scene.started.isEmpty());
    // Pages are turned whatever was used last.
    scene.deck.setMode(Modes::Photograph);
    field->setFocus();
    scene.send(QEvent::KeyPress, Qt::Key_PageDown);
    QCOMPARE(scene.given, QList<Command>({Command::NextPhotograph}));
}

REGISTER_TEST(KeyBindingsTest)
#include "tst_key_bindings.moc"
