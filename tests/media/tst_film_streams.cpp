#include "sources/FilmSource.h"
#include "sources/film/TransportStream.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace
{

/// The number in a picture whose bars are all as black or as white as they were drawn; -1 in one
/// that was decoded without the picture that it builds upon.
int numberInClear(const QImage &picture)
{
    constexpr int NEARLY_BLACK = 48;
    constexpr int NEARLY_WHITE = 207;
    for (int bar = 0; bar < 16; ++bar) {
        const int x = (2 * bar + 1) * picture.width() / 32;
        for (int y = picture.height() / 8; y < picture.height(); y += picture.height() / 4) {
            const int grey = qGray(picture.pixel(x, y));
            if (grey > NEARLY_BLACK && grey < NEARLY_WHITE)
                return -1;
        }
    }
    return TestFilm::numberIn(picture);
}

} // namespace

/// Films without an index: streams, as broadcasts and discs have them, and recordings that were cut
/// off.
class FilmStreamsTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// Seconds of 25 pictures each; its path.
    QString transportStream(int seconds)
    {
        QString path = m_folder.filePath(QStringLiteral("%1.ts").arg(seconds));
        TestFilm made;
        made.rate = 25;
        made.seconds = seconds;
        made.sound.clear(); // it would move the pictures by a fraction
        made.video = QStringList{"-c:v", "libx264", "-preset", "fast", "-g", "50", "-bf", "3"};
        return QFile::exists(path) || made.write(path) ? path : QString();
    }

    double secondsOf(const QByteArray &content)
    {
        QFile file(m_folder.filePath("content.ts"));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return -1;
        file.close();
        return TransportStream::seconds(file.fileName());
    }

private slots:
    void windingAnAviFilmWithoutAnIndexShowsWholePictures()
    {
        TestFilm made;
        made.seconds = 20;
        made.sound.clear();
        made.video = QStringList{"-c:v", "mpeg4", "-q:v", "3", "-g", "90"};
        const QString path = m_folder.filePath("cut.avi");
        QVERIFY(made.write(path));
        QVERIFY(TestFilm::removeIndex(path));
        RecordingSink sink;
        sink.readNumber = numberInClear;
        FilmSource source(&sink, nullptr);
        source.setFile(path);
        QTRY_VERIFY_WITH_TIMEOUT(sink.lastNumber() > 3, TIMEOUT_MS);
        for (int i = 0; i < 3; ++i)
            source.forward();
        QTRY_VERIFY_WITH_TIMEOUT(sink.lastNumber() > 400 || sink.refreshing(), TIMEOUT_MS);
        const QVector<int> wound = sink.numbers();
        QVERIFY2(!wound.contains(-1), "a picture was damaged");
        QVERIFY(wound.last() > 400);
        for (int i = 0; i < 10; ++i)
            source.backward();
        QTRY_VERIFY_WITH_TIMEOUT(sink.lastNumber() < wound.last() - 60, TIMEOUT_MS);
        QVERIFY2(!sink.numbers().contains(-1), "a picture was damaged");
        QVERIFY(std::is_sorted(wound.begin(), wound.end()));
    }

    void aSeekInAShortTransportStreamShowsItsPicture_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::newRow("no length in the library") << 4;
        QTest::newRow("places that it guesses wrong") << 10;
    }

    void aSeekInAShortTransportStreamShowsItsPicture()
    {
        QFETCH(int, seconds);
        RecordingSink sink;
        sink.readNumber = TestFilm::numberIn;
        FilmSource source(&sink, nullptr);
        source.setFile(transportStream(seconds));
        source.pause();
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), 0, TIMEOUT_MS);
        for (const int percent : {10, 30, 0, 80, 40, 100, 70}) {
            source.setPosition(percent);
            const int second = percent * seconds / 100;
            QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), second * 25 - (percent == 100 ? 1 : 0),
                                      TIMEOUT_MS);
        }
    }

    void theTimesInAShortTransportStreamTellItsLength()
    {
        QFile whole(transportStream(10));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        const QByteArray plain = whole.readAll();
        QCOMPARE(secondsOf(plain), 10.0);
        const double half = secondsOf(plain.left(plain.size() / 2));
        QVERIFY2(std::fabs(half - 5) < 0.2, qPrintable(QString::number(half)));
        QCOMPARE(secondsOf({}), 0.0);
        QCOMPARE(secondsOf(plain.mid(7)), 0.0);
        QCOMPARE(secondsOf(plain + QByteArray(512 * 1024, 'G')), 0.0);

        QByteArray timed;
        for (int at = 0; at < plain.size(); at += 188)
            timed += "time" + plain.mid(at, 188);
        QCOMPARE(secondsOf(timed), 10.0);

        QByteArray damaged = plain;
        for (int at = 500; at < damaged.size(); at += 1000)
            damaged[at] = '!';
        const double seconds = secondsOf(damaged);
        QVERIFY2(std::fabs(seconds - 10) < 1, qPrintable(QString::number(seconds)));
    }

    void aSeekInAProgramStreamShowsItsPicture_data()
    {
        QTest::addColumn<QString>("picturesToTheNextKeyFrame");
        QTest::newRow("as usual") << "40";
        QTest::newRow("few key frames") << "200";
    }

    void aSeekInAProgramStreamShowsItsPicture()
    {
        QFETCH(QString, picturesToTheNextKeyFrame);
        TestFilm made;
        made.rate = 25;
        made.seconds = 10;
        made.sound.clear(); // it would move the pictures by a fraction
        made.video = QStringList{"-c:v", "mpeg2video", "-q:v", "3", "-g", picturesToTheNextKeyFrame,
                                 "-bf",  "2"};
        const QString path = m_folder.filePath("stream.mpg");
        QVERIFY(made.write(path));
        RecordingSink sink;
        sink.readNumber = TestFilm::numberIn;
        FilmSource source(&sink, nullptr);
        source.setFile(path);
        source.pause();
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), 0, TIMEOUT_MS);
        for (const int percent : {72, 12, 52, 92, 0, 32}) {
            source.setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), percent / 10 * 25, TIMEOUT_MS);
        }
    }
};

REGISTER_CORE_TEST(FilmStreamsTest)
#include "tst_film_streams.moc"
