#include "sources/threads/CallWatch.h"
#include "sources/threads/CallbackGate.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QSemaphore>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace
{

/// Far more than any step needs, so that a fault fails the test instead of halting it.
constexpr auto TIMEOUT = 20s;

} // namespace

/// Calls that hang, and calls whose receiver goes.
class CallWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void aCallThatLastsIsSeen()
    {
        CallWatch watch;
        auto seen = std::async(std::launch::async, [&watch] { return watch.waitForHang(50ms); });
        const CallWatch::Call call(watch);
        const bool inTime = seen.wait_for(TIMEOUT) == std::future_status::ready;
        watch.stop();
        QVERIFY(inTime);
        QVERIFY(seen.get());
    }

    void shortCallsAreNone()
    {
        CallWatch watch;
        auto seen = std::async(std::launch::async, [&watch] { return watch.waitForHang(10s); });
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 200)
            const CallWatch::Call call(watch);
        QVERIFY(seen.wait_for(0s) == std::future_status::timeout);
        watch.stop();
        QVERIFY(!seen.get());
    }

    void theTimeOfACallBeginsWithIt()
    {
        CallWatch watch;
        {
            const CallWatch::Call earlier(watch);
            // A part of the bound, spent in another call.
            std::this_thread::sleep_for(100ms);
        }
        std::optional<CallWatch::Call> call(std::in_place, watch);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(watch.waitForHang(300ms));
        QVERIFY(clock.elapsed() >= 290);
    }

    void stoppingEndsTheWaiting()
    {
        CallWatch watch;
        watch.stop();
        const CallWatch::Call call(watch);
        QVERIFY(!watch.waitForHang(0ms));
    }

    void aClosedGateLetsNothingThrough()
    {
        CallbackGate gate;
        int calls = 0;
        gate.pass([&calls] { ++calls; });
        QCOMPARE(calls, 1);
        gate.close();
        gate.pass([&calls] { ++calls; });
        QCOMPARE(calls, 1);
    }

    void closingWaitsForTheCallUnderWay()
    {
        CallbackGate gate;
        QSemaphore begun;
        QSemaphore mayEnd;
        std::atomic<bool> ended{false};
        std::thread caller([&] {
            gate.pass([&] {
                begun.release();
                mayEnd.acquire();
                ended = true;
            });
        });
        begun.acquire();
        std::atomic<bool> endedBeforeClosed{false};
        std::thread closer([&] {
            gate.close();
            endedBeforeClosed = ended.load();
        });
        // Long enough for a gate that closes without waiting to be caught.
        std::this_thread::sleep_for(50ms);
        mayEnd.release();
        caller.join();
        closer.join();
        QVERIFY(endedBeforeClosed);
    }

    void aCallThatIsHurriedHangsEarlier()
    {
        CallWatch watch;
        watch.hurry(0ms); // there is none
        QSemaphore mayEnd;
        std::thread caller([&] {
            const CallWatch::Call call(watch);
            watch.hurry(1ms);
            mayEnd.acquire();
        });
        const bool hangs = watch.waitForHang(1h);
        mayEnd.release();
        caller.join();
        QVERIFY(hangs);
        {
            // The next one has its full time.
            const CallWatch::Call call(watch);
            std::thread stopper([&watch] {
                std::this_thread::sleep_for(50ms); // long enough for a bound that still counts
                watch.stop();
            });
            QVERIFY(!watch.waitForHang(1h));
            stopper.join();
        }
    }

    void oneCallMayLeadToAnother()
    {
        CallbackGate gate;
        int calls = 0;
        gate.pass([&] { gate.pass([&calls] { ++calls; }); });
        QCOMPARE(calls, 1);
    }
};

REGISTER_CORE_TEST(CallWatchTest)
#include "tst_call_watch.moc"
