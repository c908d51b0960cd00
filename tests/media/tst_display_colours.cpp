#include "sources/film/DisplayColours.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <array>

using Primaries = DisplayColours::Primaries;
using Transfer = DisplayColours::Transfer;
using Colour = std::array<int, 3>;

namespace
{

Colour shown(Primaries primaries, Transfer transfer, Colour colour)
{
    std::uint8_t bytes[3];
    for (std::size_t i = 0; i < 3; ++i)
        bytes[i] = static_cast<std::uint8_t>(colour[i]);
    DisplayColours(primaries, transfer).row(bytes, 1);
    return {bytes[0], bytes[1], bytes[2]};
}

} // namespace

class DisplayColoursTest : public QObject
{
    Q_OBJECT

private slots:
    void thisScreensColoursStay()
    {
        QVERIFY(DisplayColours(Primaries::Bt709, Transfer::Usual).changesNothing());
        QVERIFY(!DisplayColours(Primaries::Bt2020, Transfer::Usual).changesNothing());
        QVERIFY(!DisplayColours(Primaries::Bt709, Transfer::Hlg).changesNothing());
        for (int value = 0; value < 256; ++value) {
            const Colour is =
                shown(Primaries::Bt709, Transfer::Usual, {value, 255 - value, value / 2});
            QVERIFY(std::abs(is[0] - value) <= 1 && std::abs(is[1] - (255 - value)) <= 1 &&
                    std::abs(is[2] - value / 2) <= 1);
        }
    }

    void greysStayGreyOnEveryScreen_data()
    {
        QTest::addColumn<int>("primaries");
        for (const Primaries each :
             {Primaries::Bt601Lines625, Primaries::Bt601Lines525, Primaries::Bt2020})
            QTest::addRow("%d", int(each)) << int(each);
    }

    void greysStayGreyOnEveryScreen()
    {
        QFETCH(int, primaries);
        for (int value = 0; value < 256; ++value) {
            for (const int channel :
                 shown(Primaries(primaries), Transfer::Usual, {value, value, value}))
                QVERIFY(std::abs(channel - value) <= 1);
        }
    }

    void coloursOfAWiderScreenAreMoreThanTheyRead()
    {
        // A red of BT.2020 is stronger than this screen's.
        const Colour red = shown(Primaries::Bt2020, Transfer::Usual, {200, 40, 40});
        QVERIFY(red[0] > 235 && red[1] == 0 && red[2] < 25);
    }

    void lightOfHighRangeIsNeitherPaleNorClipped_data()
    {
        QTest::addColumn<int>("transfer");
        QTest::addColumn<int>("white"); // of a page, BT.2408
        QTest::newRow("PQ") << int(Transfer::Pq) << 148;
        QTest::newRow("HLG") << int(Transfer::Hlg) << 191;
    }

    void lightOfHighRangeIsNeitherPaleNorClipped()
    {
        QFETCH(int, transfer);
        QFETCH(int, white);
        const auto grey = [transfer](int value) {
            return shown(Primaries::Bt2020, Transfer(transfer), {value, value, value});
        };
        QCOMPARE(grey(0), (Colour{0, 0, 0}));
        QVERIFY(grey(white)[0] > 215 && grey(white)[0] < 245);
        // Brighter and brighter, up to the brightest of 1000 nits, which is this screen's white.
        const int brightest = transfer == int(Transfer::Pq) ? 192 : 255;
        int last = -1;
        for (int value = 0; value <= brightest; ++value) {
            const int is = grey(value)[0];
            QVERIFY(is >= last);
            last = is;
        }
        QVERIFY(grey(brightest - 20)[0] < 255);
        QVERIFY(last >= 253);
    }
};

REGISTER_CORE_TEST(DisplayColoursTest)
#include "tst_display_colours.moc"
