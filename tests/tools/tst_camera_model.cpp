#include "sources/camera/CameraParameters.h"
#include "tests/TestProgram.h"
#include "tools/virtualcamera/CameraModel.h"

#include <QtTest>

namespace P = CameraParameter;

class CameraModelTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWideSharpAndAtTheMiddleLevel();
    void zoomInKeyDrivesTheLensAndThenTheDigitalFactor();
    void zoomOutKeyGoesTheSameWayBack();
    void bothZoomKeysHoldTheLensStill();
    void resetIsWrittenAsValues();
    void brightnessStepsOncePerKeyPressAndStopsAtTheEnds();
    void autofocusBlursAndSharpens();
    void overridesAnswerInsteadOfTheCamera();
    void powerOnForgetsEverythingButOverrides();
    void unknownParametersReadAsZero();
};

void CameraModelTest::startsWideSharpAndAtTheMiddleLevel()
{
    CameraModel model;
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 0), quint64(0));
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 0), quint64(1000));
    QCOMPARE(model.read(P::SECOND_ZOOM, 0), quint64(1000));
    QCOMPARE(model.read(P::BRIGHTNESS_MIN, 0), quint64(1));
    QCOMPARE(model.read(P::BRIGHTNESS_MAX, 0), quint64(11));
    QCOMPARE(model.read(P::BRIGHTNESS, 0), quint64(6));
    QCOMPARE(model.view(5000), CameraView());
}

void CameraModelTest::zoomInKeyDrivesTheLensAndThenTheDigitalFactor()
{
    CameraModel model;
    model.write(P::ZOOM_IN_KEY, 1, 1000);
    QCOMPARE(model.read(P::ZOOM_IN_KEY, 1000), quint64(1));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 1250), quint64(25));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 2000), quint64(100));
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 2000), quint64(1000));
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 2500), quint64(2000));
    QCOMPARE(model.view(2500).zoom, 6.0);
    model.write(P::ZOOM_IN_KEY, 0, 2500);
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 9000), quint64(2000));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 9000), quint64(100));
    QCOMPARE(model.read(P::SECOND_ZOOM, 9000), quint64(1000));

    model.write(P::ZOOM_IN_KEY, 1, 10000);
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 60000), quint64(4000));
}

void CameraModelTest::zoomOutKeyGoesTheSameWayBack()
{
    CameraModel model;
    model.write(P::ZOOM_IN_KEY, 1, 0);
    model.write(P::ZOOM_IN_KEY, 0, 2500);
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 2500), quint64(4000));
    model.write(P::ZOOM_OUT_KEY, 1, 3000);
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 4000), quint64(2000));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 4500), quint64(100));
    QCOMPARE(model.read(P::DIGITAL_ZOOM, 4500), quint64(1000));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 5100), quint64(40));
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 50000), quint64(0));
}

void CameraModelTest::bothZoomKeysHoldTheLensStill()
{
    CameraModel model;
    model.write(P::ZOOM_IN_KEY, 1, 0);
    model.write(P::ZOOM_OUT_KEY, 1, 300);
    QCOMPARE(model.read(P::OPTICAL_ZOOM_PERCENT, 5000), quint64(30));
}

void CameraModelTest::resetIsWrittenAsValues()
{
    CameraModel model;
    model.write(P::ZOOM_IN_KEY, 1, 0);
    model.write(P::ZOOM_IN_KEY, 0, 1500);
    model.write(P::OPTICAL_ZOOM_POSITION, 0, 1600);
    model.write(P::DIGITAL_ZOOM, 1000, 1600);
    QCOMPARE(model.view(1600), CameraView());
}

void CameraModelTest::brightnessStepsOncePerKeyPressAndStopsAtTheEnds()
{
    CameraModel model;
    model.write(P::BRIGHTNESS_UP_KEY, 1, 0);
    model.write(P::BRIGHTNESS_UP_KEY, 1, 0); // still held
    QCOMPARE(model.read(P::BRIGHTNESS, 0), quint64(7));
    QVERIFY(model.view(0).brightness > 1.0);
    for (int i = 0; i < 20; ++i) {
        model.write(P::BRIGHTNESS_UP_KEY, 0, 0);
        model.write(P::BRIGHTNESS_UP_KEY, 1, 0);
    }
    QCOMPARE(model.read(P::BRIGHTNESS, 0), quint64(11));
    for (int i = 0; i < 20; ++i) {
        model.write(P::BRIGHTNESS_DOWN_KEY, 1, 0);
        model.write(P::BRIGHTNESS_DOWN_KEY, 0, 0);
    }
    QCOMPARE(model.read(P::BRIGHTNESS, 0), quint64(1));
    QVERIFY(model.view(0).brightness < 1.0);
}

void CameraModelTest::autofocusBlursAndSharpens()
{
    CameraModel model;
    model.write(P::AUTOFOCUS_KEY, 1, 1000);
    model.write(P::AUTOFOCUS_KEY, 0, 1000);
    QVERIFY(model.view(1100).blur > 0.0);
    QCOMPARE(model.view(1280).blur, 1.0);
    QVERIFY(model.view(1600).blur < model.view(1280).blur);
    QVERIFY(model.view(1799).blur > 0.0);
    QCOMPARE(model.view(1800).blur, 0.0);
}

void CameraModelTest::overridesAnswerInsteadOfTheCamera()
{
    CameraModel model;
    model.override(P::BRIGHTNESS_MAX, 0);
    model.override(P::SECOND_ZOOM, 1500);
    QCOMPARE(model.read(P::BRIGHTNESS_MAX, 0), quint64(0));
    QCOMPARE(model.read(P::SECOND_ZOOM, 0), quint64(1500));
    model.clearOverrides();
    QCOMPARE(model.read(P::BRIGHTNESS_MAX, 0), quint64(11));
}

void CameraModelTest::powerOnForgetsEverythingButOverrides()
{
    CameraModel model;
    model.override(P::BRIGHTNESS_MIN, 3);
    model.write(P::ZOOM_IN_KEY, 1, 0);
    model.write(P::BRIGHTNESS_UP_KEY, 1, 100);
    model.powerOn();
    QCOMPARE(model.view(5000), CameraView());
    QCOMPARE(model.read(P::BRIGHTNESS_MIN, 5000), quint64(3));
}

void CameraModelTest::unknownParametersReadAsZero()
{
    CameraModel model;
    model.write(0x70000099, 5, 0);
    QCOMPARE(model.read(0x70000099, 0), quint64(0));
}

REGISTER_CORE_TEST(CameraModelTest)
#include "tst_camera_model.moc"
