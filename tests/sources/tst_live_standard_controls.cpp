#include "sources/camera/CameraParameters.h"
#include "sources/camera/CameraSettings.h"
#include "tests/SideBySide.h"
#include "tests/sources/KeptRig.h"
#include "tools/virtualcamera/ForeignMake.h"

#include <QSignalSpy>

using Control = StandardControl;

namespace
{

VirtualCameraConfig controlled(std::vector<UnitControl> controls)
{
    VirtualCameraConfig config = rigCamera();
    ForeignMake::apply(config, "S1", "Foreign camera");
    config.controls = std::move(controls);
    return config;
}

struct ControlledRig : KeptRig {
    explicit ControlledRig(const VirtualCameraConfig &config)
    {
        keeper.choose(CameraIdentity{config.vendorId, config.productId, config.serial});
    }

    /// With all that the camera has told of its controls.
    bool bringUp(VirtualCamera &camera)
    {
        QSignalSpy ready(&source->cameraSettings(), &CameraSettings::ready);
        return KeptRig::bringUp(camera) && (!ready.isEmpty() || ready.wait(TIMEOUT_MS));
    }
};

/// Whether the camera comes to stand there.
bool comesTo(VirtualCamera &camera, Control control, std::int64_t value)
{
    return QTest::qWaitFor([&] { return camera.unitControls().value(control) == value; },
                           LiveRig::TIMEOUT_MS);
}

std::vector<std::int64_t> writesOf(const std::vector<UnitWrite> &writes, Control control)
{
    std::vector<std::int64_t> values;
    for (const UnitWrite &write : writes) {
        if (write.control == control)
            values.push_back(write.value);
    }
    return values;
}

} // namespace

/// Zoom, focus and brightness of cameras without the vendor's unit, over the library.
class LiveStandardControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void brightnessHasElevenSteps()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        QCOMPARE(rig.source->brightnessMin(), 1);
        QCOMPARE(rig.source->brightnessMax(), 11);
        QCOMPARE(rig.source->brightness(), 6);
        rig.source->brightnessUp();
        QCOMPARE(rig.source->brightness(), 7);
        QVERIFY(comesTo(camera, Control::Brightness, 12));
        for (int i = 0; i < 12; ++i)
            rig.source->brightnessDown();
        QCOMPARE(rig.source->brightness(), 1);
        QVERIFY(comesTo(camera, Control::Brightness, -64));
    }

    void theZoomMovesWhileItsKeyIsHeld()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        QVERIFY(rig.source->cameraZooms());
        QCOMPARE(rig.source->opticalZoomPercent(), 0.0);
        QCOMPARE(rig.source->digitalZoomPercent(), 1.0);
        rig.source->zoomInStart();
        QVERIFY(comesTo(camera, Control::Zoom, 500));
        QCOMPARE(rig.source->opticalZoomPercent(), 1.0);
        rig.source->zoomInStop();
        const auto steps = writesOf(camera.unitControls().takeWrites(), Control::Zoom);
        QVERIFY2(steps.size() > 20, qPrintable(QString::number(steps.size())));
        QVERIFY(std::is_sorted(steps.begin(), steps.end()));
        rig.source->zoomOutStart();
        QVERIFY(QTest::qWaitFor([&] { return camera.unitControls().value(Control::Zoom) < 480; },
                                LiveRig::TIMEOUT_MS));
        rig.source->zoomOutStop();
        // What was sent before the key was let go of arrives, and nothing after it.
        const double percent = rig.source->opticalZoomPercent();
        QTest::qWait(300);
        QCOMPARE(rig.source->opticalZoomPercent(), percent);
        rig.source->zoomReset();
        QVERIFY(comesTo(camera, Control::Zoom, 100));
    }

    void aZoomKeyThatComesBeforeTheAnswersCounts_data()
    {
        QTest::addColumn<bool>("held");
        QTest::newRow("held") << true;
        QTest::newRow("let go of before they come") << false;
    }

    void aZoomKeyThatComesBeforeTheAnswersCounts()
    {
        QFETCH(bool, held);
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        LiveSource *source = rig.source.get();
        connect(&source->cameraSettings(), &CameraSettings::cameraChanged, source, [=] {
            if (!source->cameraSettings().controls().empty())
                return;
            source->zoomInStart();
            if (!held)
                source->zoomInStop();
        });
        QVERIFY(rig.bringUp(camera));
        QVERIFY(comesTo(camera, Control::Zoom, held ? 500 : 110));
    }

    void aCameraWithTheVendorsUnitIsAskedWhenSomebodyWantsTo()
    {
        VirtualCameraConfig config = rigCamera();
        config.controls = ForeignMake::usualControls();
        VirtualCamera camera(config);
        KeptRig rig;
        QVERIFY(rig.bringUp(camera));
        rig.source->brightnessUp();
        QVERIFY(rig.waitForFrames());
        QCOMPARE(camera.unitControls().questions(), 0);
        CameraSettings &settings = rig.source->cameraSettings();
        QSignalSpy ready(&settings, &CameraSettings::ready);
        settings.ask();
        QVERIFY(!ready.isEmpty() || ready.wait(LiveRig::TIMEOUT_MS));
        QCOMPARE(settings.controls().range(Control::Exposure).maximum, std::int64_t{5000});
        const int questions = camera.unitControls().questions();
        settings.ask();
        QVERIFY(rig.waitForFrames());
        QCOMPARE(camera.unitControls().questions(), questions);
    }

    void theFocusKeyBeginsAnew()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        (void)camera.unitControls().takeWrites();
        rig.source->autoFocus();
        std::vector<std::int64_t> writes;
        QVERIFY(QTest::qWaitFor(
            [&] {
                for (const std::int64_t value :
                     writesOf(camera.unitControls().takeWrites(), Control::FocusAuto))
                    writes.push_back(value);
                return writes.size() >= 2;
            },
            LiveRig::TIMEOUT_MS));
        QCOMPARE(writes, (std::vector<std::int64_t>{0, 1}));
    }

    void whatACameraLacksIsLeftOut()
    {
        const VirtualCameraConfig config =
            controlled({{Control::Zoom, 9, 3, 1, 3}, {Control::Sharpness, 0, 6, 0, 3}});
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        QVERIFY(!rig.source->cameraZooms());
        const StandardControls &controls = rig.source->cameraSettings().controls();
        QVERIFY(!controls.has(Control::Zoom) && controls.has(Control::Sharpness));
        QCOMPARE(controls.range(Control::Sharpness).step, std::int64_t{1});
        rig.source->zoomInStart();
        rig.source->zoomInStop();
        rig.source->autoFocus();
        rig.source->brightnessUp();
        QCOMPARE(rig.source->brightness(), 0);
        QVERIFY(rig.waitForFrames());
        QVERIFY(camera.unitControls().takeWrites().empty());
    }

    void whatIsSetByHandSwitchesTheAutomaticOff()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        CameraSettings &settings = rig.source->cameraSettings();
        const struct {
            Control control;
            std::int64_t value;
            Control automatic;
        } rows[] = {{Control::Exposure, 321, Control::ExposureAuto},
                    {Control::Focus, 512, Control::FocusAuto},
                    {Control::WhiteBalance, 3200, Control::WhiteBalanceAuto}};
        for (const auto &row : rows) {
            QVERIFY(settings.controls().automatic(row.control));
            const std::int64_t before = camera.unitControls().value(row.automatic);
            settings.set(row.control, row.value);
            QVERIFY(comesTo(camera, row.control, row.value));
            QVERIFY(!settings.controls().automatic(row.control));
            settings.setAutomatic(row.control, true);
            QVERIFY(comesTo(camera, row.automatic, before));
        }
        for (const UnitWrite &write : camera.unitControls().takeWrites())
            QVERIFY(write.taken);
        // What the camera sets by itself is asked for.
        camera.unitControls().setValue(Control::Exposure, 77);
        settings.refresh();
        QTRY_COMPARE_WITH_TIMEOUT(settings.controls().range(Control::Exposure).current,
                                  std::int64_t{77}, LiveRig::TIMEOUT_MS);
    }

    void ofManyValuesTheLastOneArrives()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        (void)camera.unitControls().takeWrites();
        constexpr int VALUES = 1000;
        for (int value = 0; value < VALUES; ++value)
            rig.source->cameraSettings().set(Control::Focus, value);
        QVERIFY(comesTo(camera, Control::Focus, VALUES - 1));
        // On a machine at rest two or three, and another one whenever a busy one leaves off
        // setting.
        QVERIFY(writesOf(camera.unitControls().takeWrites(), Control::Focus).size() < VALUES / 10);
    }

    void aRefusedValueIsNotTakenForTheCameras()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        camera.faults().stallControls = 1;
        rig.source->cameraSettings().set(Control::Sharpness, 5);
        QTRY_COMPARE_WITH_TIMEOUT(
            rig.source->cameraSettings().controls().range(Control::Sharpness).current,
            std::int64_t{3}, LiveRig::TIMEOUT_MS);
    }

    void aCameraThatDoesNotAnswerShowsItsPictureAllTheSame()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QSignalSpy frames(&rig.source->cameraSettings(), &CameraSettings::changed);
        QVERIFY(rig.KeptRig::bringUp(camera));
        camera.faults().hangControls = -1;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 50; ++i) {
            rig.source->brightnessUp();
            rig.source->zoomInStart();
            rig.source->zoomInStop();
            (void)rig.source->brightness();
        }
        // Nobody waits for such a camera; a waiting call would take many times as long.
        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(rig.waitForFrames());
        camera.faults().hangControls = 0;
    }

    void aQuestionWithoutAnAnswerIsGivenUpAndAskedAgainLater()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        CameraSettings &settings = rig.source->cameraSettings();
        const auto exposure = [&settings] {
            return settings.controls().range(Control::Exposure).current;
        };
        QCOMPARE(exposure(), std::int64_t{157});
        camera.unitControls().setValue(Control::Exposure, 300);
        camera.faults().hangControls = -1;
        settings.refresh();
        QVERIFY(settings.asking());
        QTRY_VERIFY_WITH_TIMEOUT(!settings.asking(), LiveRig::TIMEOUT_MS);
        // What was known stays known.
        QVERIFY(settings.drives() && settings.controls().has(Control::Zoom));
        QCOMPARE(exposure(), std::int64_t{157});
        QVERIFY(rig.waitForFrames());

        camera.faults().hangControls = 0;
        const auto isAnswered = [&] {
            settings.refresh();
            return exposure() == 300;
        };
        QVERIFY(QTest::qWaitFor(isAnswered, LiveRig::TIMEOUT_MS));
    }

    void theReturnedCameraIsAskedAgain()
    {
        const VirtualCameraConfig config = controlled(ForeignMake::usualControls());
        VirtualCamera camera(config);
        ControlledRig rig(config);
        QVERIFY(rig.bringUp(camera));
        rig.source->brightnessUp();
        QVERIFY(comesTo(camera, Control::Brightness, 12));
        camera.unplug();
        QVERIFY(rig.waitForState(CameraStatus::State::Unplugged));
        QSignalSpy ready(&rig.source->cameraSettings(), &CameraSettings::ready);
        QVERIFY(plugAndWait(camera, rig) >= 0);
        QVERIFY(!ready.isEmpty() || ready.wait(LiveRig::TIMEOUT_MS));
        QCOMPARE(rig.source->brightness(), 6); // it has lost its power meanwhile
    }
};

REGISTER_TEST_SIDE_BY_SIDE(LiveStandardControlsTest)
#include "tst_live_standard_controls.moc"
