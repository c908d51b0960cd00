#include "tests/resources/Catalogue.h"

#include <QtTest>

#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>

#include <algorithm>

namespace
{

/// Where a text must fit: its font and the pixels that its picture leaves for it.
struct Place {
    const char *key;
    int points;
    int pixels;
    int width;
};

const Place PLACES[] = {
    // Mode buttons, 4 pixels free on each side.
    {"MainWindow/Live", 11, 0, 97},
    {"MainWindow/Film", 11, 0, 97},
    {"MainWindow/Photograph", 11, 0, 97},
    {"MainWindow/Drawing Board", 11, 0, 152},
    // The tabs of the pages, alike.
    {"MoreToolWindow/Camera", 10, 0, 97},
    {"MoreToolWindow/Recording", 10, 0, 97},
    {"MoreToolWindow/Keys", 10, 0, 97},
    // Group titles stand in the middle of 130, the sign of the fold on the right.
    {"MainWindow/Noting", 10, 0, 86},
    {"MainWindow/Assisting", 10, 0, 86},
    {"MainWindow/Adjustment", 10, 0, 86},
    {"MainWindow/Recording", 10, 0, 86},
    // Row labels of the colour windows, left of their buttons.
    {"MainWindow/Line Width", 0, 15, 140},
    {"MainWindow/Line Color", 0, 15, 140},
    {"MainWindow/Width", 0, 15, 140},
    {"MainWindow/Fill Color", 0, 15, 108},
    {"TextToolWindow/Color", 0, 15, 118},
    // Labels and buttons of the settings.
    {"SettingsToolWindow/Source", 0, 14, 122},
    {"SettingsToolWindow/Resolution", 0, 14, 122},
    {"SettingsToolWindow/Recording", 0, 14, 122},
    {"SettingsToolWindow/Capture", 0, 14, 122},
    {"SettingsToolWindow/Time", 0, 14, 122},
    {"SettingsToolWindow/Save as", 0, 14, 122},
    {"SettingsToolWindow/RecordingSave", 0, 14, 122},
    {"SettingsToolWindow/Browse", 10, 0, 70},
    {"SettingsToolWindow/OK", 10, 0, 70},
    {"SettingsToolWindow/Cancel", 10, 0, 70},
    // The field and the boxes of the settings: 132 less their frame, the boxes' sign and margins.
    {"SettingsToolWindow/Document Camera", 0, 13, 122},
    {"SettingsToolWindow/Single", 0, 13, 98},
    {"SettingsToolWindow/Continuous", 0, 13, 98},
    {"SettingsToolWindow/FHD 1920 x 1080", 0, 13, 104},
    {"AboutToolWindow/Version 1.00", 0, 14, 220},
    {"AboutToolWindow/OK", 10, 0, 70},
    // Captions of the indications, right of their icon.
    {"EffectToolWindow/Color", 11, 0, 72},
    {"EffectToolWindow/B & W", 11, 0, 72},
    {"EffectToolWindow/Negative", 11, 0, 72},
    {"EffectToolWindow/Mosaic", 11, 0, 72},
    {"OSDProcessor/Best fit", 11, 0, 58},
    // Titles of the pop-ups end before the close button, 18 from the right edge.
    {"QObject/Line", 0, 14, 262},
    {"QObject/Rectangle", 0, 14, 262},
    {"QObject/Freehand", 0, 14, 262},
    {"QObject/Circle", 0, 14, 262},
    {"QObject/Arrow", 0, 14, 262},
    {"QObject/Triangle", 0, 14, 262},
    {"QObject/Eraser", 0, 14, 262},
    {"MainWindow/Background Color", 0, 14, 262},
    {"TextToolWindow/Text", 0, 14, 262},
    {"EffectToolWindow/Color Effect", 0, 14, 216},
    {"MaskToolWindow/Effect", 0, 14, 216},
    {"SettingsToolWindow/Setting", 0, 14, 340},
    {"AboutToolWindow/About", 0, 14, 226},
};

} // namespace

/// Every text of every language fits the place that the window has for it.
class CaptionPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    /// The numbers under the ticks of the slider are 5 pixels a digit and a space, 33 of them; the
    /// word after them has the rest of 200.
    void theNumbersOfTheSliderStandAndTheirWordFits()
    {
        const QString source = "1     2     5    10    15    30  sec.";
        constexpr int CELLS = 33;
        QFont font("Arial");
        font.setPixelSize(9);
        for (const QString &file : catalogueFiles()) {
            for (const Message &message : readCatalogue(file)) {
                if (message.source != source)
                    continue;
                QCOMPARE(message.translation.left(CELLS), source.left(CELLS));
                const QString word = message.translation.mid(CELLS);
                QVERIFY(!word.isEmpty());
                QVERIFY2(QFontMetricsF(font).horizontalAdvance(word) <= 200 - 5 * CELLS,
                         qPrintable(file + ": " + word));
            }
        }
    }

    void everyCaptionFitsItsPlace_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString &file : catalogueFiles())
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void everyCaptionFitsItsPlace()
    {
        QFETCH(QString, file);
        QStringList tooWide;
        const QVector<Message> messages = readCatalogue(file);
        for (const Place &place : PLACES) {
            const auto found =
                std::find_if(messages.begin(), messages.end(),
                             [&](const Message &message) { return message.key() == place.key; });
            QVERIFY2(found != messages.end(), place.key);
            QFont font("Arial");
            if (place.points)
                font.setPointSize(place.points);
            else
                font.setPixelSize(place.pixels);
            const double width = QFontMetricsF(font).horizontalAdvance(found->translation);
            if (width > place.width)
                tooWide.append(QString("%1: %2 is %3 wide, %4 fit")
                                   .arg(place.key, found->translation)
                                   .arg(width)
                                   .arg(place.width));
        }
        QVERIFY2(tooWide.isEmpty(), qPrintable(tooWide.join("\n")));
    }
};

// Not by the macro of the test library, which takes every display for one of 96 dpi.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    CaptionPlacesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_caption_places.moc"
