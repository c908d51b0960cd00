#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "widgets/HorizontalSlider.h"

#include "tests/TestProgram.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QPointer>
#include <QTextEdit>

using namespace WindowProbe;

namespace
{

/// Whether a hold of the row's button opens a pop-up: its slot does, or its tool's own one opens.
bool hasOptions(const Commands::Row &row)
{
    return row.holdSlot || (row.tool && row.popUp != Commands::PopUp::None);
}

} // namespace

/// What the keys of the table do in the window, and what a user without a mouse reaches.
class CommandKeysTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init();
    void cleanup() { m_window.reset(); }
    void toolsAreTaken_data();
    void toolsAreTaken();
    void thePenIsChosen();
    void masksAndEffectsAreStepped();
    void modesAreEntered();
    void everyKeyIsTheTexts();
    void undoAndRedoAreGrayWithoutAnything();
    void allKeysAreListed();
    void optionsOpenWithoutHolding_data();
    void optionsOpenWithoutHolding();
    void arrowsMoveInAPopUpAndEscapeGivesTheFocusBack();
    void aPopUpThatTakesTheFocusFromAHeldKeyStays();
    void withTheControlKeyArrowsAreCommandsInAPopUpToo();
    void theAccessibleButtonsDoWhatTheButtonsDo();
    void theAccessibleStripsHaveValues();

private:
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    std::unique_ptr<MainWindow> m_window;
};

void CommandKeysTest::init()
{
    usualSettings();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitFor([this] { return QApplication::activeWindow() == m_window.get(); }));
}

void CommandKeysTest::press(int key, Qt::KeyboardModifiers modifiers)
{
    QWidget *window = QApplication::activeWindow();
    QVERIFY(window);
    QWidget *focus = window->focusWidget();
    QTest::keyClick(focus ? focus : window, Qt::Key(key), modifiers);
}

void CommandKeysTest::toolsAreTaken_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode < 4; ++mode)
        QTest::newRow(qPrintable(modes()[mode])) << mode;
}

void CommandKeysTest::toolsAreTaken()
{
    QFETCH(int, mode);
    enter(*m_window, mode);
    for (const Commands::Row &row : Commands::rows()) {
        if (!row.tool || row.keys.empty())
            continue;
        m_window->currentCanvas()->setMouseMode(ImageCanvas::MouseMode(12));
        const int key = row.keys.front();
        press(key & ~int(Qt::KeyboardModifierMask),
              Qt::KeyboardModifiers(uint(key) & uint(Qt::KeyboardModifierMask)));
        const bool there = Modes::contains(row.modes, mode);
        QCOMPARE(int(m_window->currentCanvas()->mouseMode()), there ? int(*row.tool) : 12);
        QVERIFY(!there || m_window->button(row.command)->isChecked());
    }
}

void CommandKeysTest::thePenIsChosen()
{
    const ImageCanvas *canvas = m_window->currentCanvas();
    press(Qt::Key_2);
    QCOMPARE(canvas->penColor, QColor(Qt::red));
    press(Qt::Key_1);
    QCOMPARE(canvas->penColor, QColor(Qt::black));
    for (const int width : {6, 9, 12, 12}) {
        press(Qt::Key_W);
        QCOMPARE(canvas->penWidth, width);
    }
    for (const int width : {9, 6, 3, 3}) {
        press(Qt::Key_Q);
        QCOMPARE(canvas->penWidth, width);
    }
    // An open pop-up shows it.
    m_window->lineHold();
    press(Qt::Key_4);
    QVERIFY(button(*m_window->currentToolWindow(), "Line Color: Blue")->isChecked());
}

void CommandKeysTest::masksAndEffectsAreStepped()
{
    const ImageCanvas *canvas = m_window->currentCanvas();
    for (const auto mask : {ImageCanvas::MaskCircle, ImageCanvas::MaskRectangle,
                            ImageCanvas::MaskLeft, ImageCanvas::MaskTop, ImageCanvas::MaskNone}) {
        press(Qt::Key_M, Qt::ShiftModifier);
        QCOMPARE(canvas->maskMode.load(), mask);
        QCOMPARE(m_window->button(Command::Mask)->isChecked(), mask != ImageCanvas::MaskNone);
    }
    press(Qt::Key_M);
    QCOMPARE(canvas->maskMode.load(), ImageCanvas::MaskTop);
    for (const auto effect : {ImageCanvas::EffectBW, ImageCanvas::EffectNegative,
                              ImageCanvas::EffectMosaic, ImageCanvas::EffectColor}) {
        press(Qt::Key_V);
        QCOMPARE(canvas->effectMode.load(), effect);
    }
    press(Qt::Key_O);
    QCOMPARE(canvas->rotation(), 1);
}

void CommandKeysTest::modesAreEntered()
{
    for (const int mode : {2, 1, 3, 0}) {
        press(Qt::Key_1 + mode, Qt::ControlModifier);
        QCOMPARE(m_window->currentMode(), mode);
    }
    press(Qt::Key_F9);
    QCOMPARE(m_window->width(), 800);
    press(Qt::Key_F9);
    QCOMPARE(m_window->width(), 938);
}

void CommandKeysTest::everyKeyIsTheTexts()
{
    enter(*m_window, 3);
    press(Qt::Key_X);
    QTest::mouseClick(m_window->currentCanvas(), Qt::LeftButton, {}, QPoint(200, 350));
    const auto *editor = m_window->currentCanvas()->findChild<QTextEdit *>();
    QVERIFY(editor && editor->isVisible());
    QTest::keyClicks(m_window->focusWidget(), "flrcatexhmvoqw1234");
    QCOMPARE(editor->toPlainText(), QString("flrcatexhmvoqw1234"));
    QCOMPARE(m_window->currentCanvas()->mouseMode(), ImageCanvas::Text);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(editor->toPlainText() != "flrcatexhmvoqw1234");
    QVERIFY(editor->isVisible());
}

void CommandKeysTest::undoAndRedoAreGrayWithoutAnything()
{
    enter(*m_window, 3);
    const ImageButton *undo = m_window->button(Command::Undo);
    const ImageButton *redo = m_window->button(Command::Redo);
    QVERIFY(undo->isGray() && redo->isGray());
    ImageCanvas *canvas = m_window->currentCanvas();
    const QImage empty = canvas->currentImage();
    press(Qt::Key_F);
    QTest::mousePress(canvas, Qt::LeftButton, {}, QPoint(200, 200));
    QMouseEvent move(QEvent::MouseMove, QPoint(400, 300), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &move);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, QPoint(400, 300));
    QTRY_VERIFY(canvas->currentImage() != empty);
    QTRY_VERIFY(!undo->isGray());
    QVERIFY(redo->isGray());
    press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(canvas->currentImage(), empty);
    QTRY_VERIFY(undo->isGray() && !redo->isGray());
    press(Qt::Key_Y, Qt::ControlModifier);
    QTRY_VERIFY(canvas->currentImage() != empty);
    for (int i = 0; i < 1000; ++i)
        press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(canvas->currentImage(), empty);
    press(Qt::Key_Y, Qt::ControlModifier);
    QTRY_VERIFY(canvas->currentImage() != empty);
    // Each canvas has its own.
    enter(*m_window, 0);
    QVERIFY(undo->isGray() && redo->isGray());
    enter(*m_window, 3);
    QVERIFY(!undo->isGray());
}

void CommandKeysTest::allKeysAreListed()
{
    press(Qt::Key_F1);
    const auto *popup = qobject_cast<MoreToolWindow *>(m_window->currentToolWindow());
    if (popup == nullptr)
        QFAIL("no pop-up of pages is open");
    QVERIFY(popup->isVisible());
    QVERIFY(popup->page() == Pages::Id::Keys);
    press(Qt::Key_Escape);
    QVERIFY(!popup->isVisible());
}

void CommandKeysTest::optionsOpenWithoutHolding_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("menu") << int(Qt::Key_Menu) << int(Qt::NoModifier);
    QTest::newRow("shift F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier);
    QTest::newRow("alt down") << int(Qt::Key_Down) << int(Qt::AltModifier);
    QTest::newRow("right button") << 0 << 0;
}

void CommandKeysTest::optionsOpenWithoutHolding()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    enter(*m_window, 3);
    for (const Commands::Row &row : Commands::rows()) {
        ImageButton *each = m_window->button(row.command);
        if (!each || row.group == Commands::Group::Modes || each->isHidden())
            continue;
        if (m_window->currentToolWindow())
            m_window->currentToolWindow()->close();
        if (key) {
            each->setFocus(Qt::TabFocusReason);
            QTest::keyClick(each, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        } else {
            const QPoint middle = each->rect().center();
            QContextMenuEvent event(QContextMenuEvent::Mouse, middle, each->mapToGlobal(middle));
            QCoreApplication::sendEvent(each, &event);
        }
        const ToolWindow *popup = m_window->currentToolWindow();
        const bool opened = popup && popup->isVisible() && popup->toolButton() == each;
        QVERIFY2(opened == hasOptions(row), row.text);
    }
}

void CommandKeysTest::arrowsMoveInAPopUpAndEscapeGivesTheFocusBack()
{
    enter(*m_window, 3);
    ImageButton *line = m_window->button(Command::Line);
    line->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Menu);
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(QTest::qWaitFor([&] { return QApplication::activeWindow() == popup; }));
    const auto focusedName = [popup] {
        return popup->focusWidget() ? popup->focusWidget()->accessibleName() : QString();
    };
    QCOMPARE(focusedName(), QString("Line Width: 3 pixels"));
    press(Qt::Key_Right);
    QCOMPARE(focusedName(), QString("Line Width: 6 pixels"));
    press(Qt::Key_Down);
    QCOMPARE(focusedName(), QString("Line Color: Red"));
    press(Qt::Key_Return);
    QCOMPARE(m_window->currentCanvas()->penColor, QColor(Qt::red));
    press(Qt::Key_Left);
    press(Qt::Key_Up);
    QCOMPARE(focusedName(), QString("Line Width: 3 pixels"));
    press(Qt::Key_Escape);
    QVERIFY(!popup->isVisible());
    QVERIFY(QTest::qWaitFor([&] { return QApplication::activeWindow() == m_window.get(); }));
    QCOMPARE(m_window->focusWidget(), line);
}

void CommandKeysTest::aPopUpThatTakesTheFocusFromAHeldKeyStays()
{
    for (const int key : {Qt::Key_Plus, Qt::Key_Minus}) {
        QTest::keyPress(m_window.get(), Qt::Key(key));
        ImageButton *line = m_window->button(Command::Line);
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5));
        QCoreApplication::sendEvent(line, &event);
        const QPointer<ToolWindow> popup = m_window->currentToolWindow();
        QVERIFY(QTest::qWaitFor(
            [&] { return !popup || (popup->isActiveWindow() && !m_window->isActiveWindow()); }));
        QVERIFY(popup && popup->isVisible());
        QTest::keyRelease(popup, Qt::Key(key));
        popup->close();
        QVERIFY(QTest::qWaitFor([&] { return QApplication::activeWindow() == m_window.get(); }));
    }
}

void CommandKeysTest::withTheControlKeyArrowsAreCommandsInAPopUpToo()
{
    for (const int key : {Qt::Key_Up, Qt::Key_Down}) {
        m_window->button(Command::Line)->setFocus(Qt::TabFocusReason);
        press(Qt::Key_Menu);
        const QPointer<ToolWindow> popup = m_window->currentToolWindow();
        QVERIFY(QTest::qWaitFor([&] { return popup && QApplication::activeWindow() == popup; }));
        press(key, Qt::ControlModifier);
        QVERIFY(!popup || !popup->isVisible());
        QVERIFY(QTest::qWaitFor([&] { return QApplication::activeWindow() == m_window.get(); }));
    }
}

void CommandKeysTest::theAccessibleButtonsDoWhatTheButtonsDo()
{
    for (const Commands::Row &row : Commands::rows()) {
        ImageButton *each = m_window->button(row.command);
        if (!each)
            continue;
        QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(each);
        QVERIFY(heard);
        QVERIFY2(!heard->text(QAccessible::Name).isEmpty(), row.text);
        QCOMPARE(bool(heard->state().checkable), each->isCheckable());
        QCOMPARE(bool(heard->state().checked), each->isChecked());
        QCOMPARE(bool(heard->state().hasPopup), hasOptions(row));
        QAccessibleActionInterface *actions = heard->actionInterface();
        QVERIFY(actions);
        const QStringList names = actions->actionNames();
        const bool usable = each->isEnabled() && !each->isGray();
        QCOMPARE(names.contains(QAccessibleActionInterface::pressAction()), usable);
        QCOMPARE(names.contains(QAccessibleActionInterface::showMenuAction()),
                 usable && hasOptions(row));
    }
    const auto act = [this](Command command, const QString &action) {
        QAccessible::queryAccessibleInterface(m_window->button(command))
            ->actionInterface()
            ->doAction(action);
    };
    act(Command::Arrow, QAccessibleActionInterface::pressAction());
    QCOMPARE(m_window->currentCanvas()->mouseMode(), ImageCanvas::Arrow);
    act(Command::Effect, QAccessibleActionInterface::showMenuAction());
    QVERIFY(m_window->currentToolWindow());
    QCOMPARE(m_window->currentToolWindow()->toolButton(), m_window->button(Command::Effect));
}

void CommandKeysTest::theAccessibleStripsHaveValues()
{
    for (HorizontalSlider *strip : m_window->findChildren<HorizontalSlider *>()) {
        strip->setRange(0, 10);
        strip->setValue(4);
        QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(strip);
        QVERIFY(heard && heard->valueInterface());
        QCOMPARE(heard->role(), QAccessible::Slider);
        QCOMPARE(heard->valueInterface()->currentValue().toInt(), 4);
        QCOMPARE(heard->valueInterface()->maximumValue().toInt(), 10);
        heard->valueInterface()->setCurrentValue(99);
        QCOMPARE(strip->value(), 10);
    }
}

REGISTER_TEST(CommandKeysTest)
#include "tst_command_keys.moc"
