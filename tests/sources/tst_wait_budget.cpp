#include "sources/camera/WaitBudget.h"
#include "tests/TestProgram.h"

#include <QtTest>

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

class WaitBudgetTest : public QObject
{
    Q_OBJECT

private slots:
    void aFirstWaitMayTakeTheWholeStore()
    {
        const WaitBudget budget;
        QVERIFY(budget.left(m_start) == WaitBudget::CAPACITY + WaitBudget::FREE);
    }

    void quickAnswersAreFreeOfCharge()
    {
        WaitBudget budget;
        WaitBudget::TimePoint now = m_start;
        for (int i = 0; i < 1000; ++i) {
            budget.spend(now, now + WaitBudget::FREE);
            now += WaitBudget::FREE;
        }
        QVERIFY(budget.left(now) == WaitBudget::CAPACITY + WaitBudget::FREE);
    }

    void waitsInARowShareOneStore()
    {
        WaitBudget budget;
        WaitBudget::TimePoint now = m_start;
        for (int i = 0; i < 10; ++i) {
            const microseconds wait = std::min(microseconds(milliseconds(20)), budget.left(now));
            budget.spend(now, now + wait);
            now += wait;
        }
        QVERIFY(now - m_start <= WaitBudget::CAPACITY + 10 * WaitBudget::FREE);
        QVERIFY(budget.left(now) == WaitBudget::FREE);
    }

    void theStoreFillsWithTheTimeBetweenTheWaits()
    {
        WaitBudget budget;
        const WaitBudget::TimePoint spent = m_start + seconds(1);
        budget.spend(m_start, spent);
        QVERIFY(budget.left(spent + milliseconds(40)) == WaitBudget::FREE + milliseconds(10));
        QVERIFY(budget.left(spent + seconds(1)) == WaitBudget::FREE + WaitBudget::CAPACITY);
        QVERIFY(budget.left(spent - seconds(1)) == WaitBudget::FREE);
    }

private:
    const WaitBudget::TimePoint m_start{std::chrono::hours(1000)};
};

REGISTER_CORE_TEST(WaitBudgetTest)
#include "tst_wait_budget.moc"
