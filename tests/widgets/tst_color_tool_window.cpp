#include "tests/widgets/PopupTest.h"
#include "widgets/ColorToolWindow.h"

#include "tests/TestProgram.h"

#include <QLabel>

class ColorToolWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void hasOneRowForEachLabel_data();
    void hasOneRowForEachLabel();
    void buttonsStandInTheirPlaces();
    void showsTheCanvasSettings_data();
    void showsTheCanvasSettings();
    void everyChoiceReachesTheCanvas();
    void fillIsShownOffUntilAColorIsChosen();
    void readsAgainWhenTheModeChanges();
    void withoutACanvasNothingHappens();
    void everyButtonHasANameAndATip();
    void theRowsDoNotSayTheSame();
};

void ColorToolWindowTest::hasOneRowForEachLabel_data()
{
    QTest::addColumn<QString>("color");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<int>("height");
    QTest::newRow("three") << "Line Color"
                           << "Fill Color"
                           << QStringList{"Title 8,2", "Line Width 8,22", "Line Color 8,45",
                                          "Fill Color 8,68"}
                           << 94;
    QTest::newRow("two") << "Line Color"
                         << "" << QStringList{"Title 8,2", "Line Width 8,22", "Line Color 8,45"}
                         << 70;
    QTest::newRow("one") << ""
                         << "" << QStringList{"Title 8,2", "Line Width 8,22"} << 47;
    QTest::newRow("no fill without color")
        << ""
        << "Fill Color" << QStringList{"Title 8,2", "Line Width 8,22"} << 47;
}

void ColorToolWindowTest::hasOneRowForEachLabel()
{
    QFETCH(QString, color);
    QFETCH(QString, fill);
    QFETCH(QStringList, labels);
    QFETCH(int, height);
    PopupScene scene;
    const ColorToolWindow popup(&scene.toolButton, &scene.window, "Title", "Line Width", color,
                                fill);
    QStringList found;
    for (const QLabel *label : popup.findChildren<QLabel *>())
        found << QString("%1 %2,%3").arg(label->text()).arg(label->x()).arg(label->y());
    QCOMPARE(found, labels);
    QCOMPARE(popup.size(), QSize(292, height));
    QCOMPARE(Popup::row(popup, 43).size(), labels.size() > 2 ? 4 : 0);
    QCOMPARE(Popup::row(popup, 67).size(), labels.size() > 3 ? 5 : 0);
}

void ColorToolWindowTest::buttonsStandInTheirPlaces()
{
    PopupScene scene;
    const ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    QCOMPARE(popup.styleSheet(), QString("font-family: Arial; font-size: 15px; color: white;"));
    QCOMPARE(Popup::lefts(popup, 20), (QList<int>{152, 185, 218, 251}));
    QCOMPARE(Popup::lefts(popup, 43), (QList<int>{152, 185, 218, 251}));
    QCOMPARE(Popup::lefts(popup, 67), (QList<int>{119, 152, 185, 218, 251}));
}

void ColorToolWindowTest::showsTheCanvasSettings_data()
{
    QTest::addColumn<int>("penWidth");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("checkedWidth");
    QTest::addColumn<int>("checkedColor");
    QTest::newRow("3 black") << 3 << QColor(Qt::black) << 0 << 0;
    QTest::newRow("6 red") << 6 << QColor(255, 0, 0) << 1 << 1;
    QTest::newRow("9 yellow") << 9 << QColor(255, 255, 0) << 2 << 2;
    QTest::newRow("12 blue") << 12 << QColor(0, 0, 255) << 3 << 3;
    QTest::newRow("another width and color") << 4 << QColor(1, 2, 3) << 0 << 0;
    QTest::newRow("15 is no button") << 15 << QColor(255, 0, 1) << 0 << 0;
    QTest::newRow("nor are 0 and less") << -3 << QColor() << 0 << 0;
}

void ColorToolWindowTest::showsTheCanvasSettings()
{
    QFETCH(int, penWidth);
    QFETCH(QColor, color);
    QFETCH(int, checkedWidth);
    QFETCH(int, checkedColor);
    PopupScene scene;
    scene.canvas.penWidth = penWidth;
    scene.canvas.penColor = color;
    scene.canvas.fillEnabled = true;
    scene.canvas.fillColor = color;
    const ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    QCOMPARE(Popup::checked(popup, 20), checkedWidth);
    QCOMPARE(Popup::checked(popup, 43), checkedColor);
    // The button without a colour stands before the four.
    QCOMPARE(Popup::checked(popup, 67), checkedColor + 1);
}

void ColorToolWindowTest::everyChoiceReachesTheCanvas()
{
    PopupScene scene;
    ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    popup.show();
    const QColor colors[] = {Qt::black, QColor(255, 0, 0), QColor(255, 255, 0), QColor(0, 0, 255)};
    for (int i = 0; i < 4; ++i) {
        QTest::mouseClick(Popup::row(popup, 20)[i], Qt::LeftButton);
        QCOMPARE(scene.canvas.penWidth, 3 * (i + 1));
        QTest::mouseClick(Popup::row(popup, 43)[i], Qt::LeftButton);
        QCOMPARE(scene.canvas.penColor.rgba(), colors[i].rgba());
        QTest::mouseClick(Popup::row(popup, 67)[i + 1], Qt::LeftButton);
        QCOMPARE(scene.canvas.fillColor.rgba(), colors[i].rgba());
        QVERIFY(scene.canvas.fillEnabled);
    }
    QTest::mouseClick(Popup::row(popup, 67)[0], Qt::LeftButton);
    QVERIFY(!scene.canvas.fillEnabled);
    QCOMPARE(scene.canvas.fillColor.rgba(), colors[3].rgba());
    QVERIFY(popup.isVisible());
}

void ColorToolWindowTest::fillIsShownOffUntilAColorIsChosen()
{
    PopupScene scene;
    scene.canvas.fillEnabled = false;
    scene.canvas.fillColor = QColor(255, 0, 0);
    ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    QCOMPARE(Popup::checked(popup, 67), 0);
}

void ColorToolWindowTest::readsAgainWhenTheModeChanges()
{
    PopupScene scene;
    ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    ImageCanvas other(&scene.window);
    other.penWidth = 9;
    other.penColor = QColor(0, 0, 255);
    scene.window.canvas = &other;
    emit scene.window.modeChanged();
    QCOMPARE(Popup::checked(popup, 20), 2);
    QCOMPARE(Popup::checked(popup, 43), 3);
    popup.show();
    QTest::mouseClick(Popup::row(popup, 20)[3], Qt::LeftButton);
    QCOMPARE(other.penWidth, 12);
    QCOMPARE(scene.canvas.penWidth, 3);
}

void ColorToolWindowTest::withoutACanvasNothingHappens()
{
    PopupScene scene;
    scene.window.canvas = nullptr;
    ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    popup.show();
    for (const int y : {20, 43, 67})
        QTest::mouseClick(Popup::row(popup, y)[1], Qt::LeftButton);
    QCOMPARE(scene.canvas.penWidth, 3);
}

void ColorToolWindowTest::everyButtonHasANameAndATip()
{
    PopupScene scene;
    const ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "W", "C", "F");
    for (const ImageButton *button : popup.findChildren<ImageButton *>()) {
        QVERIFY(!button->accessibleName().isEmpty());
        QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->accessibleName()));
    }
}

void ColorToolWindowTest::theRowsDoNotSayTheSame()
{
    PopupScene scene;
    const ColorToolWindow popup(&scene.toolButton, &scene.window, "T", "Width", "Line Color",
                                "Fill Color");
    QCOMPARE(Popup::row(popup, 20)[1]->accessibleName(), QString("Width: 6 pixels"));
    QCOMPARE(Popup::row(popup, 43)[0]->accessibleName(), QString("Line Color: Black"));
    QCOMPARE(Popup::row(popup, 43)[0]->toolTip(), QString("Black"));
    QSet<QString> names;
    const auto buttons = popup.findChildren<ImageButton *>();
    for (const ImageButton *button : buttons)
        names.insert(button->accessibleName());
    QCOMPARE(names.size(), buttons.size());
    QVERIFY(names.contains("Fill Color: Black"));
    QVERIFY(names.contains("Fill Color: No fill"));
}

REGISTER_TEST(ColorToolWindowTest)
#include "tst_color_tool_window.moc"
