#include "tests/SideBySide.h"
#include "tests/sources/LiveRig.h"

/// Cameras with other rates than 30 a second: each is shown at the rate that suits, which the
/// camera is told to the last digit.
class LiveRatesTest : public QObject
{
    Q_OBJECT

private slots:
    void thePictureComesAtTheRateThatSuits_data()
    {
        QTest::addColumn<QVector<quint32>>("intervals");
        QTest::addColumn<quint32>("taken");
        QTest::newRow("25 only") << QVector<quint32>{400000} << 400000u;
        QTest::newRow("29.97 only") << QVector<quint32>{333667} << 333667u;
        QTest::newRow("23.98 and 15") << QVector<quint32>{666666, 417083} << 417083u;
        QTest::newRow("60 and 15") << QVector<quint32>{666666, 166666} << 166666u;
        // Both are 25 to a library that counts whole pictures.
        QTest::newRow("25.2 before 25") << QVector<quint32>{400000, 396825} << 396825u;
        QTest::newRow("30 of several") << QVector<quint32>{166666, 333333, 400000} << 333333u;
    }

    void thePictureComesAtTheRateThatSuits()
    {
        QFETCH(QVector<quint32>, intervals);
        QFETCH(quint32, taken);
        VirtualCameraConfig config = rigCamera();
        config.formats.front().intervals = {intervals.begin(), intervals.end()};
        VirtualCamera camera(config);
        LiveRig rig;
        QVERIFY(rig.bringUp(camera));
        QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
        QCOMPARE(camera.statistics().streamInterval, taken);
        rig.source->setResolution(LiveRig::RECORDING);
        QVERIFY(rig.waitForSize(LiveRig::RECORDING));
        QCOMPARE(camera.statistics().streamInterval, taken);
    }
};

REGISTER_TEST_SIDE_BY_SIDE(LiveRatesTest)
#include "tst_live_rates.moc"
