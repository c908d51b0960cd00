#include "app/UrgentThreads.h"

#include "sources/threads/DetachedThreads.h"
#include "sources/threads/UrgentThread.h"
#include "tests/TestProgram.h"
#include "tests/fakes/PriorityService.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

#include <thread>
#include <unistd.h>

using Answer = PriorityService::Answer;

namespace
{

/// Less than the bus or the service would be waited for.
constexpr int AT_ONCE_MS = 1000;

/// The number of a thread that has announced itself.
int announced()
{
    int number = 0;
    std::thread([&number] {
        number = static_cast<int>(gettid());
        UrgentThread::announce();
    }).join();
    return number;
}

int descriptors()
{
    return static_cast<int>(QDir("/proc/self/fd").entryList(QDir::Files).size());
}

} // namespace

/// What the program asks the system for when its threads are to go before others.
class UrgentThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void thatThreadAndTheGuiThreadAreAskedFor()
    {
        const SystemBus bus;
        const PriorityService service(bus);
        QVERIFY(service.serving());
        const UrgentThreads threads;
        const int first = announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 2, TIMEOUT_MS);
        QCOMPARE(service.requests[0].thread, static_cast<qulonglong>(getpid()));
        QCOMPARE(service.requests[1].thread, static_cast<qulonglong>(first));
        const int second = announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 3, TIMEOUT_MS);
        QCOMPARE(service.requests[2].thread, static_cast<qulonglong>(second));
        for (const PriorityService::Request &request : service.requests)
            QCOMPARE(request.priority, -11);
    }

    void nothingIsAskedForBeforeOrAfterwards()
    {
        const SystemBus bus;
        const PriorityService service(bus);
        announced();
        {
            const UrgentThreads threads;
        }
        announced();
        const UrgentThreads threads;
        const int last = announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 2, TIMEOUT_MS);
        QCOMPARE(service.requests[1].thread, static_cast<qulonglong>(last));
    }

    void aServiceThatRefusedIsAskedForTheNextThreadAgain()
    {
        const SystemBus bus;
        const UrgentThreads threads;
        PriorityService service(bus, Answer::Refused);
        announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 2, TIMEOUT_MS);
        service.answer = Answer::Granted;
        const int second = announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 4, TIMEOUT_MS);
        QCOMPARE(service.requests[2].thread, static_cast<qulonglong>(getpid()));
        QCOMPARE(service.requests[3].thread, static_cast<qulonglong>(second));
        const int third = announced();
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 5, TIMEOUT_MS);
        QCOMPARE(service.requests[4].thread, static_cast<qulonglong>(third));
    }

    void nothingStaysOpen()
    {
        const SystemBus bus;
        const PriorityService service(bus);
        const UrgentThreads threads;
        const auto ask = [&service](int times) {
            for (int i = 0; i < times; ++i) {
                const int before = service.requests.size();
                announced();
                if (!QTest::qWaitFor([&] { return service.requests.size() > before; }, TIMEOUT_MS))
                    return false;
            }
            return true;
        };
        QVERIFY(ask(2)); // with what the library keeps for ever
        const int before = descriptors();
        QVERIFY(ask(20));
        QTRY_VERIFY_WITH_TIMEOUT(descriptors() <= before, TIMEOUT_MS);
    }

    void nobodyWaits_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("served");
        QTest::newRow("no service") << 0 << false;
        QTest::newRow("a service that does not answer") << 0 << true;
        QTest::newRow("a bus that hangs") << SIGSTOP << false;
        QTest::newRow("no bus") << SIGKILL << false;
    }

    void nobodyWaits()
    {
        QFETCH(int, signal);
        QFETCH(bool, served);
        const SystemBus bus;
        std::unique_ptr<PriorityService> service;
        if (served)
            service = std::make_unique<PriorityService>(bus, Answer::None);
        if (signal)
            bus.sendSignal(signal);
        QElapsedTimer timer;
        {
            const UrgentThreads threads;
            timer.start();
            announced();
            announced();
            QVERIFY2(timer.elapsed() < AT_ONCE_MS, qPrintable(QString::number(timer.elapsed())));
            if (served)
                QTRY_VERIFY_WITH_TIMEOUT(!service->requests.isEmpty(), TIMEOUT_MS);
            timer.start();
        }
        QVERIFY2(timer.elapsed() < AT_ONCE_MS, qPrintable(QString::number(timer.elapsed())));
        // What is under way is given up.
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(AT_ONCE_MS)));
    }
};

REGISTER_TEST(UrgentThreadsTest)
#include "tst_urgent_threads.moc"
