#include "tests/TestProgram.h"
#include "tests/media/PlayedFilmTest.h"

#include <QFile>

#include <sys/stat.h>

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeTo(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QImage blackPicture()
{
    QImage black(320, 240, QImage::Format_RGB888);
    black.fill(Qt::black);
    return black;
}

} // namespace

/// What files and people do to a player, over the real one.
class FilmFaultsTest : public PlayedFilmTest
{
    Q_OBJECT

private slots:
    void aFileThatCannotBeOpenedTakesThePictureAwayAndLeavesThePlayer_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<int>("fault");
        for (const char *what : {"missing", "folder", "device", "pipe", "no path", "no reading"})
            QTest::newRow(what) << QString::fromLatin1(what) << int(FilmFault::Unreadable);
        for (const char *what : {"empty", "garbage", "truncated", "picture"})
            QTest::newRow(what) << QString::fromLatin1(what) << int(FilmFault::NoFilm);
        QTest::newRow("codec") << QString("codec") << int(FilmFault::DecoderMissing);
    }

    void aFileThatCannotBeOpenedTakesThePictureAwayAndLeavesThePlayer()
    {
        QFETCH(QString, what);
        QString bad = path(what + ".mp4");
        if (what == "empty") {
            QVERIFY(writeTo(bad, {}));
        } else if (what == "garbage") {
            QByteArray noise(300000, 0);
            for (int i = 0; i < noise.size(); ++i)
                noise[i] = char((i * 7919) ^ (i >> 3));
            QVERIFY(writeTo(bad, noise));
        } else if (what == "truncated") { // its index stood at the end
            QVERIFY(writeTo(bad, contentOf(m_film).chopped(3000)));
        } else if (what == "folder") {
            bad = m_folder.path();
        } else if (what == "device") {
            bad = "/dev/zero";
        } else if (what == "pipe") {
            QCOMPARE(mkfifo(qPrintable(bad), 0600), 0);
        } else if (what == "codec") { // that nobody knows
            TestFilm made;
            made.seconds = 1;
            made.sound.clear();
            QVERIFY(made.write(bad));
            QVERIFY(writeTo(bad, contentOf(bad).replace("avc1", "zzzz")));
        } else if (what == "no path") {
            bad = QString();
        } else if (what == "picture") {
            QVERIFY(writeTo(bad, QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>")));
        } else if (what == "no reading") {
            bad = "/proc/self/mem";
        }

        m_source->setFile(m_film);
        m_source->pause();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 0, TIMEOUT_MS);
        m_sink.forget();
        QFETCH(int, fault);
        QVector<FilmFault> faults;
        connect(m_source.get(), &FilmSource::faulty, this,
                [&faults](FilmFault each) { faults.append(each); });
        QVERIFY(m_source->setFile(bad));
        QVERIFY(!m_sink.refreshing());
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(faults.size(), 1);
        QCOMPARE(int(faults.first()), fault);
        QVERIFY(!m_source->moving());
        QCOMPARE(m_sink.count(), 1);
        QCOMPARE(m_sink.last().size(), QSize(320, 240));
        QVERIFY(m_sink.last() == blackPicture());
        QCOMPARE(m_source->currentPosition(), 0);
        // Every button still answers.
        m_source->setPosition(50);
        m_source->forward();
        m_source->tickEvent();
        m_source->backward();
        m_source->stop();
        m_source->play();
        m_source->pause();
        QCOMPARE(m_source->currentPosition(), 0);
        verifyTheNextFilmPlays();
    }

    /// The media library loses its own error in about every second of these.
    void aFilmWithoutItsIndexIsNoneEveryTime()
    {
        QVERIFY(writeTo(path("cut.mp4"), contentOf(m_film).chopped(3000)));
        QVector<FilmFault> faults;
        connect(m_source.get(), &FilmSource::faulty, this,
                [&faults](FilmFault each) { faults.append(each); });
        for (int i = 0; i < 12; ++i) {
            faults.clear();
            m_source->setFile(path("cut.mp4"));
            QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
            QCOMPARE(faults, QVector<FilmFault>{FilmFault::NoFilm});
        }
        verifyTheNextFilmPlays();
    }

    void aFilmThatBreaksOffPlaysToThereAndSeeksBack()
    {
        TestFilm made;
        made.seconds = 10;
        made.output = QStringList{"-movflags", "faststart"};
        QVERIFY(made.write(path("whole.mp4")));
        const QByteArray whole = contentOf(path("whole.mp4"));
        QVERIFY(writeTo(path("broken.mp4"), whole.left(whole.size() / 2)));
        m_source->setFile(path("broken.mp4"));
        m_source->setPosition(30);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.lastNumber() >= 90, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QVERIFY(m_sink.lastNumber() > 110 && m_sink.lastNumber() < 200);
        m_source->pause();
        m_source->setPosition(90); // beyond what is there
        m_source->setPosition(10);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 30, TIMEOUT_MS);
        m_source->setPosition(90);
        // The player begins this seek, so that the next one finds it under way.
        QTest::qWait(200);
        m_source->setPosition(20);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 60, TIMEOUT_MS);
        verifyTheNextFilmPlays();
    }

    void aDamagedMiddleIsPlayedOver_data()
    {
        QTest::addColumn<QStringList>("video");
        QTest::addColumn<QString>("name");
        QTest::newRow("H.264 mp4")
            << QStringList{"-c:v", "libx264", "-preset", "ultrafast", "-g", "15"} << "damaged.mp4";
        QTest::newRow("Motion-JPEG avi") << QStringList{"-c:v", "mjpeg"} << "damaged.avi";
        QTest::newRow("MPEG-4 avi") << QStringList{"-c:v", "mpeg4", "-g", "15"} << "damaged4.avi";
    }

    void aDamagedMiddleIsPlayedOver()
    {
        QFETCH(QStringList, video);
        QFETCH(QString, name);
        TestFilm made;
        made.seconds = 2;
        made.video = video;
        made.sound.clear();
        QVERIFY(made.write(path(name)));
        QByteArray content = contentOf(path(name));
        for (int i = content.size() * 30 / 100; i < content.size() * 35 / 100; ++i)
            content[i] = char(i * 31);
        QVERIFY(writeTo(path(name), content));
        m_source->setFile(path(name));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(m_sink.lastNumber(), 59);
        m_source->pause();
        m_source->setPosition(100);
        m_source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 30, TIMEOUT_MS);
        verifyTheNextFilmPlays();
    }

    void aFileThatVanishesPlaysOn()
    {
        QVERIFY(QFile::copy(m_film, path("vanishing.mp4")));
        m_source->setFile(path("vanishing.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 2, TIMEOUT_MS);
        QVERIFY(QFile::remove(path("vanishing.mp4")));
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
        verifyTheNextFilmPlays();
    }

    void aFileThatVanishesBeforeItIsReadIsNone()
    {
        for (int i = 0; i < 10; ++i) {
            QVERIFY(QFile::copy(m_film, path("flash.mp4")));
            m_source->setFile(path("flash.mp4"));
            QVERIFY(QFile::remove(path("flash.mp4")));
            m_source->setPosition(50);
        }
        verifyTheNextFilmPlays();
    }

    void aFileThatIsReplacedWhileItPlays_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("by nothing") << QByteArray();
        QTest::newRow("by noise") << QByteArray(400000, 'x');
        QTest::newRow("by another film") << contentOf(m_film);
    }

    void aFileThatIsReplacedWhileItPlays()
    {
        QFETCH(QByteArray, content);
        if (!QFile::exists(path("large.avi"))) {
            TestFilm made;
            made.seconds = 20;
            made.size = QSize(640, 480);
            made.video = QStringList{"-c:v", "mjpeg", "-q:v", "2"};
            QVERIFY(made.write(path("large.avi")));
        }
        QFile::remove(path("replaced.avi"));
        QVERIFY(QFile::copy(path("large.avi"), path("replaced.avi")));
        m_source->setFile(path("replaced.avi"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 2, TIMEOUT_MS);
        QVERIFY(writeTo(path("replaced.avi"), content));
        m_source->setPosition(50);
        m_source->setPosition(90);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        m_source->setPosition(10);
        m_source->play();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        verifyTheNextFilmPlays();
    }
};

REGISTER_CORE_TEST(FilmFaultsTest)
#include "tst_film_faults.moc"
