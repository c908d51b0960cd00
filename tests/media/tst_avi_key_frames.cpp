#include "sources/film/AviKeyFrames.h"
#include "tests/TestProgram.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QFile>
#include <QTemporaryDir>

class AviKeyFramesTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// Four seconds, 25 pictures a second, each 20th of which needs no other.
    QString made(const QStringList &video)
    {
        TestFilm film;
        film.seconds = 4;
        film.rate = 25;
        film.video = QStringList(video) << "-g"
                                        << "20";
        film.sound = QStringList{"-c:a", "pcm_s16le"};
        const QString path = m_folder.filePath("film.avi");
        return film.write(path) ? path : QString();
    }

    /// Takes the index away, and some of the end with it.
    static bool cut(const QString &path, int bytes)
    {
        QFile film(path);
        return film.open(QIODevice::ReadWrite) && film.resize(bytes);
    }

    static int indexOf(const QString &path)
    {
        QFile film(path);
        return film.open(QIODevice::ReadOnly) ? film.readAll().lastIndexOf("idx1") : -1;
    }

private slots:
    void theyAreFoundWhereThereIsNoIndex_data()
    {
        QTest::addColumn<QStringList>("video");
        QTest::newRow("MPEG-4") << QStringList{"-c:v", "mpeg4", "-q:v", "3"};
        QTest::newRow("MPEG-4 with B pictures") << QStringList{"-c:v", "mpeg4", "-bf", "2"};
        QTest::newRow("H.264") << QStringList{"-c:v",      "libx264", "-preset",
                                              "ultrafast", "-bf",     "0"};
        QTest::newRow("MPEG-2") << QStringList{"-c:v", "mpeg2video", "-q:v", "3"};
        QTest::newRow("MPEG-4, version 3") << QStringList{"-c:v", "msmpeg4", "-q:v", "3"};
        QTest::newRow("WMV 1") << QStringList{"-c:v", "wmv1", "-q:v", "3"};
    }

    void theyAreFoundWhereThereIsNoIndex()
    {
        QFETCH(QStringList, video);
        const QString path = made(video);
        QVERIFY(AviKeyFrames::nanosecondsOf(path).empty());
        QVERIFY(cut(path, indexOf(path)));
        const std::vector<qint64> found = AviKeyFrames::nanosecondsOf(path);
        QVERIFY(found.size() >= 4 && found.size() <= 6);
        QCOMPARE(found.front(), qint64(0));
        // 20 pictures, or 21 where those between them are sorted in.
        for (std::size_t n = 1; n < found.size(); ++n)
            QVERIFY2(found[n] - found[n - 1] >= 720000000 && found[n] - found[n - 1] <= 840000000,
                     qPrintable(QString::number(found[n])));
    }

    void wherePicturesNeedNoOtherThereIsNothingToFind()
    {
        const QString path = made({"-c:v", "mjpeg"});
        QVERIFY(cut(path, indexOf(path)));
        QVERIFY(AviKeyFrames::nanosecondsOf(path).empty());
        QVERIFY(AviKeyFrames::nanosecondsOf(m_folder.filePath("none.avi")).empty());
        QVERIFY(AviKeyFrames::nanosecondsOf(m_folder.path()).empty());
    }

    void aFilmWithAnIndexOfTheOtherKindIsLeftToTheLibrary()
    {
        const QString path = made({"-c:v", "mpeg4", "-q:v", "3"});
        QVERIFY(cut(path, indexOf(path)));
        QVERIFY(!AviKeyFrames::nanosecondsOf(path).empty());
        QFile film(path);
        QVERIFY(film.open(QIODevice::ReadWrite));
        QByteArray bytes = film.readAll();
        // Behind the description of the pictures stands what was kept free for that index.
        const int place = bytes.indexOf("JUNK", bytes.indexOf("strf"));
        QVERIFY(place > 0 && place < bytes.indexOf("movi"));
        bytes.replace(place, 4, "indx");
        bytes.replace(place + 12, 4, QByteArray::fromHex("01000000")); // one entry
        QVERIFY(film.seek(0) && film.write(bytes) == bytes.size() && film.flush());
        QVERIFY(AviKeyFrames::nanosecondsOf(path).empty());
    }

    void anyCutIsSurvived()
    {
        const QString path = made({"-c:v", "mpeg4", "-q:v", "3"});
        for (int bytes = indexOf(path); bytes >= 0; bytes -= 1999) {
            QVERIFY(cut(path, bytes));
            QVERIFY(AviKeyFrames::nanosecondsOf(path).size() <= 6);
        }
    }
};

REGISTER_PLAIN_TEST(AviKeyFramesTest)
#include "tst_avi_key_frames.moc"
