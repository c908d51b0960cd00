#include "mainwindow/ButtonTable.h"

#include "tests/TestProgram.h"

#include <QTest>

using namespace ButtonTable;

namespace
{

/// A coded slot without its code and the location that debug builds append after a NUL.
QByteArray slotName(const char *coded)
{
    return coded ? QByteArray(coded).mid(1) : QByteArray();
}

} // namespace

/// The rows against a second, independent writing of the same table.
class TestButtonTable : public QObject
{
    Q_OBJECT

private slots:
    void panelHasEveryButtonInOrder_data();
    void panelHasEveryButtonInOrder();
    void rowsStandAtTheirEnumerator();
    void groupsAreNamedAndContiguous();
    void modesHaveTheirSkinsAndTexts();
    void barButtonsStandFortyApart();
    void colorToolsHaveTheirRows_data();
    void colorToolsHaveTheirRows();
};

void TestButtonTable::panelHasEveryButtonInOrder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("line");
    // group|skin|tool tip|click|hold|tool group|afterwards
    const char *lines[] = {
        "0|ICON_LINE|Line|line()|lineHold()|yes|",
        "0|ICON_RETANGLE|Rectangle|rectangle()|rectangleHold()|yes|",
        "0|ICON_FREEHAND|Freehand|freehand()|freehandHold()|yes|checked",
        "0|ICON_CIRCLE|Circle|circle()|circleHold()|yes|",
        "0|ICON_ARROW|Arrow|arrow()|arrowHold()|yes|",
        "0|ICON_TRIANGLE|Triangle|triangle()|triangleHold()|yes|",
        "0|ICON_ERASE|Eraser|erase()|eraseHold()|yes|",
        "0|ICON_TEXT|Text|text()|textHold()|yes|",
        "0|ICON_ERASE_ALL|Erase all|eraseAll()||no|",
        "0|ICON_COPY|Clip image|clip()||yes|",
        "0|ICON_HAND|Hand|hand()||yes|hidden",
        "0|ICON_FILL|Fill background|fillBackground()|fillBackgroundHold()|yes|uncheckable hidden",
        "1|ICON_MASK_CIRCLE|Mask|mask()|maskHold()|no|checkable",
        "1|ICON_EFFECT_COLOR|Effect||effectHold()|no|",
        "2|ICON_ZOOM_OUT|Zoom out|||no|",
        "2|ICON_ZOOM_IN|Zoom in|||no|",
        "2|ICON_ZOOM_RESET|Reset zoom|zoomReset()||no|",
        "2|ICON_AUTOFOCUS|Auto focus|autoFocus()||no|",
        "2|ICON_BRIGHTNESS_REDUCE|Brightness down|brightnessDown()||no|",
        "2|ICON_BRIGHTNESS_INCREASE|Brightness up|brightnessUp()||no|",
        "2|ICON_ROTATE|Rotate|rotate()||no|",
        "2|ICON_FREEZE|Freeze|freeze()||no|checkable",
        "3|ICON_RECORDING|Record video|record()||no|checkable",
        "3|ICON_CAPTURE|Take snapshot|snapshot()||no|",
        "3|ICON_SETTING|Settings|settings()||no|",
        "3|ICON_PRINT|Print|print()||no|",
    };
    QCOMPARE(int(std::size(lines)), PANEL_BUTTON_COUNT);
    int index = 0;
    for (const char *line : lines)
        QTest::newRow(line) << index++ << line;
}

void TestButtonTable::panelHasEveryButtonInOrder()
{
    QFETCH(int, index);
    QFETCH(QString, line);
    const PanelRow &row = panelRows()[std::size_t(index)];
    QStringList afterwards;
    if (row.after & Checked)
        afterwards << "checked";
    if (row.after & MadeCheckable)
        afterwards << "checkable";
    if (row.after & MadeUncheckable)
        afterwards << "uncheckable";
    if (row.after & HiddenAndDisabled)
        afterwards << "hidden";
    const QStringList fields{QString::number(int(row.group)),
                             row.skin,
                             row.toolTip,
                             slotName(row.clickSlot),
                             slotName(row.holdSlot),
                             row.inToolGroup ? "yes" : "no",
                             afterwards.join(' ')};
    QCOMPARE(fields.join('|'), line);
}

void TestButtonTable::rowsStandAtTheirEnumerator()
{
    for (std::size_t i = 0; i < panelRows().size(); ++i)
        QCOMPARE(std::size_t(panelRows()[i].button), i);
    QCOMPARE(int(PanelButton::Print), PANEL_BUTTON_COUNT - 1);
}

void TestButtonTable::groupsAreNamedAndContiguous()
{
    QCOMPARE(groupTitles()[0], "Noting");
    QCOMPARE(groupTitles()[1], "Assisting");
    QCOMPARE(groupTitles()[2], "Adjustment");
    QCOMPARE(groupTitles()[3], "Recording");
    for (std::size_t i = 1; i < panelRows().size(); ++i)
        QVERIFY(int(panelRows()[i - 1].group) <= int(panelRows()[i].group));
}

void TestButtonTable::modesHaveTheirSkinsAndTexts()
{
    QStringList rows;
    for (const ModeRow &row : modeRows())
        rows << QString(row.skin) + '|' + row.text;
    QCOMPARE(rows, (QStringList{"MAIN_BUTTON|Live", "MAIN_BUTTON|Film", "MAIN_BUTTON|Photograph",
                                "MAIN_BUTTON_LONG|Drawing Board"}));
}

void TestButtonTable::barButtonsStandFortyApart()
{
    const auto lines = [](const auto &rows) {
        QStringList list;
        for (const BarRow &row : rows)
            list << QString("%1|%2|%3|%4")
                        .arg(row.skin)
                        .arg(row.x)
                        .arg(QString(slotName(row.slot)), row.checkable ? "checkable" : "");
        return list;
    };
    QCOMPARE(lines(filmBarRows()),
             (QStringList{"ICON_FILM_OPEN|20|filmOpenFile()|", "ICON_FILM_PLAY|60|filmPlay()|",
                          "ICON_FILM_PAUSE|100|filmPause()|", "ICON_FILM_STOP|140|filmStop()|",
                          "ICON_FILM_BACKWARD|180|filmBackward()|",
                          "ICON_FILM_FORWARD|220|filmForward()|",
                          "ICON_FILM_VOLUME|260|filmVolume()|checkable"}));
    QCOMPARE(lines(photographBarRows()),
             (QStringList{"ICON_PHOTO_OPEN|20|photographOpenDirectory()|",
                          "ICON_PHOTO_BACKWARD|60|photographPrevious()|",
                          "ICON_PHOTO_SLIDE|100|photographPlay()|checkable",
                          "ICON_PHOTO_FORWARD|140|photographNext()|",
                          "ICON_PHOTO_THUMBNIL|180|photographPreview()|checkable",
                          "ICON_PHOTO_TIME|220|photographPlayInterval()|checkable"}));
}

void TestButtonTable::colorToolsHaveTheirRows_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("line");
    int index = 0;
    for (const char *line : {"0|2|Line|Line Width|color|", "1|4|Rectangle|Line Width|color|fill",
                             "2|1|Freehand|Line Width|color|", "3|5|Circle|Line Width|color|fill",
                             "4|3|Arrow|Line Width|color|fill",
                             "5|6|Triangle|Line Width|color|fill", "6|7|Eraser|Width||"})
        QTest::newRow(line) << index++ << line;
    QCOMPARE(std::size_t(index), colorToolRows().size());
}

void TestButtonTable::colorToolsHaveTheirRows()
{
    QFETCH(int, index);
    QFETCH(QString, line);
    const ColorToolRow &row = colorToolRows()[std::size_t(index)];
    const QStringList fields{QString::number(int(row.button)),
                             QString::number(row.mouseMode),
                             row.title,
                             row.widthCaption,
                             row.colorRow ? "color" : "",
                             row.fillRow ? "fill" : ""};
    QCOMPARE(fields.join('|'), line);
}

REGISTER_PLAIN_TEST(TestButtonTable)
#include "tst_button_table.moc"
