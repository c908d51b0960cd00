#include "sources/threads/BoundedWorker.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QElapsedTimer>

#include <atomic>
#include <future>
#include <vector>

#include <pthread.h>

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace
{

/// Gives the worker a job that ends when the promise is kept.
void keepBusyUntil(std::promise<void> &release, BoundedWorker &worker)
{
    auto blocker = std::make_shared<std::shared_future<void>>(release.get_future());
    QVERIFY(!worker.call(milliseconds(20), [blocker] {
        blocker->wait();
        return 1;
    }));
}

} // namespace

class BoundedWorkerTest : public QObject
{
    Q_OBJECT

private slots:
    void aJobsResultComesBack()
    {
        BoundedWorker worker("Test");
        QCOMPARE(worker.call(seconds(10), [] { return -9; }).value_or(1), -9);
        QCOMPARE(worker.call(seconds(10), [] { return 8; }).value_or(1), 8);
        QVERIFY(!worker.busy());
    }

    void jobsRunOnTheNamedThread()
    {
        BoundedWorker worker("Bounded");
        char name[16] = {};
        worker.call(seconds(10),
                    [&name] { return pthread_getname_np(pthread_self(), name, sizeof name); });
        QCOMPARE(QByteArray(name), QByteArray("Bounded"));
    }

    void aJobThatNeverEndsIsLeftToItself()
    {
        std::promise<void> release;
        auto blocker = std::make_shared<std::shared_future<void>>(release.get_future());
        auto finished = std::make_shared<std::promise<void>>();
        std::future<void> end = finished->get_future();
        QElapsedTimer timer;
        timer.start();
        {
            BoundedWorker worker("Test");
            QVERIFY(!worker.call(milliseconds(50), [blocker, finished] {
                blocker->wait();
                finished->set_value();
                return 0;
            }));
            QVERIFY(worker.busy());
            // A later job waits no longer than its own bound and is then never begun.
            bool begun = false;
            QVERIFY(!worker.call(milliseconds(50), [&begun] {
                begun = true;
                return 0;
            }));
            QVERIFY(!begun);
        }
        QVERIFY(timer.elapsed() < 20000); // the destructor did not wait either
        release.set_value();
        end.wait();
    }

    void aFinalJobIsDoneAfterItsWorkerHasGone()
    {
        std::promise<void> release;
        auto blocker = std::make_shared<std::shared_future<void>>(release.get_future());
        auto order = std::make_shared<std::vector<int>>();
        auto finished = std::make_shared<std::promise<void>>();
        std::future<void> end = finished->get_future();
        const auto note = [order](int number) {
            return [order, number] {
                order->push_back(number);
                return number;
            };
        };
        {
            BoundedWorker worker("Test");
            worker.post([blocker] {
                blocker->wait();
                return 0;
            });
            worker.post(
                [finished, order] {
                    order->push_back(3);
                    finished->set_value();
                    return 3;
                },
                BoundedWorker::Place::Final);
            worker.post(note(1));
            worker.clear();
            worker.post(note(2));
            worker.post(note(4), BoundedWorker::Place::First);
        }
        release.set_value();
        QCOMPARE(end.wait_for(seconds(20)), std::future_status::ready);
        QCOMPARE(*order, std::vector<int>({3}));
    }

    void aFinalJobStandsBehindAllOthers()
    {
        std::promise<void> release;
        auto blocker = std::make_shared<std::shared_future<void>>(release.get_future());
        BoundedWorker worker("Test");
        worker.post([blocker] {
            blocker->wait();
            return 0;
        });
        std::vector<int> order;
        const auto note = [&order](int number) {
            return [&order, number] {
                order.push_back(number);
                return number;
            };
        };
        const BoundedWorker::Ticket last = worker.post(note(3), BoundedWorker::Place::Final);
        worker.post(note(2));
        worker.post(note(1), BoundedWorker::Place::First);
        release.set_value();
        QCOMPARE(last.wait(seconds(20)).value_or(0), 3);
        QCOMPARE(order, std::vector<int>({1, 2, 3}));
    }

    void aWorkerThatWasBusyServesAgain()
    {
        std::promise<void> release;
        BoundedWorker worker("Test");
        keepBusyUntil(release, worker);
        release.set_value();
        QCOMPARE(worker.call(seconds(20), [] { return 2; }).value_or(0), 2);
    }

    void postedJobsRunInOrderAndUrgentOnesFirst()
    {
        std::promise<void> release;
        auto blocker = std::make_shared<std::shared_future<void>>(release.get_future());
        auto order = std::make_shared<std::vector<int>>();
        const auto note = [order](int number) {
            return [order, number] {
                order->push_back(number);
                return number;
            };
        };
        BoundedWorker worker("Test");
        auto begun = std::make_shared<std::promise<void>>();
        worker.post([blocker, begun] {
            begun->set_value();
            blocker->wait();
            return 0;
        });
        begun->get_future().wait(); // what is posted from now on is queued
        worker.post(note(2));
        const BoundedWorker::Ticket last = worker.post(note(3));
        const BoundedWorker::Ticket first = worker.post(note(1), BoundedWorker::Place::First);
        QVERIFY(last.open() && !last.result());
        release.set_value();
        QCOMPARE(last.wait(seconds(20)).value_or(0), 3);
        QCOMPARE(first.result().value_or(0), 1);
        QVERIFY(!last.open());
        QVERIFY(*order == std::vector<int>({1, 2, 3}));
    }

    void droppedJobsAreNeverBegunAndNeverAnswered()
    {
        std::promise<void> release;
        BoundedWorker worker("Test");
        keepBusyUntil(release, worker);
        auto begun = std::make_shared<std::atomic<bool>>(false);
        const BoundedWorker::Ticket dropped = worker.post([begun] {
            *begun = true;
            return 2;
        });
        worker.clear();
        QVERIFY(!dropped.open());
        release.set_value();
        QCOMPARE(worker.call(seconds(20), [] { return 3; }).value_or(0), 3);
        QVERIFY(!*begun);
        QVERIFY(!dropped.wait(milliseconds(0)));
        QVERIFY(!BoundedWorker::Ticket().wait(seconds(20)));
    }

    void whatAJobOwnsIsGoneWhenItsResultIsThere()
    {
        BoundedWorker worker("Test");
        for (int round = 0; round < 200; ++round) {
            auto owned = std::make_shared<int>(round);
            QCOMPARE(worker.call(seconds(20), [owned] { return *owned; }).value_or(-1), round);
            QCOMPARE(owned.use_count(), 1L);
        }
    }
};

REGISTER_CORE_TEST(BoundedWorkerTest)
#include "tst_bounded_worker.moc"
