#include "sources/camera/StreamFormats.h"

#include "tests/TestProgram.h"

#include <QtTest>

#include <algorithm>
#include <random>

using namespace StreamFormats;

namespace
{

Offer offer(QSize size, std::vector<std::uint32_t> intervals, Coding coding = Coding::MotionJpeg)
{
    static std::uint8_t frameIndex = 0;
    Offer made;
    made.coding = coding;
    made.formatIndex = static_cast<std::uint8_t>(coding);
    made.frameIndex = ++frameIndex;
    made.size = size;
    made.intervals = std::move(intervals);
    return made;
}

Offer range(QSize size, std::uint32_t shortest, std::uint32_t longest, std::uint32_t step)
{
    Offer made = offer(size, {});
    made.shortest = shortest;
    made.longest = longest;
    made.step = step;
    return made;
}

constexpr QSize HD{1280, 720};

std::uint32_t intervalOf(const Offer &only, int framesPerSecond = 30)
{
    const auto choice = choose({only}, only.size, framesPerSecond, Sizes::Exact);
    return choice ? choice->interval : 0;
}

} // namespace

class StreamFormatsTest : public QObject
{
    Q_OBJECT

private slots:
    void theWantedSizeAndRateAreTaken()
    {
        const std::vector<Offer> offers{offer({1024, 768}, {333333}), offer(HD, {333333}),
                                        offer({1920, 1080}, {333333})};
        const auto choice = choose(offers, HD, 30, Sizes::Nearest);
        QVERIFY(choice);
        QCOMPARE(choice->size, HD);
        QCOMPARE(choice->interval, 333333u);
        QCOMPARE(choice->frameIndex, offers[1].frameIndex);
    }

    void theRateIsTheWantedOrTheNextAboveElseTheFastest_data()
    {
        QTest::addColumn<QVector<quint32>>("intervals");
        QTest::addColumn<quint32>("taken");
        QTest::newRow("30 of many") << QVector<quint32>{166666, 333333, 666666} << 333333u;
        QTest::newRow("29.97 is 30") << QVector<quint32>{166833, 333667} << 333667u;
        QTest::newRow("60 before 25") << QVector<quint32>{400000, 166666} << 166666u;
        QTest::newRow("50 before 60") << QVector<quint32>{166666, 200000, 400000} << 200000u;
        QTest::newRow("25 alone") << QVector<quint32>{400000} << 400000u;
        QTest::newRow("23.98 before 15") << QVector<quint32>{666666, 417083} << 417083u;
        QTest::newRow("zero is no interval") << QVector<quint32>{0, 400000, 0} << 400000u;
        QTest::newRow("nor is an hour") << QVector<quint32>{4000000000u} << 0u;
    }

    void theRateIsTheWantedOrTheNextAboveElseTheFastest()
    {
        QFETCH(QVector<quint32>, intervals);
        QFETCH(quint32, taken);
        QCOMPARE(intervalOf(offer(HD, {intervals.begin(), intervals.end()})), taken);
        std::reverse(intervals.begin(), intervals.end());
        QCOMPARE(intervalOf(offer(HD, {intervals.begin(), intervals.end()})), taken);
    }

    void ofARangeTheStepAtOrAboveTheWantedRateIsTaken()
    {
        QCOMPARE(intervalOf(range(HD, 166666, 1000000, 1)), 333333u);
        QCOMPARE(intervalOf(range(HD, 166666, 1000000, 100000)), 266666u);
        QCOMPARE(intervalOf(range(HD, 166666, 200000, 0)), 200000u);
        QCOMPARE(intervalOf(range(HD, 400000, 1000000, 100000)), 400000u);
        QCOMPARE(intervalOf(range(HD, 500000, 100000, 7)), 500000u); // the wrong way round
        QCOMPARE(intervalOf(range(HD, 0, 0, 0)), 0u);
    }

    void motionJpegGoesBeforeTheOthersAtTheSameRateOnly()
    {
        const std::vector<Offer> offers{
            offer(HD, {333333}, Coding::Grey), offer(HD, {333333}, Coding::Uyvy),
            offer(HD, {333333}, Coding::Yuyv), offer(HD, {333333}, Coding::MotionJpeg)};
        QVERIFY(choose(offers, HD, 30, Sizes::Exact)->coding == Coding::MotionJpeg);
        QVERIFY(choose({offers.begin(), offers.begin() + 3}, HD, 30, Sizes::Exact)->coding ==
                Coding::Yuyv);
        const std::vector<Offer> slow{offer(HD, {2000000}, Coding::MotionJpeg),
                                      offer(HD, {333333}, Coding::Yuyv)};
        QVERIFY(choose(slow, HD, 30, Sizes::Exact)->coding == Coding::Yuyv);
    }

    void aSizeThatIsNotThereIsReplacedWhereThatIsAllowed()
    {
        const std::vector<Offer> offers{offer({640, 480}, {333333}), offer({1280, 800}, {333333}),
                                        offer({1920, 1080}, {333333})};
        QVERIFY(!choose(offers, HD, 30, Sizes::Exact));
        QCOMPARE(choose(offers, HD, 30, Sizes::Nearest)->size, QSize(1280, 800));
        QCOMPARE(choose(offers, {0, 0}, 30, Sizes::Nearest)->size, QSize(640, 480));
        QCOMPARE(choose(offers, {-5, 70000}, 30, Sizes::Nearest)->size, QSize(640, 480));
    }

    void nothingUsableIsNothing()
    {
        QVERIFY(!choose({}, HD, 30, Sizes::Nearest));
        QVERIFY(!choose({offer({0, 720}, {333333}), offer(HD, {0})}, HD, 30, Sizes::Nearest));
        QVERIFY(!choose({offer(HD, {333333})}, HD, 0, Sizes::Nearest));
        QVERIFY(!choose({offer(HD, {333333})}, HD, -3, Sizes::Nearest));
    }

    /// Whatever a camera lists: what is taken was listed, and nothing listed is better.
    void aMillionChangedListsGiveAChoiceOutOfTheList()
    {
        std::mt19937 random(20261122);
        const std::uint32_t edges[] = {0, 1, 65535, 333333, 333667, 400000, 0x7fffffff, 0xffffffff};
        const auto edge = [&] { return edges[random() % 8]; };
        std::vector<Offer> offers;
        int taken = 0;
        for (int round = 0; round < 1000000; ++round) {
            if (round % 50 == 0 || offers.empty()) {
                offers.assign(random() % 6, offer(HD, {333333}));
                continue;
            }
            Offer &changed = offers[random() % offers.size()];
            switch (random() % 6) {
            case 0:
                changed.size = QSize(int(edge() & 0xffff), int(edge() & 0xffff));
                break;
            case 1:
                changed.intervals.assign(random() % 4, edge());
                break;
            case 2:
                changed.shortest = edge();
                changed.longest = edge();
                changed.step = edge();
                break;
            case 3:
                changed.coding = static_cast<Coding>(random() % 4);
                break;
            case 4:
                changed = offers[random() % offers.size()]; // a twin
                break;
            default:
                changed.intervals.clear();
            }
            const Sizes sizes = random() % 2 ? Sizes::Exact : Sizes::Nearest;
            const QSize wanted = random() % 3 ? HD : QSize(int(edge() & 0xffff), 65535);
            const auto choice = choose(offers, wanted, 1 + int(random() % 240), sizes);
            if (!choice)
                continue;
            ++taken;
            const bool listed =
                std::any_of(offers.begin(), offers.end(), [&choice](const Offer &one) {
                    return one.size == choice->size && one.coding == choice->coding &&
                           (one.intervals.empty() ||
                            std::count(one.intervals.begin(), one.intervals.end(),
                                       choice->interval) > 0);
                });
            if (!listed || choice->interval == 0 || choice->size.isEmpty() ||
                (sizes == Sizes::Exact && choice->size != wanted))
                QFAIL(qPrintable(QString("round %1").arg(round)));
        }
        QVERIFY(taken > 100000);
    }
};

REGISTER_CORE_TEST(StreamFormatsTest)
#include "tst_stream_formats.moc"
