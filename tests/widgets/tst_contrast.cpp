#include "resources/Skin.h"
#include "tests/TestProgram.h"
#include "tests/widgets/Contrast.h"
#include "tools/skinrender/SkinTable.h"

#include <QHash>
#include <QPainter>
#include <QTest>
#include <QtMath>

#include <cmath>

namespace
{

/// The least contrast of letters and small signs, and of signs of 24 pixels and more.
constexpr double SMALL = 4.5;
constexpr double LARGE = 3.0;
/// Of the copy at twice the size; fewer pixels of a colour are no sign.
constexpr int LEAST_PIXELS = 12;

QImage onGround(const QString &path, const QColor &ground)
{
    QImage image(":/icons/" + path + "@2x.png");
    // Its name makes the reader say that it has two pixels in one.
    image.setDevicePixelRatio(1.0);
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(ground);
    QPainter painter(&result);
    painter.drawImage(0, 0, image);
    return result;
}

struct Colours {
    /// The most frequent one.
    QColor face;
    /// The one that stands apart from it most.
    double bestContrast = 1.0;
};

Colours coloursOf(const QImage &image)
{
    QHash<QRgb, int> count;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++count[image.pixel(x, y)];
    }
    Colours colours;
    int most = 0;
    for (auto it = count.cbegin(); it != count.cend(); ++it) {
        if (it.value() > most) {
            most = it.value();
            colours.face = QColor(it.key());
        }
    }
    for (auto it = count.cbegin(); it != count.cend(); ++it) {
        if (it.value() >= LEAST_PIXELS)
            colours.bestContrast =
                std::max(colours.bestContrast, Contrast::of(colours.face, QColor(it.key())));
    }
    return colours;
}

/// The size of the rectangle around those pixels within `area` that differ from the ground and that
/// `counts` accepts.
template <class Counts>
QSize extentOf(const QImage &image, const QRect &area, const Counts &counts, const QColor &ground)
{
    QRect reached;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour != ground && counts(colour))
                reached |= QRect(x, y, 1, 1);
        }
    }
    return reached.size();
}

QList<QColor> groundsOf(const SkinImage &image)
{
    if (image.ground == "picture")
        return {Qt::white, Qt::black};
    // The pill of an indication over white paper; over anything else it is darker.
    if (image.ground == "pill")
        return {QColor(77, 77, 77)};
    if (image.ground == "popup")
        return {QColor(0x15181B)};
    return {image.ground == "frame" ? QColor(0x22262B) : QColor(0x2B3036)};
}

QList<SkinImage> table()
{
    QString error;
    return SkinTable::readTable(TEST_SOURCE_DIR "/../../resources/skin/skin.ini", &error);
}

} // namespace

/// Whether what the skin shows can be told from its ground, measured on the pictures themselves.
class ContrastTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initialiseSkin(); }
    void everySignStandsOut_data();
    void everySignStandsOut();
    void captionsCanBeRead();
    void stripsAndTabsStandOut();
    void indicationsAreSeenFromTheLastRow_data();
    void indicationsAreSeenFromTheLastRow();
};

void ContrastTest::everySignStandsOut_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<double>("least");
    for (const SkinImage &image : table()) {
        const bool isCaptioned =
            image.name.startsWith("MAIN_BUTTON") || image.name == "POPUP_BUTTON";
        if (!image.twice || isCaptioned || image.section.startsWith("Background"))
            continue;
        // The colours of ink are what they are, and areas rather than signs.
        const bool isSample = image.name.contains("_COLOR_") && image.ground == "popup";
        const bool isLarge = image.size.height() >= 40 && image.size.width() >= 40;
        const double least = isLarge || isSample ? LARGE : SMALL;
        for (const QString &target : image.targets()) {
            for (const QColor &ground : groundsOf(image)) {
                const QString path = target.chopped(4);
                QTest::newRow(qPrintable(path + " on " + ground.name())) << path << ground << least;
            }
        }
    }
}

void ContrastTest::everySignStandsOut()
{
    QFETCH(QString, path);
    QFETCH(QColor, ground);
    QFETCH(double, least);
    const QImage image = onGround(path, ground);
    QVERIFY(!image.isNull());
    double best = coloursOf(image).bestContrast;
    // The marker of a scale is all sign.
    best = std::max(best, Contrast::of(coloursOf(image).face, ground));
    QVERIFY2(best >= least, qPrintable(QString::number(best)));
}

void ContrastTest::captionsCanBeRead()
{
    for (const char *state : {"Normal/", "Over/", "Click/"}) {
        for (const char *name : {"MAIN_BUTTON", "MAIN_BUTTON_LONG", "TOOL_TITLE_OPEN"}) {
            const QColor face = coloursOf(onGround(QString(state) + name, 0x22262B)).face;
            QVERIFY2(Contrast::of(face, Qt::white) >= SMALL, name);
        }
        const QColor push = coloursOf(onGround(QString(state) + "POPUP_BUTTON", 0x15181B)).face;
        QVERIFY(Contrast::of(push, Qt::black) >= SMALL);
    }
    // The gray letters of the pop-ups' style sheets, and those of the record time on its pill.
    QVERIFY(Contrast::of(Qt::gray, QColor(0x15181B)) >= SMALL);
    const QColor pill = coloursOf(onGround("OSD/OSD_TIME", Qt::white)).face;
    QVERIFY(Contrast::of(pill, Qt::red) >= SMALL);
    for (const char *name : {"OSD/OSD_ZOOM_IN", "OSD/OSD_COLOR_COLOR", "OSD/OSD_ROTATE"}) {
        const QColor ground = coloursOf(onGround(name, Qt::white)).face;
        QVERIFY2(Contrast::of(ground, Qt::white) >= SMALL, name);
    }
}

void ContrastTest::stripsAndTabsStandOut()
{
    const QImage strip = onGround("Background/FILM_SCROLL_BACKGROUND", 0x22262B);
    const QColor ground = strip.pixelColor(32, 18);
    const QColor groove = strip.pixelColor(32, 5);
    QVERIFY(Contrast::of(groove, ground) >= LARGE);
    for (const char *name : {"FILM_SCROLL_BAR", "PHOTO_SCROLL_BAR"}) {
        const QImage handle = onGround(QString("Background/") + name, ground);
        QVERIFY(Contrast::of(handle.pixelColor(handle.rect().center()), groove) >= LARGE);
    }
    // The middle of a tab's upper edge, between the frame above it and its face.
    const QImage tab = onGround("Normal/MAIN_BUTTON", 0x22262B);
    double edge = 0.0;
    for (int y = 0; y < 8; ++y)
        edge = std::max(edge, Contrast::of(tab.pixelColor(105, y), 0x22262B));
    QVERIFY2(edge >= 2.5, qPrintable(QString::number(edge)));
}

void ContrastTest::indicationsAreSeenFromTheLastRow_data()
{
    // How many pixels across the projector may have for the sign alone to be seen; with 1920 the
    // plate under it is.
    QTest::addColumn<int>("pixelsAcross");
    // What stays, and what says that a picture was saved, is seen on every projector.
    for (const char *name : {"FREEZE", "MACRO", "SNAPSHOT"})
        QTest::newRow(name) << 1920;
    for (const char *name : {"AUTOFOCUS", "MASK_", "MASK_CIRCLE", "MASK_RECTANGLE", "MASK_LEFT",
                             "MASK_TOP", "COLOR_COLOR", "COLOR_BW", "COLOR_NEGATIVE",
                             "COLOR_MOSAIC", "ZOOM_IN", "ZOOM_OUT", "ROTATE"})
        QTest::newRow(name) << 1280;
}

// A projection 2 m wide, looked at from 8 m.
void ContrastTest::indicationsAreSeenFromTheLastRow()
{
    QFETCH(int, pixelsAcross);
    const QString path = QString("OSD/OSD_") + QTest::currentDataTag();
    constexpr double WIDTH_MM = 2000.0;
    constexpr double DISTANCE_MM = 8000.0;
    constexpr double NEEDED_MINUTES = 15.0;
    const auto minutesOf = [](double pixels, int across) {
        const double millimetres = pixels * WIDTH_MM / across;
        return qRadiansToDegrees(std::atan(millimetres / DISTANCE_MM)) * 60.0;
    };
    const QImage image = onGround(path, Qt::white);
    // A caption stands right of this.
    const int width = image.width() > 2 * 64 ? 2 * 40 : image.width();
    const QRect sign(0, 0, width, image.height());
    // On black the plate is no lighter than the ground.
    const QSize ink = extentOf(
        onGround(path, Qt::black), sign,
        [](const QColor &colour) { return colour.lightness() > 128; }, Qt::black);
    const QSize plate = extentOf(
        image, sign, [](const QColor &) { return true; }, Qt::white);
    const double inkPixels = std::max(ink.width(), ink.height()) / 2.0;
    const double platePixels = std::max(plate.width(), plate.height()) / 2.0;
    QVERIFY2(minutesOf(inkPixels, pixelsAcross) >= NEEDED_MINUTES,
             qPrintable(QString::number(minutesOf(inkPixels, pixelsAcross))));
    QVERIFY2(minutesOf(platePixels, 1920) >= NEEDED_MINUTES,
             qPrintable(QString::number(minutesOf(platePixels, 1920))));
}

REGISTER_TEST(ContrastTest)
#include "tst_contrast.moc"
