#include "sources/camera/CameraProfile.h"
#include "sources/camera/KeeperRules.h"

#include "tests/TestProgram.h"

#include <QtTest>

using State = CameraStatus::State;

Q_DECLARE_METATYPE(CameraStatus::State)

namespace
{

BusCamera cameraAt(std::uint8_t address)
{
    BusCamera camera;
    camera.vendorId = CAMERA_PROFILES[0].vendorId;
    camera.productId = CAMERA_PROFILES[0].productId;
    camera.busNumber = 1;
    camera.address = address;
    return camera;
}

BusCamera strangerAt(std::uint8_t address)
{
    BusCamera camera = cameraAt(address);
    camera.productId = 0x1234;
    return camera;
}

/// A camera that shows pictures.
CameraLink showing(std::uint8_t address)
{
    CameraLink link;
    link.running = true;
    link.busNumber = 1;
    link.address = address;
    link.streamWanted = true;
    link.frames = 100;
    link.sinceRequestMs = 60000;
    link.sinceFrameMs = 20;
    return link;
}

} // namespace

class KeeperRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void beforeTheFirstCameraItLooksOn()
    {
        KeeperRules rules;
        CameraLink link;
        KeeperRules::Decision decision = rules.decide(0, {cameraAt(2)}, link);
        QVERIFY(!decision.open && !decision.restartStream);
        QCOMPARE(decision.state, State::Waiting);
        link.seen = true;
        decision = rules.decide(60000, {cameraAt(2)}, link);
        QVERIFY(!decision.open);
        QCOMPARE(decision.state, State::Seen);
    }

    void aCameraThatShowsPicturesIsLeftAlone()
    {
        KeeperRules rules;
        for (int ms = 0; ms < 60000; ms += 500) {
            const auto decision = rules.decide(ms, {cameraAt(2)}, showing(2));
            QVERIFY(!decision.open && !decision.restartStream);
            QCOMPARE(decision.state, State::Showing);
        }
    }

    void oneThatComesBackIsOpenedWhenItHasSettled()
    {
        KeeperRules rules;
        QCOMPARE(rules.decide(0, {cameraAt(2)}, showing(2)).state, State::Showing);
        QCOMPARE(rules.decide(500, {}, showing(2)).state, State::Unplugged);
        const auto seen = rules.decide(1000, {cameraAt(3)}, showing(2));
        QVERIFY(!seen.open);
        QCOMPARE(seen.state, State::Seen);
        QCOMPARE(*seen.dueMs, 1000 + KeeperRules::SETTLE_MS);
        QVERIFY(!rules.decide(3000, {cameraAt(3)}, showing(2)).open);
        const auto settled = rules.decide(3001, {cameraAt(3)}, showing(2));
        QVERIFY(settled.open && settled.open->address == 3);
    }

    void eachPluggingBeginsTheWaitAnew()
    {
        KeeperRules rules;
        (void)rules.decide(0, {cameraAt(3)}, showing(2));
        (void)rules.decide(1500, {cameraAt(4)}, showing(2)); // away and back between two looks
        QVERIFY(!rules.decide(2500, {cameraAt(4)}, showing(2)).open);
        (void)rules.decide(3000, {}, showing(2));
        QVERIFY(!rules.decide(3400, {cameraAt(5)}, showing(2)).open);
        QVERIFY(!rules.decide(5400, {cameraAt(5)}, showing(2)).open);
        QVERIFY(rules.decide(5401, {cameraAt(5)}, showing(2)).open);
    }

    void anotherMakeInTheSamePortIsNotOpened()
    {
        KeeperRules rules;
        for (int ms = 0; ms < 10000; ms += 500) {
            const auto decision = rules.decide(ms, {strangerAt(3), strangerAt(2)}, showing(2));
            QVERIFY(!decision.open);
            QCOMPARE(decision.state, State::Unplugged);
        }
    }

    void ofTwoTheOneInUseCounts()
    {
        KeeperRules rules;
        for (int ms = 0; ms < 10000; ms += 500) {
            const auto decision = rules.decide(ms, {cameraAt(1), cameraAt(2)}, showing(2));
            QVERIFY(!decision.open);
            QCOMPARE(decision.state, State::Showing);
        }
    }

    void whatCouldNotBeOpenedIsTriedAgain_data()
    {
        QTest::addColumn<int>("result");
        QTest::addColumn<State>("state");
        QTest::newRow("permission") << -3 << State::NoPermission;
        QTest::newRow("busy") << -6 << State::Busy;
        QTest::newRow("input and output") << -1 << State::NotOpened;
        QTest::newRow("no answer") << -7 << State::NotOpened;
    }

    void whatCouldNotBeOpenedIsTriedAgain()
    {
        QFETCH(int, result);
        QFETCH(State, state);
        KeeperRules rules;
        CameraLink link = showing(2);
        link.openResult = result;
        link.frames = 0;
        QCOMPARE(rules.decide(0, {cameraAt(2)}, link).state, state);
        QVERIFY(rules.decide(KeeperRules::SETTLE_MS, {cameraAt(2)}, link).open);
        for (int round = 0, ms = 3000; round < 5; ++round, ms += KeeperRules::RETRY_MS) {
            rules.opened(ms, result);
            const auto refused = rules.decide(ms + 1, {cameraAt(2)}, link);
            QVERIFY(!refused.open);
            QCOMPARE(refused.state, state);
            QVERIFY(rules.decide(ms + KeeperRules::RETRY_MS, {cameraAt(2)}, link).open);
        }
    }

    void oneThatIsThereButSaysThatItHasGoneIsOpenedAnew()
    {
        KeeperRules rules;
        (void)rules.decide(0, {cameraAt(2)}, showing(2));
        CameraLink link = showing(2);
        link.gone = true;
        QVERIFY(rules.decide(60000, {cameraAt(2)}, link).open);
    }

    void aSizeThatIsRefusedIsAskedForAgain()
    {
        KeeperRules rules;
        CameraLink link = showing(2);
        link.frames = 0;
        link.streamResult = -51;
        int restarts = 0;
        for (int ms = 0; ms < 60000; ms += 500) {
            link.sinceFrameMs = link.sinceRequestMs = ms % KeeperRules::RETRY_MS + 500;
            const auto decision = rules.decide(ms, {cameraAt(2)}, link);
            QCOMPARE(decision.state, State::NoSuchSize);
            QVERIFY(!decision.open); // nothing is wrong with the camera itself
            restarts += decision.restartStream;
        }
        QCOMPARE(restarts, 30);
    }

    void aSilentCameraGetsItsStreamAnewAndIsThenOpenedAnew_data()
    {
        QTest::addColumn<int>("streamResult");
        QTest::newRow("agreed") << 0;
        QTest::newRow("without an answer") << -7;
    }

    void aSilentCameraGetsItsStreamAnewAndIsThenOpenedAnew()
    {
        QFETCH(int, streamResult);
        KeeperRules rules;
        CameraLink link = showing(2);
        link.frames = 0;
        link.streamResult = streamResult;
        std::int64_t lastMs = 0;
        QList<int> restarts, openings;
        for (int ms = 0; ms < 20000; ms += 500) {
            link.sinceFrameMs = link.sinceRequestMs = ms - lastMs;
            const auto decision = rules.decide(ms, {cameraAt(2)}, link);
            QCOMPARE(decision.state,
                     link.sinceFrameMs >= KeeperRules::SILENT_MS ? State::Silent : State::Seen);
            if (decision.restartStream)
                restarts.append(ms);
            if (decision.open)
                openings.append(ms);
            if (decision.open || decision.restartStream)
                lastMs = ms;
        }
        QCOMPARE(restarts, (QList<int>{4000, 8000, 12000}));
        QCOMPARE(openings, (QList<int>{16000}));
    }

    void aStreamThatNeverComesIsNotWaitedFor()
    {
        KeeperRules rules;
        CameraLink link = showing(2);
        (void)rules.decide(0, {cameraAt(2)}, link);
        link.streamPending = true;
        link.frames = 0;
        link.sinceRequestMs = KeeperRules::SILENT_MS;
        auto decision = rules.decide(30000, {cameraAt(2)}, link);
        QCOMPARE(decision.state, State::Silent);
        QVERIFY(!decision.open && !decision.restartStream);
        link.sinceRequestMs = KeeperRules::HANG_MS;
        decision = rules.decide(32000, {cameraAt(2)}, link);
        QVERIFY(decision.open && decision.open->address == 2);
        rules.opened(32500, -6);
        QVERIFY(!rules.decide(33000, {cameraAt(2)}, link).open);
        QVERIFY(rules.decide(34500, {cameraAt(2)}, link).open);
    }
};

REGISTER_CORE_TEST(KeeperRulesTest)
#include "tst_keeper_rules.moc"
