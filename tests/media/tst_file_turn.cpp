#include "sources/recording/FileTurn.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <optional>
#include <thread>

class FileTurnTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstOfANameDoesNotWait()
    {
        const FileTurn other("other");
        const FileTurn turn("name");
        turn.wait();
    }

    void whoBeganFirstIsFirst()
    {
        constexpr int TURNS = 8;
        std::array<std::optional<FileTurn>, TURNS> turns;
        for (std::optional<FileTurn> &turn : turns)
            turn.emplace("name");
        // Threads that start the other way round.
        std::atomic<int> next{0};
        std::atomic<bool> inOrder{true};
        std::array<std::thread, TURNS> threads;
        for (int n = TURNS - 1; n > 0; --n) {
            threads[std::size_t(n)] = std::thread([&, n] {
                turns[std::size_t(n)]->wait();
                inOrder = inOrder && next == n;
                ++next;
                turns[std::size_t(n)].reset();
            });
        }
        QTest::qWait(20); // an absence: nobody goes before the first
        QCOMPARE(int(next), 0);
        next = 1;
        turns[0].reset();
        for (std::size_t n = 1; n < TURNS; ++n)
            threads[n].join();
        QVERIFY(inOrder);
        QCOMPARE(int(next), TURNS);
    }

    void whoLeavesWithoutATurnHoldsNobodyUp()
    {
        std::optional<FileTurn> first("name"), second("name");
        const FileTurn third("name");
        std::atomic<bool> hasTurn{false};
        std::thread waiting([&] {
            third.wait();
            hasTurn = true;
        });
        second.reset();
        QVERIFY(!hasTurn);
        first.reset();
        waiting.join();
        QVERIFY(hasTurn);
    }
};

REGISTER_CORE_TEST(FileTurnTest)
#include "tst_file_turn.moc"
