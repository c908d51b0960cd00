#include "tests/TestProgram.h"

#include "sources/gst/GstPointers.h"
#include "sources/gst/GstRuntime.h"
#include "sources/recording/BitRates.h"
#include "sources/recording/MovieEncoders.h"

#include <QtTest>

namespace
{

using ElementPtr = GstPtr<GstElement>;

/// The element that a description makes; null where this machine does not have it.
ElementPtr launched(const QString &description)
{
    GError *error = nullptr;
    GstElement *element = gst_parse_launch(description.toUtf8().constData(), &error);
    g_clear_error(&error);
    return ElementPtr(element ? GST_ELEMENT(gst_object_ref_sink(element)) : nullptr);
}

/// What the element will aim at, by its own account of what its property counts in.
double kilobits(GstElement *element)
{
    GParamSpec *property = g_object_class_find_property(G_OBJECT_GET_CLASS(element), "bitrate");
    guint value = 0;
    g_object_get(element, "bitrate", &value, nullptr);
    const bool inKilobits = QByteArray(g_param_spec_get_blurb(property)).contains("kbit");
    return inKilobits ? static_cast<double>(value) : static_cast<double>(value) / 1000;
}

} // namespace

class BitRatesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GstRuntime::initialise(); }

    void anElementIsToldItsRateInWhatItCounts_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<int>("rate");
        QTest::newRow("limit") << MovieEncoders::description("x264enc") << BitRates::PICTURES_LIMIT;
        QTest::newRow("pictures") << MovieEncoders::description("openh264enc")
                                  << BitRates::PICTURES;
        const auto small = MovieQuality::Small;
        QTest::newRow("small limit")
            << MovieEncoders::description("x264enc", small) << BitRates::PICTURES_LIMIT / 2;
        QTest::newRow("small pictures")
            << MovieEncoders::description("openh264enc", small) << BitRates::PICTURES / 2;
        QTest::newRow("small sound")
            << MovieEncoders::soundDescription(small) << BitRates::SOUND / 2;
        QTest::newRow("sound") << MovieEncoders::soundDescription() << BitRates::SOUND;
    }
    void anElementIsToldItsRateInWhatItCounts()
    {
        QFETCH(const QString, description);
        QFETCH(const int, rate);
        const ElementPtr element = launched(description);
        QVERIFY(element);
        QCOMPARE(kilobits(element.get()), static_cast<double>(rate));
    }

    void encodersOfTheHardwareAimAtTheSameRate()
    {
        int hardware = 0;
        for (const QString &name : MovieEncoders::names()) {
            const QString description = MovieEncoders::description(name);
            QCOMPARE(description.count(" bitrate="), 1);
            if (name == "x264enc" || name == "openh264enc")
                continue;
            ++hardware;
            QVERIFY2(description.contains(QString(" bitrate=%1 ").arg(BitRates::PICTURES)),
                     qPrintable(description));
        }
        QCOMPARE(hardware, 5);
    }
};

REGISTER_CORE_TEST(BitRatesTest)

#include "tst_bit_rates.moc"
