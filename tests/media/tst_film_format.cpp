#include "sources/film/FilmFormat.h"
#include "tests/TestProgram.h"

#include <QtTest>

class FilmFormatTest : public QObject
{
    Q_OBJECT

private slots:
    void picturesAreShownWithSquarePixels_data()
    {
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<int>("aspectWidth");
        QTest::addColumn<int>("aspectHeight");
        QTest::addColumn<QSize>("shown");
        QTest::newRow("square") << QSize(1920, 1080) << 1 << 1 << QSize(1920, 1080);
        QTest::newRow("PAL, wide") << QSize(720, 576) << 64 << 45 << QSize(1024, 576);
        QTest::newRow("PAL") << QSize(720, 576) << 16 << 15 << QSize(768, 576);
        QTest::newRow("HDV") << QSize(1440, 1080) << 4 << 3 << QSize(1920, 1080);
        QTest::newRow("NTSC, which is upright") << QSize(720, 480) << 8 << 9 << QSize(720, 540);
        QTest::newRow("a negative height") << QSize(640, 480) << -1 << 1 << QSize(640, 480);
        QTest::newRow("nothing") << QSize(640, 480) << 0 << 1 << QSize(640, 480);
        QTest::newRow("over nothing") << QSize(640, 480) << 1 << 0 << QSize(640, 480);
        QTest::newRow("nonsense") << QSize(640, 480) << 1000 << 1 << QSize(640, 480);
        QTest::newRow("4K") << QSize(3840, 2160) << 1 << 1 << QSize(3840, 2160);
        QTest::newRow("8K") << QSize(7680, 4320) << 1 << 1 << QSize(3840, 2160);
        QTest::newRow("8K, upright") << QSize(4320, 7680) << 1 << 1 << QSize(2160, 3840);
        QTest::newRow("a long strip") << QSize(16000, 2) << 1 << 1 << QSize(3840, 1);
    }

    void picturesAreShownWithSquarePixels()
    {
        QFETCH(QSize, stored);
        QFETCH(int, aspectWidth);
        QFETCH(int, aspectHeight);
        QTEST(FilmFormat::shownSize(stored, aspectWidth, aspectHeight), "shown");
    }

    void largePicturesAreHighDefinition()
    {
        QVERIFY(!FilmFormat::isHighDefinition({720, 576}));
        QVERIFY(FilmFormat::isHighDefinition({1280, 96}));
        QVERIFY(FilmFormat::isHighDefinition({768, 720}));
    }

    void televisionIsToldByItsLines()
    {
        QCOMPARE(FilmFormat::televisionLines({720, 576}), 625);
        QCOMPARE(FilmFormat::televisionLines({352, 576}), 625);
        QCOMPARE(FilmFormat::televisionLines({640, 480}), 525);
        QCOMPARE(FilmFormat::televisionLines({720, 486}), 525);
        QCOMPARE(FilmFormat::televisionLines({640, 478}), 0);
        QCOMPARE(FilmFormat::televisionLines({1280, 480}), 0);
    }
};

REGISTER_CORE_TEST(FilmFormatTest)
#include "tst_film_format.moc"
