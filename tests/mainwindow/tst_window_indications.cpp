#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"

#include "tests/TestProgram.h"

#include <QAccessible>
#include <QPainter>
#include <QPushButton>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace WindowProbe;

namespace
{

OSDProcessor *indicationsOf(const MainWindow &window)
{
    return window.osdProcessors().value(window.currentCanvas());
}

/// What is painted over the picture now.
QImage painted(const MainWindow &window)
{
    QImage image(window.currentCanvas()->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    indicationsOf(window)->postPaint(&painter);
    return image;
}

void click(const MainWindow &window, Command button)
{
    window.button(button)->click();
}

/// Chooses in a tool's pop-up by the place of the choice.
void choose(const MainWindow &window, Command tool, int place)
{
    emit window.button(tool)->hold();
    QList<ImageButton *> choices;
    for (ImageButton *button : window.currentToolWindow()->findChildren<ImageButton *>()) {
        if (button->isCheckable())
            choices << button;
    }
    choices[place]->click();
}

/// What screen readers were told to say at once.
QStringList &alerts()
{
    static QStringList heard;
    return heard;
}

void hear(QAccessibleEvent *event)
{
    const auto *widget = qobject_cast<QWidget *>(event->object());
    if (event->type() == QAccessible::Alert && widget)
        alerts() << widget->accessibleName();
}

/// What they hear while something is done.
template <typename Deed>
QStringList heardWhile(Deed deed)
{
    alerts().clear();
    deed();
    return alerts();
}

/// Something that is done to a window, by its buttons or by direct calls.
using Deed = std::function<void(MainWindow &)>;

struct Case {
    const char *name;
    int mode;
    Deed byButton;
    /// The same to the canvas, and the indication that belongs to it.
    Deed byHand;
};

const std::vector<Case> &cases()
{
    static const std::vector<Case> all{
        {"optical zoom in", 0, [](MainWindow &w) { w.zoomInStart(); },
         [](MainWindow &w) { indicationsOf(w)->osdOpticalZoomOn(); }},
        {"optical zoom out", 0, [](MainWindow &w) { w.zoomOutStart(); },
         [](MainWindow &w) { indicationsOf(w)->osdOpticalZoomOn(); }},
        {"optical zoom reset", 0, [](MainWindow &w) { click(w, Command::ZoomReset); },
         [](MainWindow &w) { indicationsOf(w)->osdZoomIn(); }},
        {"auto focus", 0, [](MainWindow &w) { click(w, Command::AutoFocus); },
         [](MainWindow &w) { indicationsOf(w)->osdAutoFocus(); }},
        {"darker", 0, [](MainWindow &w) { click(w, Command::BrightnessDown); },
         [](MainWindow &w) { indicationsOf(w)->osdBrightness(); }},
        {"brighter", 0, [](MainWindow &w) { click(w, Command::BrightnessUp); },
         [](MainWindow &w) { indicationsOf(w)->osdBrightness(); }},
        {"turn", 0, [](MainWindow &w) { click(w, Command::Rotate); },
         [](MainWindow &w) {
             w.currentCanvas()->rotate();
             indicationsOf(w)->osdRotate();
         }},
        {"turn back", 0, [](MainWindow &w) { w.rotateRev(); },
         [](MainWindow &w) {
             w.currentCanvas()->rotateRev();
             indicationsOf(w)->osdRotate();
         }},
        {"freeze", 0, [](MainWindow &w) { click(w, Command::Freeze); },
         [](MainWindow &w) {
             w.currentCanvas()->frozen = true;
             indicationsOf(w)->osdFreeze();
         }},
        {"macro", 0,
         [](MainWindow &w) {
             // A checkable button, as somebody may place one.
             QPushButton button;
             button.setCheckable(true);
             QObject::connect(&button, SIGNAL(clicked()), &w, SLOT(macro()));
             button.click();
         },
         [](MainWindow &w) { indicationsOf(w)->osdMacro(true); }},
        {"mask", Modes::DrawingBoard, [](MainWindow &w) { choose(w, Command::Mask, 1); },
         [](MainWindow &w) {
             w.currentCanvas()->maskMode = CanvasModes::MaskRectangle;
             indicationsOf(w)->osdMask();
         }},
        {"effect", Modes::DrawingBoard, [](MainWindow &w) { choose(w, Command::Effect, 1); },
         [](MainWindow &w) {
             w.currentCanvas()->effectMode = CanvasModes::EffectBW;
             indicationsOf(w)->osdEffect();
         }},
        {"record", 0, [](MainWindow &w) { click(w, Command::Record); },
         [](MainWindow &w) { indicationsOf(w)->osdRecord(); }},
        {"zoom in", Modes::DrawingBoard, [](MainWindow &w) { w.zoomInStart(); },
         [](MainWindow &w) {
             w.currentCanvas()->zoomIn();
             indicationsOf(w)->osdZoomIn();
         }},
        {"zoom out", Modes::DrawingBoard, [](MainWindow &w) { w.zoomOutStart(); },
         [](MainWindow &w) {
             w.currentCanvas()->zoomOut();
             indicationsOf(w)->osdZoomOut();
         }},
        {"zoom reset", Modes::DrawingBoard, [](MainWindow &w) { click(w, Command::ZoomReset); },
         [](MainWindow &w) {
             w.currentCanvas()->zoomReset();
             indicationsOf(w)->osdZoomIn();
         }},
    };
    return all;
}

} // namespace

/// Every action shows its own indication on the canvas of the mode.
class WindowIndicationsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void actionsShowTheirIndications_data();
    void actionsShowTheirIndications();
    void theZoomIndicationGoesWithTheButton();
    void theClockEndsWithTheRecording();
    void screenReadersHearEachIndicationOnce();
};

void WindowIndicationsTest::actionsShowTheirIndications_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < cases().size(); ++i)
        QTest::newRow(cases()[i].name) << int(i);
}

void WindowIndicationsTest::actionsShowTheirIndications()
{
    QFETCH(int, index);
    const Case &each = cases()[std::size_t(index)];
    MainWindow window;
    MainWindow reference;
    for (MainWindow *either : {&window, &reference}) {
        either->show();
        enter(*either, each.mode);
        indicationsOf(*either)->setClock([] { return 1000; });
    }
    const QImage nothing = painted(window);
    each.byButton(window);
    each.byHand(reference);
    QVERIFY(painted(window) != nothing);
    QCOMPARE(painted(window), painted(reference));
}

void WindowIndicationsTest::theZoomIndicationGoesWithTheButton()
{
    MainWindow window;
    window.show();
    const QImage nothing = painted(window);
    for (const Command which : {Command::ZoomIn, Command::ZoomOut}) {
        QTest::mousePress(window.button(which), Qt::LeftButton);
        QVERIFY(painted(window) != nothing);
        QTest::mouseRelease(window.button(which), Qt::LeftButton);
        QCOMPARE(painted(window), nothing);
    }
}

void WindowIndicationsTest::theClockEndsWithTheRecording()
{
    MainWindow window;
    window.show();
    const QImage nothing = painted(window);
    click(window, Command::Record);
    QVERIFY(painted(window) != nothing);
    click(window, Command::Record);
    QCOMPARE(painted(window), nothing);
}

void WindowIndicationsTest::screenReadersHearEachIndicationOnce()
{
    // A screen reader would do so; without one nothing is told.
    QPlatformAccessibility *platform =
        QGuiApplicationPrivate::platformIntegration()->accessibility();
    QVERIFY(platform);
    platform->setActive(true);
    const auto before = QAccessible::installUpdateHandler(hear);
    MainWindow window;
    window.show();
    const auto clicked = [&window](Command command) {
        return heardWhile([&] { click(window, command); });
    };
    QCOMPARE(clicked(Command::Freeze), QStringList("The picture is frozen."));
    QCOMPARE(clicked(Command::Freeze), QStringList("The picture moves again."));
    QCOMPARE(clicked(Command::BrightnessUp), QStringList("Brightness"));
    QCOMPARE(clicked(Command::BrightnessDown), QStringList("Brightness"));
    QCOMPARE(heardWhile([&window] {
                 window.zoomInStart();
                 (void)painted(window);
                 window.zoomInStop();
             }),
             QStringList("Zoom"));
    QCOMPARE(clicked(Command::DrawingBoardMode), QStringList("Drawing Board"));
    QCOMPARE(heardWhile([&window] { window.zoomInStart(); }), QStringList("Zoom 2x"));
    QCOMPARE(heardWhile([&window] { window.zoomOutStart(); }), QStringList("Zoom 1x"));
    QCOMPARE(heardWhile([&window] {
                 click(window, Command::Snapshot);
                 QTRY_VERIFY(!alerts().isEmpty());
             }),
             QStringList("Snapshot taken."));
    QCOMPARE(clicked(Command::LiveMode), QStringList("Live"));
    QCOMPARE(clicked(Command::Record), QStringList("Recording has begun."));
    QCOMPARE(clicked(Command::Record), QStringList("Recording has ended."));
    QAccessible::installUpdateHandler(before);
    platform->setActive(false);
}

REGISTER_TEST(WindowIndicationsTest)
#include "tst_window_indications.moc"
