#include "tests/widgets/PopupTest.h"
#include "widgets/AboutToolWindow.h"
#include "widgets/ColorToolWindow.h"
#include "widgets/ToolWindow.h"

#include "tests/TestProgram.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>

namespace
{

QImage ground(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGray);
    return image;
}

/// A pop-up beside the button of a window that has room for it on the screen.
struct PlacedPopup {
    [[nodiscard]] bool isShown()
    {
        scene.window.move(50, 40);
        scene.window.show();
        const bool exposed = QTest::qWaitForWindowExposed(&scene.window);
        popup.show();
        return exposed;
    }

    PopupScene scene;
    ToolWindow popup{ground(200, 100), &scene.toolButton, &scene.window, "Title"};
};

} // namespace

class ToolWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void isAFramelessToolWindowOfItsBackgroundsSize();
    void titleAndCloseButtonStandInTheStrip();
    void aTitleInATallerScriptStaysInTheStrip();
    void standsRightOfItsButton();
    void isPushedBackIntoTheWorkArea();
    void followsTheMainWindow();
    void followsAButtonThatIsPlacedAfterTheResize();
    void alignsAgainWhenItGetsItsBackground();
    void closingOnlyHidesIt();
    void escapeClosesIt();
    void losesInterestWhenTheFocusGoesElsewhere();
    void diesWithTheMainWindow();
    void aboutNamesTheVersionAndClosesByOk();
};

void ToolWindowTest::isAFramelessToolWindowOfItsBackgroundsSize()
{
    PopupScene scene;
    const ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    QCOMPARE(popup.windowFlags() & 0x80B, Qt::WindowFlags(0x80B));
    QCOMPARE(popup.size(), QSize(200, 100));
    QCOMPARE(popup.minimumSize(), QSize(200, 100));
    QCOMPARE(popup.toolButton(), &scene.toolButton);
    QVERIFY(!popup.testAttribute(Qt::WA_DeleteOnClose));
}

void ToolWindowTest::titleAndCloseButtonStandInTheStrip()
{
    PopupScene scene;
    ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    popup.show();
    const auto *label = popup.findChild<QLabel *>();
    QVERIFY(label);
    QCOMPARE(label->text(), QString("Title"));
    QCOMPARE(label->pos(), QPoint(8, 2));
    QCOMPARE(label->styleSheet(), QString("font-family: Arial; font-size: 14px; color: white;"));
    const auto *close = popup.findChild<ImageButton *>();
    QVERIFY(close);
    QCOMPARE(close->pos(), QPoint(200 - 18, 4));
    QVERIFY(!close->accessibleName().isEmpty());
}

void ToolWindowTest::aTitleInATallerScriptStaysInTheStrip()
{
    constexpr int STRIP = 18;
    PopupScene scene;
    for (const char *title : {"Title", "長方形", "Прямоугольник"}) {
        ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window,
                         QString::fromUtf8(title));
        popup.show();
        const auto *label = popup.findChild<QLabel *>();
        QVERIFY2(label->geometry().bottom() < STRIP, title);
        QVERIFY2(label->width() >= label->sizeHint().width(), title);
    }
}

void ToolWindowTest::standsRightOfItsButton()
{
    PlacedPopup placed;
    QVERIFY(placed.isShown());
    const QPoint expected =
        placed.scene.toolButton.mapToGlobal(QPoint(placed.scene.toolButton.width() + 3, 0));
    QCOMPARE(placed.popup.pos(), expected);
}

void ToolWindowTest::isPushedBackIntoTheWorkArea()
{
    PopupScene scene;
    const QSize area = QGuiApplication::primaryScreen()->availableGeometry().size();
    scene.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
    scene.window.move(area.width() - 100, area.height() - 60);
    ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    popup.show();
    QCOMPARE(popup.pos(), QPoint(area.width() - 200, area.height() - 100));
}

void ToolWindowTest::followsTheMainWindow()
{
    PlacedPopup placed;
    QVERIFY(placed.isShown());
    const QPoint before = placed.popup.pos();
    placed.scene.window.move(90, 100);
    QTRY_COMPARE(placed.popup.pos(), before + QPoint(40, 60));

    placed.scene.toolButton.move(30, 20);
    placed.scene.window.resize(820, 600);
    QTRY_COMPARE(placed.popup.pos(), before + QPoint(60, 60));
}

void ToolWindowTest::followsAButtonThatIsPlacedAfterTheResize()
{
    PlacedPopup placed;
    QVERIFY(placed.isShown());
    const QPoint before = placed.popup.pos();
    placed.scene.window.resize(800, 620);
    QCoreApplication::processEvents();
    placed.scene.toolButton.move(placed.scene.toolButton.pos() + QPoint(0, 20));
    QCOMPARE(placed.popup.pos(), before + QPoint(0, 20));
}

void ToolWindowTest::alignsAgainWhenItGetsItsBackground()
{
    PopupScene scene;
    const QSize area = QGuiApplication::primaryScreen()->availableGeometry().size();
    scene.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
    scene.window.move(area.width() - 100, 40);
    // Built without an image, which it gets from the number of its rows.
    ColorToolWindow popup(&scene.toolButton, &scene.window, "Line", "Width", "", "");
    QVERIFY(popup.width() > 100);
    QCOMPARE(popup.x(), area.width() - popup.width());
}

void ToolWindowTest::closingOnlyHidesIt()
{
    PopupScene scene;
    const QPointer<ToolWindow> popup =
        new ToolWindow(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    popup->show();
    QTest::mouseClick(popup->findChild<ImageButton *>(), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(popup);
    QVERIFY(!popup->isVisible());
}

void ToolWindowTest::escapeClosesIt()
{
    PopupScene scene;
    ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    popup.show();
    QTest::keyClick(&popup, Qt::Key_A);
    QVERIFY(popup.isVisible());
    QTest::keyClick(&popup, Qt::Key_Escape);
    QVERIFY(!popup.isVisible());
}

void ToolWindowTest::losesInterestWhenTheFocusGoesElsewhere()
{
    PopupScene scene;
    ToolWindow popup(ground(200, 100), &scene.toolButton, &scene.window, "Title");
    auto *inner = new QWidget(&popup);
    popup.show();
    popup.focusChanged(nullptr, &popup);
    QVERIFY(popup.isVisible());
    popup.focusChanged(nullptr, inner);
    QVERIFY(popup.isVisible());
    popup.focusChanged(nullptr, &scene.toolButton);
    QVERIFY(!popup.isVisible());
    popup.show();
    popup.focusChanged(nullptr, nullptr);
    QVERIFY(!popup.isVisible());
}

void ToolWindowTest::diesWithTheMainWindow()
{
    auto scene = std::make_unique<PopupScene>();
    const QPointer<ToolWindow> popup =
        new ToolWindow(ground(200, 100), &scene->toolButton, &scene->window, "Title");
    popup->show();
    scene.reset();
    QVERIFY(!popup);
}

void ToolWindowTest::aboutNamesTheVersionAndClosesByOk()
{
    PopupScene scene;
    AboutToolWindow popup(&scene.toolButton, &scene.window, ground(256, 108));
    popup.show();
    QStringList labels;
    for (const QLabel *label : popup.findChildren<QLabel *>())
        labels << QString("%1 %2,%3").arg(label->text()).arg(label->x()).arg(label->y());
    QCOMPARE(labels, (QStringList{"About 8,2", "Version 1.00 20,30"}));
    const auto buttons = popup.findChildren<ImageButton *>();
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons[1]->text(), QString("OK"));
    QCOMPARE(buttons[1]->pos(), QPoint(90, 70));
    QTest::mouseClick(buttons[1], Qt::LeftButton);
    QVERIFY(!popup.isVisible());
}

REGISTER_TEST(ToolWindowTest)
#include "tst_tool_window.moc"
