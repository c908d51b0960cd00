#include "sources/camera/StandardControls.h"

#include "sources/camera/CameraParameters.h"

#include "tests/TestProgram.h"

#include <QtTest>

#include <limits>
#include <random>

using namespace CameraParameter;
using Control = StandardControl;
using Settings = StandardControls::Settings;

namespace
{

ControlAnswers answers(std::int64_t minimum, std::int64_t maximum, std::int64_t step,
                       std::int64_t current)
{
    ControlAnswers given;
    given.minimum = minimum;
    given.maximum = maximum;
    given.resolution = step;
    given.initial = given.current = current;
    return given;
}

ControlAnswers switchAt(std::int64_t current)
{
    ControlAnswers given;
    given.current = current;
    return given;
}

StandardControls with(Control control, const ControlAnswers &given)
{
    StandardControls controls;
    controls.learn(control, given);
    return controls;
}

QString textOf(const Settings &settings)
{
    QStringList words;
    for (const StandardControls::Setting &setting : settings)
        words << QStringLiteral("%1=%2").arg(int(setting.control)).arg(setting.value);
    return words.join(' ');
}

QString settingOf(Control control, std::int64_t value)
{
    return textOf({{control, value}});
}

} // namespace

class StandardControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyControlHasOneRowOfItsOwn()
    {
        for (const StandardControlRow &row : STANDARD_CONTROLS) {
            QCOMPARE(&StandardControlRow::of(row.control), &row);
            for (const StandardControlRow &other : STANDARD_CONTROLS) {
                if (&row != &other && row.unit == other.unit)
                    QVERIFY(row.selector != other.selector && row.bit != other.bit);
            }
        }
    }

    void valuesTravelAsTheClassCodesThem()
    {
        const StandardControlRow &brightness = StandardControlRow::of(Control::Brightness);
        QCOMPARE(brightness.encode(-2), (std::vector<std::uint8_t>{0xFE, 0xFF}));
        QCOMPARE(brightness.decode({0xFE, 0xFF}), std::int64_t{-2});
        const StandardControlRow &exposure = StandardControlRow::of(Control::Exposure);
        QCOMPARE(exposure.encode(0x01020304), (std::vector<std::uint8_t>{4, 3, 2, 1}));
        QCOMPARE(exposure.decode({0xFF, 0xFF, 0xFF, 0xFF}), std::int64_t{0xFFFFFFFF});
        QCOMPARE(exposure.decode({}), std::int64_t{0});
    }

    void brightnessHasElevenSteps()
    {
        StandardControls controls = with(Control::Brightness, answers(-64, 64, 1, 0));
        QCOMPARE(*controls.read(BRIGHTNESS_MIN), 1UL);
        QCOMPARE(*controls.read(BRIGHTNESS_MAX), 11UL);
        QCOMPARE(*controls.read(BRIGHTNESS), 6UL);
        for (unsigned long level = 7; level <= 11; ++level) {
            QCOMPARE(controls.write(BRIGHTNESS_UP_KEY, 1)->size(), std::size_t{1});
            QVERIFY(controls.write(BRIGHTNESS_UP_KEY, 0)->empty());
            QCOMPARE(*controls.read(BRIGHTNESS), level);
        }
        QCOMPARE(controls.range(Control::Brightness).current, std::int64_t{64});
        QVERIFY(controls.write(BRIGHTNESS_UP_KEY, 1)->empty());
        for (int i = 0; i < 10; ++i)
            QCOMPARE(controls.write(BRIGHTNESS_DOWN_KEY, 1)->size(), std::size_t{1});
        QCOMPARE(controls.range(Control::Brightness).current, std::int64_t{-64});
        QCOMPARE(*controls.read(BRIGHTNESS), 1UL);
    }

    void aCameraWithFewerStepsStillMoves()
    {
        StandardControls controls = with(Control::Brightness, answers(0, 3, 1, 0));
        for (std::int64_t value = 1; value <= 3; ++value)
            QCOMPARE(textOf(*controls.write(BRIGHTNESS_UP_KEY, 1)),
                     settingOf(Control::Brightness, value));
        QCOMPARE(*controls.read(BRIGHTNESS), 11UL);
        QCOMPARE(textOf(*controls.write(BRIGHTNESS_DOWN_KEY, 1)),
                 settingOf(Control::Brightness, 2));
    }

    void theZoomStepsWhileItsKeyIsHeld()
    {
        StandardControls controls = with(Control::Zoom, answers(100, 500, 10, 100));
        QCOMPARE(*controls.read(OPTICAL_ZOOM_PERCENT), 0UL);
        QCOMPARE(textOf(*controls.write(ZOOM_IN_KEY, 1)), settingOf(Control::Zoom, 110));
        QVERIFY(controls.zooming());
        for (int i = 1; i < StandardControls::ZOOM_STEPS; ++i)
            QCOMPARE(controls.zoom().size(), std::size_t{1});
        QVERIFY(controls.zoom().empty());
        QCOMPARE(*controls.read(OPTICAL_ZOOM_PERCENT), 100UL);
        QVERIFY(controls.write(ZOOM_IN_KEY, 0)->empty());
        QVERIFY(!controls.zooming());
        QCOMPARE(textOf(*controls.write(ZOOM_OUT_KEY, 1)), settingOf(Control::Zoom, 490));
        // The key that was let go of first ends nothing.
        QVERIFY(controls.write(ZOOM_IN_KEY, 0)->empty());
        QVERIFY(controls.zooming());
        QVERIFY(controls.write(ZOOM_OUT_KEY, 0)->empty());
        QCOMPARE(textOf(*controls.write(OPTICAL_ZOOM_POSITION, 0)), settingOf(Control::Zoom, 100));
        QVERIFY(controls.write(DIGITAL_ZOOM, 1000)->empty());
        QCOMPARE(*controls.read(DIGITAL_ZOOM), 1000UL);
        QCOMPARE(*controls.read(SECOND_ZOOM), 1000UL);
    }

    void autofocusBeginsAnew()
    {
        StandardControls controls = with(Control::FocusAuto, switchAt(1));
        controls.learn(Control::Focus, answers(0, 250, 5, 60));
        QCOMPARE(textOf(*controls.write(AUTOFOCUS_KEY, 1)),
                 textOf({{Control::FocusAuto, 0}, {Control::FocusAuto, 1}}));
        QVERIFY(controls.write(AUTOFOCUS_KEY, 0)->empty());
        QCOMPARE(textOf(controls.set(Control::Focus, 103)),
                 textOf({{Control::FocusAuto, 0}, {Control::Focus, 105}}));
        QVERIFY(!controls.automatic(Control::Focus));
        QCOMPARE(textOf(*controls.write(AUTOFOCUS_KEY, 1)), settingOf(Control::FocusAuto, 1));
        QVERIFY(controls.automatic(Control::Focus));
    }

    void exposureTakesTheModesThatTheCameraHas()
    {
        const auto exposing = [](std::int64_t modes, std::int64_t mode) {
            ControlAnswers given;
            given.resolution = modes;
            given.current = mode;
            StandardControls controls = with(Control::ExposureAuto, given);
            controls.learn(Control::Exposure, answers(3, 2047, 1, 250));
            return controls;
        };
        StandardControls usual = exposing(1 | 8, 8);
        QVERIFY(usual.automatic(Control::Exposure));
        QCOMPARE(textOf(usual.setAutomatic(Control::Exposure, false)),
                 textOf({{Control::ExposureAuto, 1}, {Control::Exposure, 250}}));
        QCOMPARE(textOf(usual.set(Control::Exposure, 9999)), settingOf(Control::Exposure, 2047));
        QCOMPARE(textOf(usual.setAutomatic(Control::Exposure, true)),
                 settingOf(Control::ExposureAuto, 8));
        StandardControls full = exposing(2 | 4, 4);
        QVERIFY(!full.automatic(Control::Exposure));
        QCOMPARE(textOf(full.setAutomatic(Control::Exposure, true)),
                 settingOf(Control::ExposureAuto, 2));
        QCOMPARE(textOf(full.setAutomatic(Control::Exposure, false)),
                 textOf({{Control::ExposureAuto, 4}, {Control::Exposure, 250}}));
        QVERIFY(!exposing(1, 1).hasAutomatic(Control::Exposure));
    }

    void whatTheCameraDoesNotHaveIsRefused()
    {
        StandardControls none;
        for (const unsigned long parameter : {ZOOM_IN_KEY, ZOOM_OUT_KEY, AUTOFOCUS_KEY,
                                              BRIGHTNESS_UP_KEY, OPTICAL_ZOOM_POSITION, 5UL})
            QVERIFY(!none.write(parameter, 1));
        for (const unsigned long parameter :
             {BRIGHTNESS, BRIGHTNESS_MAX, OPTICAL_ZOOM_PERCENT, 5UL})
            QVERIFY(!none.read(parameter));
        QVERIFY(none.set(Control::Focus, 5).empty());
        QVERIFY(none.setAutomatic(Control::Focus, true).empty());
        QVERIFY(!none.automatic(Control::WhiteBalance));
    }

    void answersWithoutSenseAreNoControl_data()
    {
        QTest::addColumn<qint64>("minimum");
        QTest::addColumn<qint64>("maximum");
        QTest::newRow("minimum above maximum") << qint64{10} << qint64{5};
        QTest::newRow("one value") << qint64{7} << qint64{7};
    }

    void answersWithoutSenseAreNoControl()
    {
        QFETCH(qint64, minimum);
        QFETCH(qint64, maximum);
        QVERIFY(!with(Control::Zoom, answers(minimum, maximum, 1, 7)).has(Control::Zoom));
        ControlAnswers silent;
        silent.maximum = 100;
        QVERIFY(!with(Control::Zoom, silent).has(Control::Zoom));
        ControlAnswers fixed = answers(0, 9, 1, 0);
        fixed.settable = false;
        QVERIFY(!with(Control::Zoom, fixed).has(Control::Zoom));
    }

    void whateverACameraAnswersStaysWithinItsRange()
    {
        std::mt19937_64 random(20);
        const auto number = [&random] {
            const std::int64_t some[] = {0, 1, -1, 32767, -32768, 65535, 0xFFFFFFFF};
            return random() % 3 ? some[random() % 7] : static_cast<std::int64_t>(random() % 70000);
        };
        for (int i = 0; i < 20000; ++i) {
            StandardControls controls;
            for (const StandardControlRow &row : STANDARD_CONTROLS)
                controls.learn(row.control, answers(number(), number(), number(), number()));
            (void)controls.write(random() % 2 ? ZOOM_IN_KEY : ZOOM_OUT_KEY, 1);
            (void)controls.zoom();
            (void)controls.write(random() % 2 ? BRIGHTNESS_UP_KEY : BRIGHTNESS_DOWN_KEY, 1);
            (void)controls.write(AUTOFOCUS_KEY, 1);
            for (const StandardControlRow &row : STANDARD_CONTROLS) {
                if (!controls.has(row.control))
                    continue;
                (void)controls.setAutomatic(row.control, random() % 2);
                (void)controls.set(row.control, number());
                const ControlRange range = controls.range(row.control);
                QVERIFY(range.minimum < range.maximum && range.step >= 1);
                QVERIFY(range.current >= range.minimum && range.current <= range.maximum);
            }
            const auto level = controls.read(BRIGHTNESS);
            QVERIFY(!level || (*level >= 1 && *level <= 11));
            QVERIFY(controls.read(OPTICAL_ZOOM_PERCENT).value_or(0) <= 100);
        }
    }
};

REGISTER_PLAIN_TEST(StandardControlsTest)
#include "tst_standard_controls.moc"
