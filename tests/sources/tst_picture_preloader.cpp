#include "sources/photographs/PicturePreloader.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QTemporaryDir>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace
{

/// The pictures that came later, as their threads told.
class Arrived
{
public:
    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_names.clear();
    }
    void add(const QString &name)
    {
        const std::lock_guard lock(m_mutex);
        m_names.append(name);
    }
    [[nodiscard]] bool contains(const QString &name) const
    {
        const std::lock_guard lock(m_mutex);
        return m_names.contains(name);
    }

private:
    mutable std::mutex m_mutex; ///< Guards m_names.
    QStringList m_names;
};

} // namespace

class PicturePreloaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_arrived.clear();
        m_preloader = std::make_unique<PicturePreloader>(
            [this](const QString &name) { m_arrived.add(name); });
    }

    void cleanup() { m_preloader.reset(); }

    void aPictureIsThereWhenItIsTaken()
    {
        const auto reading = m_preloader->take(made("a.png", 3));
        QCOMPARE(reading.picture.width(), 3);
        QVERIFY(reading.problem == PictureProblem::None);
        QVERIFY(m_preloader->take(path("missing.png")).problem == PictureProblem::Gone);
    }

    void whatWasPreparedIsReadAhead()
    {
        const QString a = made("a.png", 1);
        const QString b = made("b.png", 2);
        m_preloader->prepare({b, a});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(a), TIMEOUT_MS);
        QVERIFY(m_preloader->holds(b));
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(b), 2, TIMEOUT_MS);
        m_preloader->prepare({a});
        QVERIFY(m_preloader->holds(a));
        QVERIFY(!m_preloader->holds(b));
    }

    void aPictureThatChangedIsReadAnew_data()
    {
        QTest::addColumn<bool>("replaced");
        QTest::newRow("written over") << false;
        QTest::newRow("replaced by another file") << true;
    }

    void aPictureThatChangedIsReadAnew()
    {
        QFETCH(bool, replaced);
        const QString a = made("a.png", 1);
        m_preloader->prepare({a});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(a), TIMEOUT_MS);
        if (replaced) {
            const QString b = made("b.png", 7);
            QVERIFY(QFile::remove(a));
            QVERIFY(QFile::rename(b, a));
        } else {
            made("a.png", 7);
        }
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(a), 7, TIMEOUT_MS);
        QVERIFY(QFile::remove(a));
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->take(a).problem == PictureProblem::Gone, TIMEOUT_MS);
        made("a.png", 5);
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(a), 5, TIMEOUT_MS);
    }

    void whatIsKeptIsBounded()
    {
        // Each takes a little more than a third of what may be kept.
        const int side = 5600;
        QStringList paths;
        QImage image(side, side, QImage::Format_Mono);
        image.fill(0);
        for (const char *name : {"a.png", "b.png", "c.png"}) {
            paths.append(path(name));
            QVERIFY(image.save(paths.last()));
        }
        QVERIFY(3 * qint64(side) * side * 3 > PicturePreloader::MAX_KEPT_BYTES);
        m_preloader->prepare(paths);
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(paths[1]), TIMEOUT_MS);
        made("last.png", 1);
        // When this is there, the third one was read and let go.
        m_preloader->prepare({paths[0], paths[1], paths[2], path("last.png")});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(path("last.png")), TIMEOUT_MS);
        QVERIFY(m_preloader->holds(paths[0]));
        QVERIFY(m_preloader->holds(paths[1]));
        QVERIFY(!m_preloader->holds(paths[2]));
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(paths[2]), side, TIMEOUT_MS);
    }

    void nothingIsKeptBesideADecoderThatHoldsMuch()
    {
        const QString shown = made("a.png", 1);
        const QString next = made("b.png", 2);
        m_preloader->prepare({next, shown});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(next) && m_preloader->holds(shown), TIMEOUT_MS);
        {
            const DecodingTurn small({0, 50LL * 1024 * 1024});
            QVERIFY(m_preloader->holds(next) && m_preloader->holds(shown));
        }
        {
            const DecodingTurn large({0, 300LL * 1024 * 1024});
            QVERIFY(!m_preloader->holds(next) && !m_preloader->holds(shown));
            m_preloader->prepare({next});
            // Whoever waits does not wait for that decoder.
            QTRY_COMPARE_WITH_TIMEOUT(widthOf(shown), 1, TIMEOUT_MS);
            QVERIFY(!m_preloader->holds(next));
            m_preloader->prepare({next, shown});
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(next) && m_preloader->holds(shown), TIMEOUT_MS);
    }

    void oneLargePictureIsDecodedAtATime()
    {
        const PictureNeed large{200LL * 1024 * 1024, 0};
        auto first = std::make_unique<DecodingTurn>(large);
        std::atomic<bool> has{false};
        std::thread other([&] {
            const DecodingTurn second(large);
            has = true;
        });
        first->noteProgress(true);
        {
            const DecodingTurn small({1, 0});
        }
        // Time for the other thread to get past its turn, which it must not.
        QTest::qWait(50);
        QVERIFY(!has);
        first.reset();
        other.join();
        QVERIFY(has);
    }

    void aSlowDriveKeepsItsTurnAndASilentOneLosesIt()
    {
        using Clock = std::chrono::steady_clock;
        constexpr std::chrono::milliseconds SILENCE(300);
        const PictureNeed large{200LL * 1024 * 1024, 0};
        DecodingTurn first(large);
        std::atomic<bool> has{false};
        Clock::time_point when;
        std::thread other([&] {
            const DecodingTurn second(large, SILENCE);
            when = Clock::now();
            has = true;
        });
        const Clock::time_point begin = Clock::now();
        Clock::time_point lastSign = begin;
        while (!has && Clock::now() < begin + 3 * SILENCE) {
            first.noteProgress(false);
            lastSign = Clock::now();
            // The drive sends something now and then.
            QTest::qWait(10);
        }
        other.join();
        QVERIFY(when - lastSign > SILENCE / 2);
    }

    void aSilentDriveHoldsNobodyAndItsPictureComesLater()
    {
        const QString silent = made("silent.png", 4);
        const QString fine = made("fine.png", 2);
        std::optional<HangingFolder> hanging(std::in_place, silent, HangingFolder::Opening);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(m_preloader->take(silent).problem == PictureProblem::NoAnswer);
        QVERIFY(clock.elapsed() < 10000);
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(fine), 2, TIMEOUT_MS);
        QVERIFY(!m_arrived.contains(silent));
        hanging.reset();
        QTRY_VERIFY_WITH_TIMEOUT(m_arrived.contains(silent), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(silent), 4, TIMEOUT_MS);
    }

    void aRequestDoesNotWaitAndTellsWhenItsPictureHasCome()
    {
        const QString slow = made("slow.png", 4);
        std::optional<HangingFolder> hanging(std::in_place, slow, HangingFolder::Opening);
        QVERIFY(!m_preloader->request(slow));
        QTRY_COMPARE(hanging->waiting(), 1);
        QVERIFY(!m_arrived.contains(slow));
        hanging.reset();
        QTRY_VERIFY_WITH_TIMEOUT(m_arrived.contains(slow), TIMEOUT_MS);
        QVERIFY(m_preloader->request(slow));
        QCOMPARE(m_preloader->take(slow).picture.width(), 4);
    }

    void aRequestToASilentDriveIsGivenUp()
    {
        const QString silent = made("silent.png", 4);
        const HangingFolder hanging(silent, HangingFolder::Opening);
        QVERIFY(!m_preloader->request(silent));
        QTRY_VERIFY(m_preloader->request(silent));
        QVERIFY(m_preloader->take(silent).problem == PictureProblem::NoAnswer);
        QVERIFY(!m_arrived.contains(silent));
    }

    void whatIsKeptIsShownThoughItsDriveFellSilent()
    {
        const QString a = made("a.png", 3);
        m_preloader->prepare({a});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(a), TIMEOUT_MS);
        const HangingFolder hanging(a, HangingFolder::Opening);
        QCOMPARE(m_preloader->take(a).picture.width(), 3);
    }

    void aHangingReadAheadDoesNotHoldTheNextPicture()
    {
        const QString silent = made("silent.png", 4);
        const QString fine = made("fine.png", 2);
        const HangingFolder hanging(silent, HangingFolder::Opening);
        m_preloader->prepare({silent});
        QTRY_COMPARE_WITH_TIMEOUT(hanging.waiting(), 1, TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(widthOf(fine), 2, TIMEOUT_MS);
    }

    void goingDoesNotWaitForASilentDrive()
    {
        const QString silent = made("silent.png", 4);
        const HangingFolder hanging(silent, HangingFolder::Opening);
        m_preloader->prepare({silent});
        QTRY_COMPARE_WITH_TIMEOUT(hanging.waiting(), 1, TIMEOUT_MS);
        m_preloader.reset();
        QCOMPARE(hanging.waiting(), 1);
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    /// Of the picture as it is known now. A slow machine answers to the first question that it is
    /// still at it.
    int widthOf(const QString &name) { return m_preloader->take(name).picture.width(); }

    /// The path of a picture that is so wide.
    QString made(const QString &name, int width) const
    {
        QImage image(width, 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        if (!image.save(path(name)))
            qFatal("cannot write a picture");
        return path(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    Arrived m_arrived;
    std::unique_ptr<PicturePreloader> m_preloader;
};

REGISTER_TEST(PicturePreloaderTest)
#include "tst_picture_preloader.moc"
