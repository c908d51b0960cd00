#include "tests/widgets/PopupTest.h"
#include "widgets/EffectToolWindow.h"
#include "widgets/FillBackgroundToolWindow.h"
#include "widgets/MaskToolWindow.h"

#include "tests/TestProgram.h"

#include <QButtonGroup>
#include <QLabel>

namespace
{

QImage drawn(ImageButton &button)
{
    QImage image(button.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    button.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

bool wears(ImageButton &button, const QString &skin)
{
    ImageButton reference(skin, nullptr, 0, 0);
    reference.setCheckable(true);
    reference.setChecked(button.isChecked());
    return drawn(button) == drawn(reference);
}

QString title(const QWidget &popup)
{
    return popup.findChild<QLabel *>()->text();
}

} // namespace

/// Effect, mask and board colour.
class ChoiceToolWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void effectButtonsStandInTheirPlaces();
    void everyEffectReachesCanvasAndToolButton();
    void effectStepsRoundTheTable();
    void effectStepsOnlyFromACheckedButton();
    void effectIgnoresAnIndexOutsideTheTable();
    void maskButtonsStandInTheirPlaces();
    void everyMaskReachesCanvasAndToolButton();
    void maskStepsBackwardsThroughNone();
    void maskStepsForwardsAndWrapsToNone();
    void noMaskKeepsTheLastSkin();
    void maskWithoutACheckedButtonCountsAsTheFirst();
    void openingTheFillWindowPaintsTheBoardWhite();
    void everyBoardColorReachesTheCanvas();
    void fillWithoutALabelHasNoButtons();
    void eachReadsTheCanvasAgainWhenTheModeChanges();
};

void ChoiceToolWindowsTest::effectButtonsStandInTheirPlaces()
{
    PopupScene scene;
    const EffectToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(title(popup), QString("Color Effect"));
    QCOMPARE(popup.size(), QSize(246, 66));
    QCOMPARE(Popup::lefts(popup, 18), (QList<int>{4, 64, 124, 184}));
    QCOMPARE(Popup::checked(popup, 18), 0);
}

void ChoiceToolWindowsTest::everyEffectReachesCanvasAndToolButton()
{
    PopupScene scene;
    EffectToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    const char *skins[] = {"ICON_EFFECT_COLOR", "ICON_EFFECT_BW", "ICON_EFFECT_NEGATIVE",
                           "ICON_EFFECT_MOSAIC"};
    for (const int i : {3, 2, 1, 0}) {
        QTest::mouseClick(Popup::row(popup, 18)[i], Qt::LeftButton);
        QCOMPARE(int(scene.canvas.effectMode.load()), i);
        QVERIFY(wears(scene.toolButton, skins[i]));
        QCOMPARE(Popup::checked(popup, 18), i);
    }
}

void ChoiceToolWindowsTest::effectStepsRoundTheTable()
{
    PopupScene scene;
    EffectToolWindow popup(&scene.toolButton, &scene.window);
    for (const int expected : {1, 2, 3, 0}) {
        popup.nextEffect();
        QCOMPARE(int(scene.canvas.effectMode.load()), expected);
        QCOMPARE(Popup::checked(popup, 18), expected);
    }
    for (const int expected : {3, 2, 1, 0}) {
        popup.previousEffect();
        QCOMPARE(int(scene.canvas.effectMode.load()), expected);
        QCOMPARE(Popup::checked(popup, 18), expected);
    }
}

void ChoiceToolWindowsTest::effectStepsOnlyFromACheckedButton()
{
    PopupScene scene;
    EffectToolWindow popup(&scene.toolButton, &scene.window);
    ImageButton *checked = Popup::row(popup, 18)[0];
    checked->group()->setExclusive(false);
    checked->setChecked(false);
    popup.nextEffect();
    popup.previousEffect();
    QCOMPARE(int(scene.canvas.effectMode.load()), 0);
    QCOMPARE(Popup::checked(popup, 18), -1);
}

void ChoiceToolWindowsTest::effectIgnoresAnIndexOutsideTheTable()
{
    PopupScene scene;
    EffectToolWindow popup(&scene.toolButton, &scene.window);
    for (const int index : {-1, 4, 1000}) {
        popup.setCurrentEffect(index);
        QCOMPARE(int(scene.canvas.effectMode.load()), 0);
    }
}

void ChoiceToolWindowsTest::maskButtonsStandInTheirPlaces()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    const MaskToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(title(popup), QString("Effect"));
    QCOMPARE(popup.size(), QSize(246, 66));
    QCOMPARE(Popup::lefts(popup, 18), (QList<int>{4, 64, 124, 184}));
    QCOMPARE(Popup::checked(popup, 18), -1);
    QCOMPARE(popup.selectedMaskMode(), ImageCanvas::MaskNone);
}

void ChoiceToolWindowsTest::everyMaskReachesCanvasAndToolButton()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    MaskToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    const char *skins[] = {"ICON_MASK_CIRCLE", "ICON_MASK_RECTANGLE", "ICON_MASK_LEFT",
                           "ICON_MASK_TOP"};
    for (const int i : {3, 2, 1, 0}) {
        QTest::mouseClick(Popup::row(popup, 18)[i], Qt::LeftButton);
        QCOMPARE(int(scene.canvas.maskMode.load()), i + 1);
        QCOMPARE(int(popup.selectedMaskMode()), i + 1);
        QVERIFY(scene.toolButton.isChecked());
        QVERIFY(wears(scene.toolButton, skins[i]));
    }
}

void ChoiceToolWindowsTest::maskStepsBackwardsThroughNone()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    MaskToolWindow popup(&scene.toolButton, &scene.window);
    for (const int expected : {4, 3, 2, 1, 0, 4}) {
        popup.previousMask();
        QCOMPARE(int(scene.canvas.maskMode.load()), expected);
        QCOMPARE(scene.toolButton.isChecked(), expected != 0);
        if (expected != 0)
            QCOMPARE(Popup::checked(popup, 18), expected - 1);
    }
}

void ChoiceToolWindowsTest::maskStepsForwardsAndWrapsToNone()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    MaskToolWindow popup(&scene.toolButton, &scene.window);
    for (const int expected : {1, 2, 3, 4, 0, 1}) {
        popup.nextMask();
        QCOMPARE(int(scene.canvas.maskMode.load()), expected);
        QCOMPARE(scene.toolButton.isChecked(), expected != 0);
    }
}

void ChoiceToolWindowsTest::noMaskKeepsTheLastSkin()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    MaskToolWindow popup(&scene.toolButton, &scene.window);
    popup.setCurrentMask(3);
    popup.setCurrentMask(0);
    QVERIFY(!scene.toolButton.isChecked());
    QVERIFY(wears(scene.toolButton, "ICON_MASK_LEFT"));
    popup.setCurrentMask(5);
    popup.setCurrentMask(-1);
    QCOMPARE(int(scene.canvas.maskMode.load()), 0);
}

void ChoiceToolWindowsTest::maskWithoutACheckedButtonCountsAsTheFirst()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    MaskToolWindow popup(&scene.toolButton, &scene.window);
    scene.toolButton.setChecked(true);
    popup.nextMask();
    QCOMPARE(int(scene.canvas.maskMode.load()), 2);
}

void ChoiceToolWindowsTest::openingTheFillWindowPaintsTheBoardWhite()
{
    PopupScene scene;
    scene.canvas.fillCanvas(QColor(255, 255, 0));
    FillBackgroundToolWindow popup(&scene.toolButton, &scene.window, "Background Color",
                                   "Fill Color");
    QCOMPARE(scene.canvas.currentImage().pixel(10, 10), 0xFFFFFFFF);
    QCOMPARE(scene.canvas.boardColor().rgba(), 0xFFFFFFFF);
    QCOMPARE(Popup::checked(popup, 20), 0);
    QCOMPARE(Popup::lefts(popup, 20), (QList<int>{130, 163, 196, 229}));
    QCOMPARE(popup.size(), QSize(292, 47));
}

void ChoiceToolWindowsTest::everyBoardColorReachesTheCanvas()
{
    PopupScene scene;
    FillBackgroundToolWindow popup(&scene.toolButton, &scene.window, "T", "L");
    popup.show();
    const QRgb colors[] = {0xFFFFFFFF, 0xFF000000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {3, 2, 1, 0}) {
        QTest::mouseClick(Popup::row(popup, 20)[i], Qt::LeftButton);
        QCOMPARE(scene.canvas.currentImage().pixel(640, 360), colors[i]);
        QCOMPARE(scene.canvas.fillColor.rgba(), 0xFF000000);
    }
}

void ChoiceToolWindowsTest::fillWithoutALabelHasNoButtons()
{
    PopupScene scene;
    FillBackgroundToolWindow popup(&scene.toolButton, &scene.window, "T", "");
    QVERIFY(Popup::row(popup, 20).isEmpty());
    popup.modeChanged();
    QCOMPARE(scene.canvas.boardColor().rgba(), 0xFFFFFFFF);
}

void ChoiceToolWindowsTest::eachReadsTheCanvasAgainWhenTheModeChanges()
{
    PopupScene scene;
    scene.toolButton.setCheckable(true);
    EffectToolWindow effect(&scene.toolButton, &scene.window);
    MaskToolWindow mask(&scene.toolButton, &scene.window);
    FillBackgroundToolWindow fill(&scene.toolButton, &scene.window, "T", "L");
    ImageCanvas other(&scene.window);
    other.effectMode = ImageCanvas::EffectNegative;
    other.maskMode = ImageCanvas::MaskLeft;
    other.fillCanvas(QColor(0, 0, 255));
    scene.window.canvas = &other;
    emit scene.window.modeChanged();
    QCOMPARE(Popup::checked(effect, 18), 2);
    QCOMPARE(Popup::checked(mask, 18), 2);
    QCOMPARE(Popup::checked(fill, 20), 3);
    other.maskMode = ImageCanvas::MaskNone;
    emit scene.window.modeChanged();
    QCOMPARE(Popup::checked(mask, 18), -1);
}

REGISTER_TEST(ChoiceToolWindowsTest)
#include "tst_choice_tool_windows.moc"
