#include "tests/TestProgram.h"
#include "tests/media/PlayedFilmTest.h"

#include <QTransform>

/// Whole films that are unlike most: very long or short, without a length, a picture or an even
/// rate.
class OddFilmsTest : public PlayedFilmTest
{
    Q_OBJECT

private slots:
    void aFilmOfTenHours()
    {
        TestFilm made;
        made.size = QSize(64, 16);
        made.rate = 0.1;
        made.seconds = 36000;
        made.sound.clear();
        QVERIFY(made.write(path("long.mp4")));
        m_source->setFile(path("long.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 0, TIMEOUT_MS);
        m_source->pause();
        m_source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 1800, TIMEOUT_MS);
        QCOMPARE(m_source->currentPosition(), 50);
        m_source->setPosition(99);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 3564, TIMEOUT_MS);
        m_source->play();
        m_source->forward();
        // Three ticks of winding are far less than a percent of ten hours.
        QTest::qWait(300);
        QCOMPARE(m_source->currentPosition(), 99);
        verifyTheNextFilmPlays();
    }

    void aFilmOfUnknownLengthPlays()
    {
        TestFilm made;
        made.seconds = 2;
        made.sound.clear(); // it would move the pictures by a fraction
        made.output = QStringList{"-movflags", "frag_keyframe+empty_moov+default_base_moof"};
        QVERIFY(made.write(path("fragments.mp4")));
        m_source->setFile(path("fragments.mp4"));
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 59, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        // Now the length is known: two seconds, of which the half is the first.
        QCOMPARE(m_source->currentPosition(), 100);
        m_source->pause();
        m_source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 30, TIMEOUT_MS);
        m_source->stop();
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 0, TIMEOUT_MS);
        verifyTheNextFilmPlays();
    }

    void aBareStreamWithoutALengthPlays()
    {
        TestFilm made;
        made.seconds = 1;
        made.sound.clear();
        made.output = QStringList{"-f", "h264"};
        QVERIFY(made.write(path("bare.h264")));
        m_source->setFile(path("bare.h264"));
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        for (const int percent : {50, 100, 0})
            m_source->setPosition(percent);
        m_source->forward();
        m_source->tickEvent();
        m_source->stop();
        m_source->play();
        const int position = m_source->currentPosition();
        QVERIFY(position >= 0 && position <= 100);
        verifyTheNextFilmPlays();
    }

    void aFilmOfOnePictureShowsIt()
    {
        TestFilm made;
        made.seconds = 0.03;
        made.sound.clear();
        QVERIFY(made.write(path("one.mp4")));
        m_source->setFile(path("one.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(m_sink.numbers(), QVector<int>{0});
        m_source->setPosition(100);
        m_source->stop();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 1, TIMEOUT_MS);
        QCOMPARE(m_sink.lastNumber(), 0);
        verifyTheNextFilmPlays();
    }

    void aFilmWithoutPicturesPlaysToItsEnd()
    {
        TestFilm made;
        made.seconds = 1;
        made.video = QStringList{"-vn"};
        QVERIFY(made.write(path("sound.mp4")));
        QVector<FilmFault> faults;
        connect(m_source.get(), &FilmSource::faulty, this,
                [&faults](FilmFault each) { faults.append(each); });
        m_source->setFile(path("sound.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        // Black, in place of the film before.
        QCOMPARE(m_sink.count(), 1);
        QCOMPARE(m_sink.last().pixel(0, 0), qRgb(0, 0, 0));
        QCOMPARE(m_source->currentPosition(), 100);
        QCOMPARE(faults, QVector<FilmFault>{FilmFault::NoPicture});
        verifyTheNextFilmPlays();
    }

    void aTurnedFilmStandsUpright_data()
    {
        QTest::addColumn<int>("turned");
        QTest::addColumn<QSize>("size");
        QTest::newRow("a quarter turn") << 90 << QSize(240, 320);
        QTest::newRow("half a turn") << 180 << QSize(320, 240);
        QTest::newRow("three quarters") << 270 << QSize(240, 320);
    }

    void aTurnedFilmStandsUpright()
    {
        QFETCH(int, turned);
        QFETCH(QSize, size);
        TestFilm made;
        made.seconds = 0.5;
        made.turned = turned;
        QVERIFY(made.write(path("turned.mp4")));
        m_source->setFile(path("turned.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        const QImage upright = m_sink.last();
        QCOMPARE(upright.size(), size);
        // It was turned anticlockwise: after a quarter what stood left stands below.
        QTransform back;
        back.rotate(turned);
        QCOMPARE(TestFilm::numberIn(upright.transformed(back)), 14);
    }

    void aVariableFrameRateKeepsItsTimes()
    {
        TestFilm made;
        made.seconds = 10;
        made.filter = "select='lt(n,150)+not(mod(n,3))'"; // 30, then 10 a second
        made.output = QStringList{"-vsync", "vfr"};
        QVERIFY(made.write(path("variable.mp4")));
        m_source->setFile(path("variable.mp4"));
        m_source->pause();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 0, TIMEOUT_MS);
        for (const auto &[percent, number] :
             {std::pair(10, 30), std::pair(40, 120), std::pair(60, 180), std::pair(90, 270)}) {
            m_source->setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), number, TIMEOUT_MS);
        }
        m_source->play();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.lastNumber() == 297, TIMEOUT_MS);
    }
};

REGISTER_CORE_TEST(OddFilmsTest)
#include "tst_odd_films.moc"
