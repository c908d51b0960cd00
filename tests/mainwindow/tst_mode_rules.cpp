#include "mainwindow/ModeRules.h"

#include "tests/TestProgram.h"

#include <QTest>

using ButtonTable::PanelButton;

class TestModeRules : public QObject
{
    Q_OBJECT

private slots:
    void buttonsAreEnabledByMode();
    void toolButtonFollowsMouseMode();
    void maskSkinFollowsMask();
    void effectSkinFollowsEffect();
};

void TestModeRules::buttonsAreEnabledByMode()
{
    // One character a mode, live, film, photograph, board.
    const QMap<PanelButton, QByteArray> rules{
        {PanelButton::Hand, "0111"},         {PanelButton::FillBackground, "0001"},
        {PanelButton::AutoFocus, "1000"},    {PanelButton::BrightnessDown, "1000"},
        {PanelButton::BrightnessUp, "1000"}, {PanelButton::Freeze, "1000"},
        {PanelButton::Record, "1000"},       {PanelButton::Settings, "1000"},
        {PanelButton::Snapshot, "1111"},
    };
    for (int i = 0; i < ButtonTable::PANEL_BUTTON_COUNT; ++i) {
        const QByteArray expected = rules.value(PanelButton(i), "1111");
        QByteArray actual;
        for (int mode = 0; mode < 4; ++mode)
            actual += ModeRules::enabled(PanelButton(i), mode) ? '1' : '0';
        QVERIFY2(actual == expected,
                 qPrintable(QString("button %1: %2").arg(i).arg(QString(actual))));
    }
}

void TestModeRules::toolButtonFollowsMouseMode()
{
    const PanelButton expected[] = {
        PanelButton::Hand,      PanelButton::Freehand, PanelButton::Line,     PanelButton::Arrow,
        PanelButton::Rectangle, PanelButton::Circle,   PanelButton::Triangle, PanelButton::Eraser,
        PanelButton::Clip,      PanelButton::Text};
    for (int mode = 0; mode < 10; ++mode)
        QVERIFY2(ModeRules::toolButton(mode) == expected[mode], qPrintable(QString::number(mode)));
    QVERIFY(!ModeRules::toolButton(-1));
    QVERIFY(!ModeRules::toolButton(10));
}

void TestModeRules::maskSkinFollowsMask()
{
    const char *expected[] = {"ICON_MASK_CIRCLE", "ICON_MASK_CIRCLE", "ICON_MASK_RECTANGLE",
                              "ICON_MASK_LEFT", "ICON_MASK_TOP"};
    for (int mode = 0; mode < 5; ++mode)
        QCOMPARE(ModeRules::maskSkin(mode), QString(expected[mode]));
    QCOMPARE(ModeRules::maskSkin(99), QString("ICON_MASK_CIRCLE"));
}

void TestModeRules::effectSkinFollowsEffect()
{
    const char *expected[] = {"ICON_EFFECT_COLOR", "ICON_EFFECT_BW", "ICON_EFFECT_NEGATIVE",
                              "ICON_EFFECT_MOSAIC"};
    for (int mode = 0; mode < 4; ++mode)
        QCOMPARE(ModeRules::effectSkin(mode), QString(expected[mode]));
    QCOMPARE(ModeRules::effectSkin(-1), QString("ICON_EFFECT_COLOR"));
}

REGISTER_PLAIN_TEST(TestModeRules)
#include "tst_mode_rules.moc"
