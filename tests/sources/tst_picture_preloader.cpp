#include "sources/photographs/PicturePreloader.h"
#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QTemporaryDir>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

class PicturePreloaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_arrivals = 0;
        m_preloader = std::make_unique<PicturePreloader>([this](const QString &) { ++m_arrivals; });
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
        QTRY_VERIFY(m_preloader->holds(a));
        QVERIFY(m_preloader->holds(b));
        QCOMPARE(m_preloader->take(b).picture.width(), 2);
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
        QTRY_VERIFY(m_preloader->holds(a));
        if (replaced) {
            const QString b = made("b.png", 7);
            QVERIFY(QFile::remove(a));
            QVERIFY(QFile::rename(b, a));
        } else {
            made("a.png", 7);
        }
        QCOMPARE(m_preloader->take(a).picture.width(), 7);
        QVERIFY(QFile::remove(a));
        QVERIFY(m_preloader->take(a).problem == PictureProblem::Gone);
        made("a.png", 5);
        QCOMPARE(m_preloader->take(a).picture.width(), 5);
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
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(paths[1]), 20000);
        made("last.png", 1);
        // When this is there, the third one was read and let go.
        m_preloader->prepare({paths[0], paths[1], paths[2], path("last.png")});
        QTRY_VERIFY_WITH_TIMEOUT(m_preloader->holds(path("last.png")), 20000);
        QVERIFY(m_preloader->holds(paths[0]));
        QVERIFY(m_preloader->holds(paths[1]));
        QVERIFY(!m_preloader->holds(paths[2]));
        // A slow machine answers to the first question that it is still at it.
        QTRY_COMPARE_WITH_TIMEOUT(m_preloader->take(paths[2]).picture.width(), side, 20000);
    }

    void nothingIsKeptBesideADecoderThatHoldsMuch()
    {
        const QString shown = made("a.png", 1);
        const QString next = made("b.png", 2);
        m_preloader->prepare({next, shown});
        QTRY_VERIFY(m_preloader->holds(next) && m_preloader->holds(shown));
        {
            const DecodingTurn small({0, 50LL * 1024 * 1024});
            QVERIFY(m_preloader->holds(next) && m_preloader->holds(shown));
        }
        {
            const DecodingTurn large({0, 300LL * 1024 * 1024});
            QVERIFY(!m_preloader->holds(next) && !m_preloader->holds(shown));
            m_preloader->prepare({next});
            // Whoever waits does not wait for that decoder.
            QCOMPARE(m_preloader->take(shown).picture.width(), 1);
            QVERIFY(!m_preloader->holds(next));
            m_preloader->prepare({next, shown});
        }
        QTRY_VERIFY(m_preloader->holds(next) && m_preloader->holds(shown));
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
        first->setRead();
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

    void aSilentDriveHoldsNobodyAndItsPictureComesLater()
    {
        const QString silent = made("silent.png", 4);
        const QString fine = made("fine.png", 2);
        std::optional<HangingFolder> hanging(std::in_place, silent, HangingFolder::Opening);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(m_preloader->take(silent).problem == PictureProblem::NoAnswer);
        QVERIFY(clock.elapsed() < 10000);
        QCOMPARE(m_preloader->take(fine).picture.width(), 2);
        QCOMPARE(m_arrivals.load(), 0);
        hanging.reset();
        QTRY_COMPARE(m_arrivals.load(), 1);
        QCOMPARE(m_preloader->take(silent).picture.width(), 4);
    }

    void whatIsKeptIsShownThoughItsDriveFellSilent()
    {
        const QString a = made("a.png", 3);
        m_preloader->prepare({a});
        QTRY_VERIFY(m_preloader->holds(a));
        const HangingFolder hanging(a, HangingFolder::Opening);
        QCOMPARE(m_preloader->take(a).picture.width(), 3);
    }

    void aHangingReadAheadDoesNotHoldTheNextPicture()
    {
        const QString silent = made("silent.png", 4);
        const QString fine = made("fine.png", 2);
        const HangingFolder hanging(silent, HangingFolder::Opening);
        m_preloader->prepare({silent});
        QTRY_COMPARE(hanging.waiting(), 1);
        QCOMPARE(m_preloader->take(fine).picture.width(), 2);
    }

    void goingDoesNotWaitForASilentDrive()
    {
        const QString silent = made("silent.png", 4);
        const HangingFolder hanging(silent, HangingFolder::Opening);
        m_preloader->prepare({silent});
        QTRY_COMPARE(hanging.waiting(), 1);
        m_preloader.reset();
        QCOMPARE(hanging.waiting(), 1);
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

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
    std::atomic<int> m_arrivals{0};
    std::unique_ptr<PicturePreloader> m_preloader;
};

REGISTER_TEST(PicturePreloaderTest)
#include "tst_picture_preloader.moc"
