#include "sources/recording/RecordingRequest.h"
#include "tests/TestProgram.h"

#include <QtTest>

class RecordingRequestTest : public QObject
{
    Q_OBJECT

private slots:
    void aRequestWaitsBeginsAndEnds()
    {
        RecordingRequest request;
        QVERIFY(!request.requested() && !request.begun());
        request.open("one.mov");
        QVERIFY(request.requested() && !request.begun());
        QCOMPARE(request.fileName(), QString("one.mov"));
        request.begin();
        QVERIFY(request.requested() && request.begun());
        request.end();
        QVERIFY(!request.requested() && !request.begun());
    }

    void aPauseBelongsToItsRequest()
    {
        RecordingRequest request;
        request.setPaused(true);
        QVERIFY(!request.paused());
        request.open("one.mov");
        request.setPaused(true);
        request.begin();
        QVERIFY(request.paused());
        request.open("two.mov");
        QVERIFY(!request.paused());
        request.setPaused(true);
        request.end();
        QVERIFY(!request.paused());
    }

    void nothingBeginsWithoutARequest()
    {
        RecordingRequest request;
        request.begin();
        QVERIFY(!request.requested() && !request.begun());
    }

    void aNewRequestWaitsAgain()
    {
        RecordingRequest request;
        request.open("one.mov");
        request.begin();
        const int first = request.number();
        request.open("two.mov");
        QVERIFY(request.requested() && !request.begun());
        QCOMPARE(request.fileName(), QString("two.mov"));
        QVERIFY(request.number() != first);
    }

    void eachRecordingTellsOfOneFailureOnly()
    {
        RecordingRequest request;
        QVERIFY(!request.takeFailure(request.number()));
        request.open("one.mov");
        QVERIFY(request.takeFailure(request.number()));
        QVERIFY(!request.takeFailure(request.number()));
        request.open("two.mov");
        QVERIFY(request.takeFailure(request.number()));
    }

    void aFailureIsToldAfterTheEndButNotAfterTheNextRequest()
    {
        RecordingRequest request;
        request.open("one.mov");
        const int first = request.number();
        request.end();
        QVERIFY(request.takeFailure(first));

        request.open("two.mov");
        const int second = request.number();
        request.open("three.mov");
        QVERIFY(!request.takeFailure(second));
        QVERIFY(request.takeFailure(request.number()));
    }
};

REGISTER_CORE_TEST(RecordingRequestTest)
#include "tst_recording_request.moc"
