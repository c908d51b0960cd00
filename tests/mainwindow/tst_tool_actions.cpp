#include "mainwindow/actions/ToolActions.h"

#include "tests/TestProgram.h"
#include "tests/mainwindow/HelperScene.h"

#include <QPointer>
#include <QTest>

Q_DECLARE_METATYPE(Command)

namespace
{

struct ToolScene : HelperScene {
    ToolActions actions{&deck, &popups, &buttons};
};

} // namespace

/// What the buttons of drawing, mask and effect do, without a window.
class ToolActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void aToolIsTaken_data();
    void aToolIsTaken();
    void optionsOpenBesideTheirButton_data();
    void optionsOpenBesideTheirButton();
    void theMaskIsRemembered();
    void theButtonsShowTheCanvas_data();
    void theButtonsShowTheCanvas();
    void aModeWithoutAToolChecksNothing();
};

void ToolActionsTest::aToolIsTaken_data()
{
    QTest::addColumn<Command>("command");
    for (const Commands::Row &row : Commands::rows()) {
        if (row.tool)
            QTest::newRow(row.text) << row.command;
    }
}

void ToolActionsTest::aToolIsTaken()
{
    QFETCH(Command, command);
    const Commands::Row &row = Commands::row(command);
    ToolScene scene;
    scene.deck.current()->setMouseMode(CanvasModes::MouseMode(12));
    const QPointer<ToolWindow> foreign = scene.open(Command::Effect);
    scene.actions.select(command);
    QCOMPARE(scene.deck.current()->mouseMode(), *row.tool);
    QVERIFY(!foreign);
    if (row.popUp == Commands::PopUp::None)
        return;
    const QPointer<ToolWindow> own = scene.open(command);
    scene.actions.select(command);
    QVERIFY(own);
}

void ToolActionsTest::optionsOpenBesideTheirButton_data()
{
    QTest::addColumn<Command>("command");
    for (const Commands::Row &row : Commands::rows()) {
        if (row.holdSlot)
            QTest::newRow(row.text) << row.command;
    }
}

void ToolActionsTest::optionsOpenBesideTheirButton()
{
    QFETCH(Command, command);
    ToolScene scene;
    scene.deck.setMode(Modes::DrawingBoard);
    scene.actions.showOptions(command);
    QVERIFY(scene.popups.shown());
    QCOMPARE(scene.popups.current()->toolButton(), scene.buttons.of(command));
    const Commands::Row &row = Commands::row(command);
    QCOMPARE(scene.buttons.of(command)->isChecked(), row.tool.has_value());
    if (row.tool)
        QCOMPARE(scene.deck.current()->mouseMode(), *row.tool);
}

void ToolActionsTest::theMaskIsRemembered()
{
    ToolScene scene;
    ImageButton *button = scene.buttons.of(Command::Mask);
    const ImageCanvas *canvas = scene.deck.current();
    const auto click = [&](bool checked) {
        button->setChecked(checked);
        scene.actions.toggleMask();
        return canvas->maskMode.load();
    };
    QCOMPARE(click(true), CanvasModes::MaskCircle);
    scene.deck.current()->maskMode = CanvasModes::MaskTop;
    QCOMPARE(click(false), CanvasModes::MaskNone);
    // No mask is nothing to be remembered.
    QCOMPARE(click(false), CanvasModes::MaskNone);
    QCOMPARE(click(true), CanvasModes::MaskTop);
}

void ToolActionsTest::theButtonsShowTheCanvas_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("effect");
    QTest::addColumn<QString>("maskSkin");
    QTest::addColumn<QString>("effectSkin");
    QTest::newRow("nothing") << 0 << 0 << "ICON_MASK_CIRCLE"
                             << "ICON_EFFECT_COLOR";
    QTest::newRow("circle, grey") << 1 << 1 << "ICON_MASK_CIRCLE"
                                  << "ICON_EFFECT_BW";
    QTest::newRow("rectangle, inverted") << 2 << 2 << "ICON_MASK_RECTANGLE"
                                         << "ICON_EFFECT_NEGATIVE";
    QTest::newRow("left, blocks") << 3 << 3 << "ICON_MASK_LEFT"
                                  << "ICON_EFFECT_MOSAIC";
    QTest::newRow("top") << 4 << 0 << "ICON_MASK_TOP"
                         << "ICON_EFFECT_COLOR";
    QTest::newRow("unknown") << 99 << -1 << "ICON_MASK_CIRCLE"
                             << "ICON_EFFECT_COLOR";
}

void ToolActionsTest::theButtonsShowTheCanvas()
{
    QFETCH(int, mask);
    QFETCH(int, effect);
    QFETCH(QString, maskSkin);
    QFETCH(QString, effectSkin);
    ToolScene scene;
    ImageCanvas *canvas = scene.deck.current();
    canvas->maskMode = CanvasModes::MaskMode(mask);
    canvas->effectMode = CanvasModes::EffectMode(effect);
    canvas->frozen = true;
    canvas->setMouseMode(CanvasModes::Arrow);
    scene.actions.showCanvasState();
    const auto looksLike = [&](Command command, const QString &skin) {
        ImageButton *button = scene.buttons.of(command);
        ImageButton other(skin, button->parentWidget(), 0, 0);
        other.setCheckable(true);
        other.setChecked(button->isChecked());
        return button->grab().toImage() == other.grab().toImage();
    };
    QVERIFY(looksLike(Command::Mask, maskSkin));
    QVERIFY(looksLike(Command::Effect, effectSkin));
    QCOMPARE(scene.buttons.of(Command::Mask)->isChecked(), mask != 0);
    QVERIFY(scene.buttons.of(Command::Freeze)->isChecked());
    QVERIFY(scene.buttons.of(Command::Arrow)->isChecked());
}

void ToolActionsTest::aModeWithoutAToolChecksNothing()
{
    ToolScene scene;
    scene.buttons.of(Command::Line)->setChecked(true);
    scene.deck.current()->setMouseMode(CanvasModes::MouseMode(12));
    scene.actions.showCanvasState();
    QVERIFY(!scene.tools.checkedButton());
    QVERIFY(scene.tools.exclusive());
}

REGISTER_TEST(ToolActionsTest)
#include "tst_tool_actions.moc"
