#include "sources/film/DisplayLink.h"
#include "tests/OwnProcess.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <atomic>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <string>
#include <thread>

namespace
{

/// Counts ticks and lets a test wait for them.
class Counter
{
public:
    void operator()()
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        m_thread = name;
        m_changed.notify_all();
    }

    bool reaches(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(30), [&] { return m_count >= count; });
    }

    int count()
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

    std::string thread()
    {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

private:
    /// Guards the members below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
    std::string m_thread;
};

} // namespace

class DisplayLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void aScreenIsBelievedWhenItsRateCanBe_data()
    {
        QTest::addColumn<double>("hertz");
        QTest::addColumn<int>("microseconds");
        QTest::newRow("usual") << 60.0 << 16666;
        QTest::newRow("fast") << 144.0 << 6944;
        QTest::newRow("slowest") << 20.0 << 50000;
        QTest::newRow("fastest") << 500.0 << 2000;
        QTest::newRow("unknown") << 0.0 << 16666;
        QTest::newRow("too slow") << 1.0 << 16666;
        QTest::newRow("too fast") << 1000.0 << 16666;
        QTest::newRow("below nothing") << -60.0 << 16666;
        QTest::newRow("no number") << std::nan("") << 16666;
    }

    void aScreenIsBelievedWhenItsRateCanBe()
    {
        QFETCH(double, hertz);
        QFETCH(int, microseconds);
        QCOMPARE(int(DisplayLink::interval(hertz).count() / 1000), microseconds);
    }

    void ticksOnItsOwnNamedThread()
    {
        Counter counter;
        const auto link = DisplayLink::create([&] { counter(); });
        QCOMPARE(counter.count(), 0);
        link->start();
        QVERIFY(counter.reaches(5));
        QCOMPARE(counter.thread(), std::string("DisplayLink"));
    }

    void ticksNoFasterThanTheScreen()
    {
        // The offscreen screen refreshes 60 times a second.
        Counter counter;
        const auto link = DisplayLink::create([&] { counter(); });
        QElapsedTimer timer;
        timer.start();
        link->start();
        QVERIFY(counter.reaches(60));
        QVERIFY(timer.elapsed() >= 970);
    }

    void noTickFollowsStop()
    {
        Counter counter;
        std::atomic<bool> stopped{false};
        std::atomic<bool> late{false};
        const auto link = DisplayLink::create([&] {
            counter();
            std::this_thread::yield();
            if (stopped)
                late = true;
        });
        for (int i = 0; i < 300; ++i) {
            const int before = counter.count();
            stopped = false;
            link->start();
            if (i % 3)
                QVERIFY(counter.reaches(before + 1));
            link->stop();
            stopped = true;
        }
        const int after = counter.count();
        QTest::qWait(100);
        QCOMPARE(counter.count(), after);
        QVERIFY(!late);
    }

    void stoppedItUsesNoProcessorTime()
    {
        Counter counter;
        const auto link = DisplayLink::create([&] { counter(); });
        link->start();
        QVERIFY(counter.reaches(3));
        link->stop();
        const double used = OwnProcess::processorSeconds();
        QTest::qWait(500);
        QVERIFY(OwnProcess::processorSeconds() - used < 0.05);
    }

    void aSlowTickSwallowsTheOnesItMissed()
    {
        Counter counter;
        const auto link = DisplayLink::create([&] {
            counter();
            if (counter.count() == 1)
                std::this_thread::sleep_for(std::chrono::milliseconds(500));
        });
        QElapsedTimer timer;
        timer.start();
        link->start();
        QVERIFY(counter.reaches(10));
        QVERIFY(timer.elapsed() >= 500 + 7 * 16);
    }

    void isDestroyedWhileRunningAndWhileStopped()
    {
        for (int i = 0; i < 100; ++i) {
            Counter counter;
            const auto link = DisplayLink::create([&] { counter(); });
            if (i % 3 == 0)
                continue;
            link->start();
            if (i % 3 == 1)
                link->stop();
        }
    }
};

REGISTER_TEST(DisplayLinkTest)
#include "tst_display_link.moc"
