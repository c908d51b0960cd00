#include "sources/threads/ExitDeadline.h"
#include "tests/TestProgram.h"

#include <QtTest>

class ExitDeadlineTest : public QObject
{
    Q_OBJECT

private slots:
    void whileTheProgramGoesOnABoundIsItself()
    {
        QCOMPARE(ExitDeadline::capped(std::chrono::milliseconds(700)).count(), 700LL);
    }

    void whatGoesOnByItselfIsWaitedForOnlyAtTheEnd()
    {
        QCOMPARE(ExitDeadline::atTheEnd(std::chrono::milliseconds(700)).count(), 0LL);
        {
            const ExitDeadline end(std::chrono::hours(1));
            QCOMPARE(ExitDeadline::atTheEnd(std::chrono::milliseconds(700)).count(), 700LL);
        }
        QCOMPARE(ExitDeadline::atTheEnd(std::chrono::milliseconds(700)).count(), 0LL);
    }

    void nothingIsWaitedForPastTheDeadline()
    {
        const ExitDeadline end(std::chrono::milliseconds(0));
        QCOMPARE(ExitDeadline::capped(std::chrono::milliseconds(700)).count(), 0LL);
        QCOMPARE(ExitDeadline::atTheEnd(std::chrono::milliseconds(700)).count(), 0LL);
    }

    void waitsShareTheTimeThatIsLeft()
    {
        const ExitDeadline end(std::chrono::milliseconds(500));
        QVERIFY(ExitDeadline::capped(std::chrono::milliseconds(700)).count() <= 500);
        QVERIFY(ExitDeadline::atTheEnd(std::chrono::milliseconds(700)).count() <= 500);
    }
};

REGISTER_CORE_TEST(ExitDeadlineTest)
#include "tst_exit_deadline.moc"
