#include "sources/film/FragmentedFilm.h"
#include "tests/TestProgram.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QFile>
#include <QTemporaryDir>

#include <cmath>

class FragmentedFilmTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString made(const QString &name, double seconds, const QString &flags)
    {
        TestFilm film;
        film.seconds = seconds;
        film.output = QStringList{"-movflags", flags};
        const QString path = m_folder.filePath(name);
        return film.write(path) ? path : QString();
    }

private slots:
    void theFragmentsAddUpToTheLength_data()
    {
        QTest::addColumn<QString>("flags");
        QTest::newRow("each key frame") << "frag_keyframe+empty_moov+default_base_moof";
        QTest::newRow("the first pictures in the header") << "frag_keyframe";
        QTest::newRow("a track each") << "frag_keyframe+empty_moov+separate_moof";
        QTest::newRow("DASH") << "dash";
        QTest::newRow("CMAF") << "cmaf";
    }

    void theFragmentsAddUpToTheLength()
    {
        QFETCH(QString, flags);
        const double seconds = FragmentedFilm::seconds(made("film.mp4", 4, flags));
        QVERIFY2(std::fabs(seconds - 4) < 0.1, qPrintable(QString::number(seconds)));
    }

    void onlyFilmsInFragmentsHaveSuchALength()
    {
        QCOMPARE(FragmentedFilm::seconds(made("whole.mp4", 1, "faststart")), 0.0);
        QCOMPARE(FragmentedFilm::seconds(m_folder.filePath("none.mp4")), 0.0);
        QCOMPARE(FragmentedFilm::seconds(m_folder.path()), 0.0);
    }

    void aTimeThatNoFilmReachesIsNoLength()
    {
        QFile film(made("film.mp4", 2, "frag_keyframe+empty_moov+default_base_moof"));
        QVERIFY(film.open(QIODevice::ReadWrite));
        QByteArray bytes = film.readAll();
        const int time = bytes.lastIndexOf("tfdt");
        QVERIFY(time > 0);
        // In 64 bits, which stand behind the version.
        bytes.replace(time + 4, 12, QByteArray(1, 1) + QByteArray(3, 0) + QByteArray(8, 0x7f));
        QVERIFY(film.seek(0) && film.write(bytes) == bytes.size() && film.flush());
        QCOMPARE(FragmentedFilm::seconds(film.fileName()), 0.0);
    }

    void whatIsCutOffCountsUpToThere()
    {
        QFile film(made("whole.mp4", 4, "frag_keyframe+empty_moov"));
        QVERIFY(film.open(QIODevice::ReadWrite));
        const QByteArray whole = film.readAll();
        for (int bytes = 0; bytes < whole.size(); bytes += 997) {
            QVERIFY(film.resize(0) && film.seek(0) && film.write(whole.left(bytes)) == bytes &&
                    film.flush());
            const double seconds = FragmentedFilm::seconds(film.fileName());
            QVERIFY2(seconds >= 0 && seconds < 4.1, qPrintable(QString::number(seconds)));
        }
    }
};

REGISTER_PLAIN_TEST(FragmentedFilmTest)
#include "tst_fragmented_film.moc"
