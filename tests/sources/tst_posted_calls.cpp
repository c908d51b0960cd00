#include "sources/threads/PostedCalls.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"

#include <QtTest>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

/// Calls that a thread leaves for another one.
class PostedCallsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachIsMadeOnTheReceiversThreadInItsTurn()
    {
        PostedCalls calls;
        std::vector<int> made;
        std::vector<QThread *> by;
        std::thread other([&made, &by, post = calls.post()] {
            for (int n = 0; n < COUNT; ++n) {
                post([&made, &by, n] {
                    made.push_back(n);
                    by.push_back(QThread::currentThread());
                });
            }
        });
        other.join();
        QVERIFY2(made.empty(), "made before the event loop ran");
        QTRY_COMPARE_WITH_TIMEOUT(made.size(), std::size_t(COUNT), TIMEOUT_MS);
        for (int n = 0; n < COUNT; ++n) {
            QCOMPARE(made[std::size_t(n)], n);
            QCOMPARE(by[std::size_t(n)], thread());
        }
    }

    void noneIsMadeAfterItsReceiver()
    {
        int made = 0;
        std::optional<PostedCalls> calls(std::in_place);
        const PostedCalls::Post post = calls->post();
        post([&made] { ++made; });
        calls.reset();
        post([&made] { ++made; });
        QCoreApplication::processEvents();
        QCOMPARE(made, 0);
    }

    void aReceiverThatGoesWhileOthersPostIsLeftAlone()
    {
        auto calls = std::make_unique<PostedCalls>();
        std::atomic<bool> ended{false};
        std::thread other([&ended, post = calls->post()] {
            while (!ended)
                post([] {});
        });
        for (int n = 0; n < COUNT; ++n)
            QCoreApplication::processEvents();
        calls.reset();
        ended = true;
        other.join();
        QCoreApplication::processEvents();
    }

private:
    static constexpr int COUNT = 100;
};

REGISTER_CORE_TEST(PostedCallsTest)
#include "tst_posted_calls.moc"
