#include "widgets/IntervalTable.h"

#include "tests/TestProgram.h"

#include <QTest>

class IntervalTableTest : public QObject
{
    Q_OBJECT

private slots:
    void holdsSeventeenIntervals();
    void labelsNameNumberAndUnit();
    void unknownIntervalIsTheFirst();
};

void IntervalTableTest::holdsSeventeenIntervals()
{
    QList<unsigned long long> seconds;
    for (const auto &interval : IntervalTable::intervals())
        seconds << interval.seconds;
    QCOMPARE(seconds, (QList<unsigned long long>{1, 2, 3, 4, 5, 10, 20, 30, 60, 120, 180, 240, 300,
                                                 600, 1200, 1800, 3600}));
}

void IntervalTableTest::labelsNameNumberAndUnit()
{
    QStringList labels;
    for (const auto &interval : IntervalTable::intervals())
        labels << IntervalTable::label(interval);
    QCOMPARE(labels, (QStringList{"1 sec", "2 sec", "3 sec", "4 sec", "5 sec", "10 sec", "20 sec",
                                  "30 sec", "1 min", "2 min", "3 min", "4 min", "5 min", "10 min",
                                  "20 min", "30 min", "1 hr"}));
}

void IntervalTableTest::unknownIntervalIsTheFirst()
{
    QCOMPARE(IntervalTable::indexOf(1), 0);
    QCOMPARE(IntervalTable::indexOf(10), 5);
    QCOMPARE(IntervalTable::indexOf(3600), 16);
    QCOMPARE(IntervalTable::indexOf(0), 0);
    QCOMPARE(IntervalTable::indexOf(7), 0);
    QCOMPARE(IntervalTable::indexOf(~0ULL), 0);
}

REGISTER_CORE_TEST(IntervalTableTest)
#include "tst_interval_table.moc"
