#include "resources/Skin.h"
#include "resources/SkinImages.h"
#include "tools/skinrender/SkinTable.h"

#include <QDirIterator>
#include <QtTest>

// Every resource path that the program can build, and the arithmetic that its sizes must fit.
class SkinTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initialiseSkin(); }
    void everyPathOfTheProgramHasAnImage_data();
    void everyPathOfTheProgramHasAnImage();
    void everyImageHasItsCopyAtTwiceTheSize();
    void everyImageIsNamedByTheProgram();
    void statesDifferClearly();
    void panelFitsTheLowestWindow();
    void sizesFitThePositionsOfTheWindow();
    void sizesFitThePositionsOfThePopUps();
    void sizesFitTheIndications();
    void tableAndPaletteReportFaults();
};

namespace
{

QSize sizeOf(const QString &path)
{
    return QImage(":/icons/" + path + ".png").size();
}

QSize buttonSize(const QString &name)
{
    return sizeOf("Normal/" + name);
}

QStringList withSuffixes(const QString &stem, const QStringList &suffixes)
{
    QStringList names;
    for (const QString &suffix : suffixes)
        names << stem + suffix;
    return names;
}

QStringList panelTools()
{
    return QStringList{"ICON_LINE",
                       "ICON_RETANGLE",
                       "ICON_FREEHAND",
                       "ICON_CIRCLE",
                       "ICON_ARROW",
                       "ICON_TRIANGLE",
                       "ICON_ERASE",
                       "ICON_TEXT",
                       "ICON_ERASE_ALL",
                       "ICON_COPY",
                       "ICON_HAND",
                       "ICON_FILL",
                       "ICON_ZOOM_OUT",
                       "ICON_ZOOM_IN",
                       "ICON_ZOOM_RESET",
                       "ICON_AUTOFOCUS",
                       "ICON_BRIGHTNESS_REDUCE",
                       "ICON_BRIGHTNESS_INCREASE",
                       "ICON_ROTATE",
                       "ICON_FREEZE",
                       "ICON_RECORDING",
                       "ICON_CAPTURE",
                       "ICON_SETTING",
                       "ICON_PRINT"} +
           withSuffixes("ICON_MASK_", {"CIRCLE", "RECTANGLE", "LEFT", "TOP"}) +
           withSuffixes("ICON_EFFECT_", {"COLOR", "BW", "NEGATIVE", "MOSAIC"});
}

QStringList barButtons()
{
    return withSuffixes("ICON_FILM_",
                        {"OPEN", "PLAY", "PAUSE", "STOP", "BACKWARD", "FORWARD", "VOLUME"}) +
           withSuffixes("ICON_PHOTO_",
                        {"OPEN", "BACKWARD", "SLIDE", "FORWARD", "THUMBNIL", "TIME"}) +
           QStringList{"ICON_LIVE_RECORDING", "ICON_UNDO",         "ICON_REDO",
                       "ICON_PRESENT",        "ICON_PRESENT_HOLD", "ICON_PRESENT_BLANK",
                       "ICON_RECORD_PAUSE",   "ICON_MORE"};
}

QStringList choiceButtons()
{
    return withSuffixes("ICON_LINE_WIDTH_", {"1", "2", "3", "4"}) +
           withSuffixes("ICON_LINE_COLOR_", {"BLACK", "RED", "YELLOW", "SKY"}) +
           withSuffixes("ICON_FILL_COLOR_", {"BLACK", "RED", "YELLOW", "SKY", "WHITE", "NONE"});
}

QStringList popUpTools()
{
    return withSuffixes("ICON_MASK_SUB_", {"CIRCLE", "RECTANGLE", "LEFT", "TOP"}) +
           withSuffixes("ICON_EFFECT_SUB_", {"COLOR", "BW", "NEGATIVE", "MOSAIC"});
}

QStringList skinNames()
{
    return panelTools() + barButtons() + choiceButtons() + popUpTools() +
           QStringList{"MAIN_BUTTON",       "MAIN_BUTTON_LONG", "AboutButton",
                       "BUTTON_SIDE_CLOSE", "BUTTON_SIDE_OPEN", "TOOL_TITLE_OPEN",
                       "TOOL_TITLE_CLOSE",  "POPUP_BUTTON",     "POPUP_CLOSE"};
}

QStringList plainPaths()
{
    return withSuffixes("Background/",
                        {"MAIN_WINDOWS", "POP_BK_ABOUT_small", "POP_BK_COLOR_1LINE",
                         "POP_BK_COLOR_2LINE", "POP_BK_COLOR_3LINE", "POP_BK_SETTING_MULTILANG",
                         "POP_BK_TOOL", "POP_VOL_BK", "THUMBNIL_BAR", "FILM_CONTROL_BK",
                         "PHOTO_CONTROL_BK", "CARD_BK", "POP_BK_MORE", "FILM_SCROLL_BACKGROUND",
                         "FILM_SCROLL_BAR", "PHOTO_SCROLL_BAR", "TIME_SLIDE_BK_1",
                         "TIME_SLIDE_ADJUSTMENT"}) +
           withSuffixes("Background_Sub/",
                        {"ICON_BK_TOP", "ICON_BK_MID", "ICON_BK_BOT", "VIDEO_FRAME_TOP_LEFT",
                         "VIDEO_FRAME_TOP_LEFT_EXPANDED", "VIDEO_FRAME_TOP_MID",
                         "VIDEO_FRAME_TOP_RIGHT_MAC", "VIDEO_FRAME_MID_LEFT", "VIDEO_FRAME_MID_MID",
                         "VIDEO_FRAME_MID_RIGHT", "VIDEO_FRAME_BOT_LEFT", "VIDEO_FRAME_BOT_MID",
                         "VIDEO_FRAME_BOT_RIGHT"}) +
           withSuffixes("OSD/OSD_MASK_", {"", "CIRCLE", "RECTANGLE", "LEFT", "TOP"}) +
           withSuffixes("OSD/OSD_COLOR_", {"COLOR", "BW", "NEGATIVE", "MOSAIC"}) +
           withSuffixes("OSD/OSD_BRIGHTNESS_",
                        {"BAR", "BAR_CENTER", "BK_LONG", "BK_SHORT", "BK_MIN", "BK_MAX"}) +
           withSuffixes("OSD/OSD_", {"ZOOM_IN", "ZOOM_OUT", "ROTATE", "AUTOFOCUS", "FREEZE",
                                     "MACRO", "TIME", "SNAPSHOT"}) +
           QStringList{"settings_select_gray",  "settings_selected",
                       "combo_arrow",           "check_mark",
                       "Background/EMPTY_FILM", "Background/EMPTY_PHOTOGRAPH"};
}

// The start picture is a frame, which counts pixels and not the layout; of the volume slider's
// ground a style sheet cuts the border at 10 of the image's own pixels.
QStringList drawnOnce()
{
    return {"Background/MAIN_WINDOWS", "Background/POP_VOL_BK"};
}

QStringList allPaths()
{
    QStringList paths = plainPaths();
    for (const QString &name : skinNames()) {
        for (const char *state : {"Normal/", "Click/", "Over/"})
            paths << QString(state) + name;
    }
    return paths;
}

bool hasVisiblePixel(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 32)
                return true;
        }
    }
    return false;
}

// Share of the pixels that differ by more than a shade.
double difference(const QImage &one, const QImage &other)
{
    int different = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            const int distance = qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) +
                                 qAbs(qBlue(a) - qBlue(b)) + qAbs(qAlpha(a) - qAlpha(b));
            different += distance > 40 ? 1 : 0;
        }
    }
    return double(different) / (one.width() * one.height());
}

} // namespace

void SkinTest::everyPathOfTheProgramHasAnImage_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &path : allPaths())
        QTest::newRow(qPrintable(path)) << path;
}

void SkinTest::everyPathOfTheProgramHasAnImage()
{
    QFETCH(QString, path);
    const QImage image(":/icons/" + path + ".png");
    QVERIFY2(!image.isNull(), "missing");
    QVERIFY2(hasVisiblePixel(image), "empty");
    // Code that leaves out the suffix gets the same image.
    QCOMPARE(SkinImages::load(":/icons/" + path).size(), image.size());
    QCOMPARE(SkinImages::load(":/icons/" + path + ".png").size(), image.size());
}

void SkinTest::everyImageHasItsCopyAtTwiceTheSize()
{
    for (const QString &path : allPaths()) {
        if (drawnOnce().contains(path))
            continue;
        const QImage twice(":/icons/" + path + "@2x.png");
        QVERIFY2(!twice.isNull(), qPrintable(path));
        QCOMPARE(twice.size(), sizeOf(path) * 2);
    }
}

void SkinTest::everyImageIsNamedByTheProgram()
{
    QStringList known;
    for (const QString &path : allPaths())
        known << ":/icons/" + path + ".png"
              << ":/icons/" + path + "@2x.png";
    QDirIterator files(":/icons", QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    while (files.hasNext()) {
        const QString file = files.next();
        QVERIFY2(known.contains(file), qPrintable(file));
        ++count;
    }
    QCOMPARE(skinNames().size(), 84);
    QCOMPARE(count, known.size() - drawnOnce().size());
}

void SkinTest::statesDifferClearly()
{
    for (const QString &name : skinNames()) {
        const QImage normal(":/icons/Normal/" + name + ".png");
        const QImage over(":/icons/Over/" + name + ".png");
        const QImage click(":/icons/Click/" + name + ".png");
        QCOMPARE(over.size(), normal.size());
        QCOMPARE(click.size(), normal.size());
        QVERIFY2(difference(normal, over) > 0.2, qPrintable(name));
        QVERIFY2(difference(normal, click) > 0.2, qPrintable(name));
        QVERIFY2(difference(over, click) > 0.2, qPrintable(name));
    }
}

void SkinTest::panelFitsTheLowestWindow()
{
    for (const QString &name : panelTools())
        QCOMPARE(buttonSize(name), QSize(65, 47));
    QCOMPARE(buttonSize("TOOL_TITLE_OPEN"), QSize(130, 22));
    QCOMPARE(buttonSize("TOOL_TITLE_CLOSE"), QSize(130, 22));
    // The lowest window is 768 high and the panel 100 less, with margins of 5 above and below.
    QVERIFY(12 * buttonSize("ICON_LINE").height() + 4 * buttonSize("TOOL_TITLE_OPEN").height() <=
            768 - 100 - 10);
    for (const char *part : {"TOP", "MID", "BOT"})
        QCOMPARE(sizeOf(QString("Background_Sub/ICON_BK_") + part).width(), 134);
}

void SkinTest::sizesFitThePositionsOfTheWindow()
{
    // Mode buttons stand 107 apart at y 5; the picture starts at y 25.
    QVERIFY(buttonSize("MAIN_BUTTON").width() <= 107);
    QVERIFY(buttonSize("MAIN_BUTTON").height() <= 20);
    QVERIFY(buttonSize("MAIN_BUTTON_LONG").height() <= 20);
    QVERIFY(361 + 40 + buttonSize("MAIN_BUTTON_LONG").width() <= 800);
    for (const char *name : {"BUTTON_SIDE_OPEN", "BUTTON_SIDE_CLOSE"})
        QVERIFY(buttonSize(name).width() <= 32);
    // Below the picture 55 rows are left under the About button's top, 60 under the bars'.
    QVERIFY(buttonSize("AboutButton").height() <= 55);
    const QSize film = sizeOf("Background/FILM_CONTROL_BK");
    const QSize photograph = sizeOf("Background/PHOTO_CONTROL_BK");
    for (const QString &name : barButtons()) {
        QVERIFY2(buttonSize(name).width() <= 40, qPrintable(name));
        QVERIFY2(buttonSize(name).height() + 5 <= film.height(), qPrintable(name));
    }
    QVERIFY(film.width() >= 300 && film.height() <= 60);
    QVERIFY(photograph.width() >= 260 && photograph.height() <= 60);
    // The picture's margins in the window.
    QVERIFY(sizeOf("Background_Sub/VIDEO_FRAME_MID_LEFT").width() <= 36);
    QVERIFY(sizeOf("Background_Sub/VIDEO_FRAME_MID_RIGHT").width() <= 19);
    QVERIFY(sizeOf("Background_Sub/VIDEO_FRAME_BOT_MID").height() <= 75);
    // The top edge is five rows higher than its 25: those draw the panel's upper end, which starts
    // at y 30, and lie under the picture elsewhere.
    QCOMPARE(sizeOf("Background_Sub/VIDEO_FRAME_TOP_MID").height(), 30);
    QCOMPARE(sizeOf("Background_Sub/VIDEO_FRAME_TOP_LEFT_EXPANDED"), QSize(40 + 134, 30));
    QCOMPARE(sizeOf("Background/FILM_SCROLL_BAR"), QSize(22, 6));
    QCOMPARE(sizeOf("Background/PHOTO_SCROLL_BAR"), QSize(96, 6));
    QCOMPARE(sizeOf("Background/THUMBNIL_BAR").height(), 60);
    QCOMPARE(sizeOf("Background/MAIN_WINDOWS"), QSize(1280, 720));
}

void SkinTest::sizesFitThePositionsOfThePopUps()
{
    for (const QString &name : choiceButtons()) {
        QVERIFY2(buttonSize(name).width() <= 33, qPrintable(name));
        QVERIFY2(buttonSize(name).height() <= 23, qPrintable(name));
    }
    // The row starts at x 152 and has four buttons; the title's close button stands 18 from the
    // right edge, above the rows.
    const int lineWidth = 152 + 3 * 33 + buttonSize("ICON_LINE_WIDTH_1").width();
    QCOMPARE(sizeOf("Background/POP_BK_COLOR_1LINE"), QSize(292, 47));
    QCOMPARE(sizeOf("Background/POP_BK_COLOR_2LINE"), QSize(292, 70));
    QCOMPARE(sizeOf("Background/POP_BK_COLOR_3LINE"), QSize(292, 94));
    QVERIFY(lineWidth <= 292);
    QVERIFY(67 + buttonSize("ICON_FILL_COLOR_NONE").height() <= 94);
    for (const QString &name : popUpTools()) {
        QVERIFY2(buttonSize(name).width() <= 60, qPrintable(name));
        QVERIFY2(18 + buttonSize(name).height() <= sizeOf("Background/POP_BK_TOOL").height(),
                 qPrintable(name));
    }
    QVERIFY(sizeOf("Background/POP_BK_TOOL").width() >= 4 + 4 * 60);
    // About: OK at (90, 70). Settings: two columns of controls beside translated labels.
    const QSize ok = buttonSize("POPUP_BUTTON");
    QVERIFY(sizeOf("Background/POP_BK_ABOUT_small").width() >= 90 + ok.width());
    QVERIFY(sizeOf("Background/POP_BK_ABOUT_small").height() >= 70 + ok.height());
    QCOMPARE(sizeOf("Background/POP_BK_SETTING_MULTILANG"), QSize(370, 306));
    QVERIFY(4 + buttonSize("POPUP_CLOSE").height() <= 18);
    QVERIFY(buttonSize("POPUP_CLOSE").width() <= 18);
}

void SkinTest::sizesFitTheIndications()
{
    // The bottom line stands 50 above the edge, its single icons 45 apart.
    for (const char *name :
         {"MASK_CIRCLE", "MASK_RECTANGLE", "MASK_LEFT", "MASK_TOP", "AUTOFOCUS", "FREEZE", "MACRO"})
        QCOMPARE(sizeOf(QString("OSD/OSD_") + name), QSize(40, 40));
    // The caption stands right of the 38 pixels of the icon: "Negative" is 59 wide.
    for (const char *name : {"COLOR", "BW", "NEGATIVE", "MOSAIC"})
        QVERIFY(sizeOf(QString("OSD/OSD_COLOR_") + name).width() >= 110);
    for (const char *name : {"ZOOM_IN", "ZOOM_OUT", "ROTATE"})
        QCOMPARE(sizeOf(QString("OSD/OSD_") + name), QSize(96, 40));
    QCOMPARE(sizeOf("OSD/OSD_TIME"), QSize(150, 40));
    // The markers stand 5 and 4 from the left of their segments.
    QCOMPARE(sizeOf("OSD/OSD_BRIGHTNESS_BK_SHORT").width(),
             5 * 2 + sizeOf("OSD/OSD_BRIGHTNESS_BAR").width());
    QCOMPARE(sizeOf("OSD/OSD_BRIGHTNESS_BK_LONG").width(),
             4 * 2 + sizeOf("OSD/OSD_BRIGHTNESS_BAR_CENTER").width());
    QCOMPARE(sizeOf("OSD/OSD_BRIGHTNESS_BK_MIN").height(), 40);
    QCOMPARE(sizeOf("OSD/OSD_BRIGHTNESS_BK_MAX").height(), 40);
}

void SkinTest::tableAndPaletteReportFaults()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("table.ini");
    const auto write = [&path](const QByteArray &text) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    QString error;
    QVERIFY(SkinTable::readTable(folder.filePath("none.ini"), &error).isEmpty());
    QVERIFY(!error.isEmpty());
    error.clear();
    write("[states]\nA = 3x4 panel\nB = 3 panel\n");
    QVERIFY(SkinTable::readTable(path, &error).isEmpty());
    QVERIFY2(error.contains(":3:"), qPrintable(error));
    error.clear();
    write("; a comment\n[OSD]\nA = 3x4 picture once\n");
    const QList<SkinImage> images = SkinTable::readTable(path, &error);
    QCOMPARE(images.size(), 1);
    QCOMPARE(images[0].size, QSize(3, 4));
    QCOMPARE(images[0].targets(), QStringList{"OSD/A.png"});
    QVERIFY(!images[0].twice);
    QCOMPARE(SkinTable::substitute("a @b@ c", {{"b", "x"}}, &error), QByteArray("a x c"));
    QVERIFY(error.isEmpty());
    QVERIFY(SkinTable::substitute("a @d@ c", {{"b", "x"}}, &error).isEmpty());
    QVERIFY(error.contains("@d@"));
}

QTEST_MAIN(SkinTest)
#include "tst_skin.moc"
