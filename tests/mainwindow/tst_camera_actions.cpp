#include "mainwindow/actions/CameraActions.h"

#include "sources/LiveSourceBase.h"
#include "sources/camera/CameraParameters.h"

#include "tests/TestProgram.h"
#include "tests/mainwindow/HelperScene.h"

#include <QPointer>
#include <QTest>

#include <cstring>

namespace
{

/// A camera that keeps what is written to it.
class WrittenCamera : public LiveSourceBase
{
public:
    bool running() const override { return true; }
    int ksPropSet(unsigned long, void *data, unsigned long length) override
    {
        unsigned long value = 0;
        std::memcpy(&value, data, length);
        written << value;
        return int(length);
    }
    int ksPropGet(unsigned long, void *, unsigned long) override { return -1; }

    QList<unsigned long> written;
};

struct CameraScene : HelperScene {
    WrittenCamera camera;
    CameraActions actions{&deck, &popups, &camera};
};

} // namespace

/// What the buttons of camera and view do, without a window.
class CameraActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyActionClosesThePopUp_data();
    void everyActionClosesThePopUp();
    void zoomIsTheCamerasOnTheLiveCanvasAlone();
    void aZoomThatWasStartedIsReleasedOnce();
    void theCanvasIsTurnedAndFrozen();
};

using Action = void (*)(CameraActions &);
Q_DECLARE_METATYPE(Action)

void CameraActionsTest::everyActionClosesThePopUp_data()
{
    QTest::addColumn<Action>("action");
    QTest::newRow("zoom in") << Action([](CameraActions &a) { a.zoomInStart(); });
    QTest::newRow("zoom in ends") << Action([](CameraActions &a) { a.zoomInStop(); });
    QTest::newRow("zoom out") << Action([](CameraActions &a) { a.zoomOutStart(); });
    QTest::newRow("zoom out ends") << Action([](CameraActions &a) { a.zoomOutStop(); });
    QTest::newRow("reset") << Action([](CameraActions &a) { a.zoomReset(); });
    QTest::newRow("focus") << Action([](CameraActions &a) { a.autoFocus(); });
    QTest::newRow("darker") << Action([](CameraActions &a) { a.brightnessDown(); });
    QTest::newRow("brighter") << Action([](CameraActions &a) { a.brightnessUp(); });
    QTest::newRow("turn") << Action([](CameraActions &a) { a.rotate(); });
    QTest::newRow("turn back") << Action([](CameraActions &a) { a.rotateRev(); });
    QTest::newRow("macro") << Action([](CameraActions &a) { a.setMacro(true); });
    QTest::newRow("freeze") << Action([](CameraActions &a) { a.setFrozen(true); });
}

void CameraActionsTest::everyActionClosesThePopUp()
{
    QFETCH(Action, action);
    for (const int mode : {Modes::Live, Modes::Film}) {
        CameraScene scene;
        scene.deck.setMode(mode);
        const QPointer<ToolWindow> popup = scene.open(Command::Line);
        QVERIFY(popup);
        action(scene.actions);
        QVERIFY(!popup);
    }
}

void CameraActionsTest::zoomIsTheCamerasOnTheLiveCanvasAlone()
{
    CameraScene scene;
    scene.actions.zoomInStart();
    QVERIFY(scene.camera.written.contains(CameraParameter::ZOOM_IN_KEY));
    QCOMPARE(scene.deck.current()->zoomScale(), scene.deck.current()->minimumScale());
    scene.actions.zoomInStop();
    // The wheel has zoomed the canvas: a reset undoes that too.
    scene.deck.current()->zoom({640, 360}, 3);
    scene.camera.written.clear();
    scene.actions.zoomReset();
    QVERIFY(!scene.camera.written.isEmpty());
    QCOMPARE(scene.deck.current()->zoomScale(), scene.deck.current()->minimumScale());

    scene.deck.setMode(Modes::Film);
    scene.camera.written.clear();
    QImage picture(1280, 720, QImage::Format_RGB32);
    picture.fill(Qt::white);
    scene.deck.current()->imageCaptured(picture);
    const double before = scene.deck.current()->zoomScale();
    scene.actions.zoomInStart();
    scene.actions.zoomInStop();
    QVERIFY(scene.deck.current()->zoomScale() > before);
    scene.actions.zoomReset();
    QCOMPARE(scene.deck.current()->zoomScale(), scene.deck.current()->minimumScale());
    QVERIFY(scene.camera.written.isEmpty());
}

void CameraActionsTest::aZoomThatWasStartedIsReleasedOnce()
{
    CameraScene scene;
    scene.actions.releaseZoom();
    QVERIFY(scene.camera.written.isEmpty());
    scene.actions.zoomOutStart();
    scene.camera.written.clear();
    scene.actions.releaseZoom();
    const int written = scene.camera.written.size();
    QVERIFY(written > 0);
    scene.actions.releaseZoom();
    QCOMPARE(scene.camera.written.size(), written);
}

void CameraActionsTest::theCanvasIsTurnedAndFrozen()
{
    CameraScene scene;
    scene.deck.setMode(Modes::Photograph);
    scene.actions.rotate();
    QCOMPARE(scene.deck.current()->rotation(), 1);
    scene.actions.rotateRev();
    QCOMPARE(scene.deck.current()->rotation(), 0);
    scene.actions.setFrozen(true);
    QVERIFY(scene.deck.current()->frozen);
    QVERIFY(!scene.deck.canvas(Modes::Live)->frozen);
}

REGISTER_TEST(CameraActionsTest)
#include "tst_camera_actions.moc"
