#include "sources/FilmSource.h"
#include "sources/film/FilmFile.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/HangingFolder.h"
#include "tests/fakes/PulledDisk.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <sys/stat.h>

Q_DECLARE_METATYPE(HangingFolder::Calls)

namespace
{

constexpr int TOLD_WITHIN_MS = 5000;

} // namespace

/// Films on a disk that does not answer, over the real player.
class FilmDisksTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_healthy;
    QTemporaryDir m_dead;
    QString m_film;
    QString m_deadFilm;
    RecordingSink m_sink;
    std::unique_ptr<FilmSource> m_source;
    std::unique_ptr<HangingFolder> m_disk;
    QVector<FilmFault> m_faults;

    /// Opens a film on the dead disk, and returns when it does not answer.
    void openTheDeadFilm(HangingFolder::Calls calls)
    {
        m_disk = std::make_unique<HangingFolder>(m_dead.path(), calls);
        m_source->setFile(m_deadFilm);
        QTRY_COMPARE_WITH_TIMEOUT(m_disk->waiting(), 1, TIMEOUT_MS);
    }

    static void addCalls()
    {
        QTest::addColumn<HangingFolder::Calls>("calls");
        QTest::newRow("no answer at all") << HangingFolder::Everything;
        QTest::newRow("the file is there and does not open") << HangingFolder::Opening;
    }

private slots:
    void initTestCase()
    {
        m_film = m_healthy.filePath("film.mp4");
        m_deadFilm = m_dead.filePath("film.mp4");
        TestFilm made;
        made.seconds = 1;
        QVERIFY(made.write(m_film));
        QVERIFY(QFile::copy(m_film, m_deadFilm));
        m_sink.readNumber = TestFilm::numberIn;
    }

    void init()
    {
        m_source = std::make_unique<FilmSource>(&m_sink, nullptr);
        m_faults.clear();
        connect(m_source.get(), &FilmSource::faulty, this,
                [this](FilmFault fault) { m_faults.append(fault); });
        m_sink.forget();
        m_sink.takeRefreshes();
    }

    void cleanup()
    {
        m_source.reset();
        m_disk.reset();
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }

    void aDiskThatDoesNotAnswerIsSaid_data() { addCalls(); }
    void aDiskThatDoesNotAnswerIsSaid()
    {
        QFETCH(HangingFolder::Calls, calls);
        QElapsedTimer clock;
        clock.start();
        openTheDeadFilm(calls);
        QTRY_VERIFY_WITH_TIMEOUT(!m_faults.isEmpty(), TIMEOUT_MS);
        QVERIFY2(clock.elapsed() < TOLD_WITHIN_MS, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(m_faults, QVector<FilmFault>{FilmFault::NotAnswering});
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QVERIFY(!m_source->moving());
        // The next film has its sound, as nothing is known against that.
        m_source->setFile(m_film);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
        QCOMPARE(m_faults.size(), 1);
        QCOMPARE(m_disk->waiting(), 1);
    }

    void theNextFilmDoesNotWaitForIt_data() { addCalls(); }
    void theNextFilmDoesNotWaitForIt()
    {
        QFETCH(HangingFolder::Calls, calls);
        openTheDeadFilm(calls);
        QElapsedTimer clock;
        clock.start();
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 0, TIMEOUT_MS);
        QVERIFY2(clock.elapsed() < 2500, qPrintable(QString::number(clock.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
        QCOMPARE(m_faults, QVector<FilmFault>());
        QCOMPARE(m_disk->waiting(), 1);
        // A disk that is back is used again.
        m_disk.reset();
        m_sink.forget();
        m_source->setFile(m_deadFilm);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
    }

    void theEndDoesNotWaitForIt()
    {
        openTheDeadFilm(HangingFolder::Everything);
        QElapsedTimer clock;
        clock.start();
        m_source.reset();
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    }

    void aStickThatIsPulledWhileAFilmPlaysIsSaid()
    {
        TestFilm made;
        made.seconds = 20;
        made.size = QSize(640, 480);
        made.video = QStringList{"-c:v", "mjpeg", "-q:v", "2"};
        QVERIFY(made.write(m_dead.filePath("long.avi")));
        m_source->setFile(m_dead.filePath("long.avi"));
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 5, TIMEOUT_MS);
        const PulledDisk pulled(m_dead.path());
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(m_faults, QVector<FilmFault>{FilmFault::BrokenOff});
        // Its last picture stands.
        QVERIFY(m_sink.lastNumber() > 0 && m_sink.lastNumber() < 599);
        QVERIFY(!m_source->moving());
        m_sink.forget();
        m_source->setFile(m_film);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 29, TIMEOUT_MS);
        QCOMPARE(m_faults.size(), 1);
    }

    void onlyARegularFileIsRead()
    {
        const QString pipe = m_healthy.filePath("pipe.mp4");
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        const QString link = m_healthy.filePath("link.mp4");
        QVERIFY(QFile::link(pipe, link));
        const QString empty = m_healthy.filePath("empty.mp4");
        QVERIFY(QFile(empty).open(QIODevice::WriteOnly));
        QVERIFY(FilmFile::isReadable(m_film));
        QVERIFY(FilmFile::isReadable(empty));
        for (const QString &path : {pipe, link, m_healthy.path(), QString("/dev/zero"), QString(),
                                    QString("/proc/self/mem"), m_healthy.filePath("none")})
            QVERIFY2(!FilmFile::isReadable(path), qPrintable(path));
    }
};

REGISTER_CORE_TEST(FilmDisksTest)
#include "tst_film_disks.moc"
