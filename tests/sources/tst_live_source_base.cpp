#include "sources/LiveSourceBase.h"
#include "sources/camera/CameraParameters.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QHash>
#include <QVector>

namespace
{

struct Transfer {
    char direction;
    unsigned long selector;
    unsigned long value;

    bool operator==(const Transfer &other) const
    {
        return direction == other.direction && selector == other.selector && value == other.value;
    }
};

/// Records every transfer and answers reads from a table of parameters.
class RecordingSource : public LiveSourceBase
{
public:
    bool running() const override { return isRunning; }

    int ksPropSet(unsigned long property, void *data, unsigned long length) override
    {
        unsigned long value = 0;
        memcpy(&value, data, length);
        transfers.append({'w', property, value});
        if (property == CameraParameter::ID_SELECTOR)
            m_selected = value;
        return failing ? -9 : static_cast<int>(length);
    }

    int ksPropGet(unsigned long property, void *data, unsigned long length) override
    {
        transfers.append({'r', property, m_selected});
        if (failing)
            return -9;
        const unsigned long value = answers.value(m_selected);
        memcpy(data, &value, length);
        return static_cast<int>(length);
    }

    bool isRunning = true;
    bool failing = false;
    QHash<unsigned long, unsigned long> answers;
    QVector<Transfer> transfers;

private:
    unsigned long m_selected = 0;
};

} // namespace

class LiveSourceBaseTest : public QObject
{
    Q_OBJECT

private slots:
    void aCameraThatIsNotRunningIsSentNothing()
    {
        RecordingSource source;
        source.isRunning = false;
        source.autoFocus();
        source.brightnessUp();
        source.brightnessDown();
        source.zoomInStart();
        source.zoomInStop();
        source.zoomOutStart();
        source.zoomOutStop();
        source.zoomReset();
        source.setMacroMode(true);
        source.sleep(5);
        QCOMPARE(source.brightness(), 0);
        QCOMPARE(source.brightnessMax(), 0);
        QCOMPARE(source.brightnessMin(), 0);
        QCOMPARE(source.opticalZoomPercent(), 0.0);
        QCOMPARE(source.digitalZoomPercent(), 0.0);
        QVERIFY(source.transfers.isEmpty());
    }

    void aKeyIsPressedAndReleasedInFourWrites_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<unsigned long>("id");
        QTest::newRow("autofocus") << 0 << 0x010000A5UL;
        QTest::newRow("brightness up") << 1 << 0x0100003FUL;
        QTest::newRow("brightness down") << 2 << 0x01000040UL;
    }

    void aKeyIsPressedAndReleasedInFourWrites()
    {
        QFETCH(int, key);
        QFETCH(unsigned long, id);
        RecordingSource source;
        if (key == 0)
            source.autoFocus();
        else if (key == 1)
            source.brightnessUp();
        else
            source.brightnessDown();
        const QVector<Transfer> expected{{'w', 19, id}, {'w', 20, 1}, {'w', 19, id}, {'w', 20, 0}};
        QVERIFY(source.transfers == expected);
    }

    void aZoomKeyIsHeldBetweenStartAndStop()
    {
        RecordingSource source;
        source.zoomInStart();
        source.zoomInStop();
        source.zoomOutStart();
        source.zoomOutStop();
        const QVector<Transfer> expected{
            {'w', 19, 0x010000A1}, {'w', 20, 1}, {'w', 19, 0x010000A1}, {'w', 20, 0},
            {'w', 19, 0x010000A2}, {'w', 20, 1}, {'w', 19, 0x010000A2}, {'w', 20, 0}};
        QVERIFY(source.transfers == expected);
    }

    void zoomResetWritesExactlyFourTransfers()
    {
        RecordingSource source;
        source.zoomReset();
        const QVector<Transfer> expected{
            {'w', 19, 0x7000001A}, {'w', 20, 0}, {'w', 19, 0x7000001C}, {'w', 20, 1000}};
        QVERIFY(source.transfers == expected);
    }

    void aQueryWritesTheIdAndReadsTheValue()
    {
        RecordingSource source;
        source.answers[0x7000001D] = 7;
        QCOMPARE(source.brightness(), 7);
        const QVector<Transfer> expected{{'w', 19, 0x7000001D}, {'r', 20, 0x7000001D}};
        QVERIFY(source.transfers == expected);
    }

    void aBrightnessRangeOfZeroIsOneToFifteen()
    {
        RecordingSource source;
        QCOMPARE(source.brightnessMax(), 15);
        QCOMPARE(source.brightnessMin(), 1);
        source.answers[0x70000023] = 9;
        source.answers[0x70000022] = 3;
        QCOMPARE(source.brightnessMax(), 9);
        QCOMPARE(source.brightnessMin(), 3);
    }

    void brightnessIsTheLowHalfOfTheValue()
    {
        RecordingSource source;
        source.answers[0x7000001D] = 0x0000000500000003UL;
        QCOMPARE(source.brightness(), 3);
    }

    void zoomValuesBecomeFractionAndFactor()
    {
        RecordingSource source;
        source.answers[0x70000024] = 50;
        source.answers[0x7000001C] = 2000;
        source.answers[0x7000001E] = 1500;
        QCOMPARE(source.opticalZoomPercent(), 0.5);
        QCOMPARE(source.digitalZoomPercent(), 3.0);
        const QVector<Transfer> expected{{'w', 19, 0x70000024}, {'r', 20, 0x70000024},
                                         {'w', 19, 0x7000001C}, {'r', 20, 0x7000001C},
                                         {'w', 19, 0x7000001E}, {'r', 20, 0x7000001E}};
        QVERIFY(source.transfers == expected);
    }

    void hugeValuesConvertAsUnsigned()
    {
        RecordingSource source;
        source.answers[0x70000024] = 0xFFFFFFFFFFFFFFFFUL;
        QVERIFY(source.opticalZoomPercent() > 1e17);
    }

    void aFailedReadLeavesZero()
    {
        RecordingSource source;
        source.failing = true;
        QCOMPARE(source.getParam(0x7000001D), 0UL);
        QCOMPARE(source.brightness(), 0);
        QCOMPARE(source.brightnessMax(), 15);
        QCOMPARE(source.opticalZoomPercent(), 0.0);
    }
};

REGISTER_CORE_TEST(LiveSourceBaseTest)
#include "tst_live_source_base.moc"
