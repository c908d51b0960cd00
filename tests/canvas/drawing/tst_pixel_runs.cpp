#include "canvas/drawing/PixelRuns.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QRandomGenerator>

#include <vector>

using Words = std::vector<std::uint32_t>;

Q_DECLARE_METATYPE(Words)

namespace
{

/// What the pixels take when they are packed into at most `room` words; 0 when they take more.
std::size_t packed(const Words &pixels, Words &words, std::size_t room)
{
    words.assign(room + 1, 0xDEADBEEFU);
    const std::size_t count = PixelRuns::pack(pixels.data(), pixels.size(), words.data(), room);
    // Nothing is written past the last word.
    return words.back() == 0xDEADBEEFU ? count : room + 1;
}

} // namespace

class PixelRunsTest : public QObject
{
    Q_OBJECT

private slots:
    void comesBackAsItWas_data()
    {
        QTest::addColumn<Words>("pixels");
        QTest::addColumn<int>("words");
        QTest::newRow("one colour") << Words(4096, 7) << 2;
        QTest::newRow("one pixel") << Words{5} << 2;
        QTest::newRow("a short run") << Words{5, 5} << 3;
        QTest::newRow("a run") << Words{5, 5, 5} << 2;
        QTest::newRow("literals before and behind a run") << Words{1, 2, 9, 9, 9, 9, 3} << 7;
        QTest::newRow("two runs") << Words{1, 1, 1, 2, 2, 2, 2} << 4;
        QTest::newRow("pairs") << Words{1, 1, 2, 2, 3, 3} << 7;
    }

    void comesBackAsItWas()
    {
        QFETCH(Words, pixels);
        QFETCH(int, words);
        Words packedWords;
        QCOMPARE(packed(pixels, packedWords, 5000), std::size_t(words));
        Words back(pixels.size(), 0);
        PixelRuns::unpack(packedWords.data(), std::size_t(words), back.data());
        QCOMPARE(back, pixels);
    }

    void anyPixelsComeBackOrDoNotFit()
    {
        QRandomGenerator random(3);
        int fitted = 0;
        for (int i = 0; i < 5000; ++i) {
            Words pixels(std::size_t(random.bounded(1, 300)));
            const int colours = random.bounded(1, 5);
            for (std::uint32_t &pixel : pixels)
                pixel = std::uint32_t(random.bounded(colours));
            const auto room = std::size_t(random.bounded(1, 320));
            Words words;
            const std::size_t count = packed(pixels, words, room);
            QVERIFY(count <= room);
            if (count == 0)
                continue;
            ++fitted;
            Words back(pixels.size(), 99);
            PixelRuns::unpack(words.data(), count, back.data());
            QCOMPARE(back, pixels);
        }
        QVERIFY(fitted > 1000 && fitted < 5000);
    }
};

REGISTER_PLAIN_TEST(PixelRunsTest)
#include "tst_pixel_runs.moc"
