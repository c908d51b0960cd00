#include "resources/SkinImages.h"
#include "widgets/FramelessWindow.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ImageWidget.h"
#include "widgets/Panel.h"
#include "widgets/Slider.h"
#include "widgets/StyleWindow.h"

#include <QPainter>
#include <QtTest>

// The skin on a screen with a device pixel ratio of 2: every pixel of the larger drawings reaches
// the screen, and every size and position stays what it is on an ordinary one.
class SharpSkinTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCOMPARE(qApp->devicePixelRatio(), 2.0); }
    void loaderTakesTheLargerCopy();
    void loaderFallsBackToTheOnlyCopy();
    void stretchedImagesStaySharp();
    void buttonKeepsItsSizeAndShowsEveryPixel();
    void grayButtonShowsEveryPixel();
    void imageWidgetKeepsItsSize();
    void windowBackgroundKeepsItsSizeAndPixels();
    void framePiecesKeepTheirPlaces();
    void panelKeepsItsPlaces();
    void handleKeepsItsPlace();
    void styleSheetsTakeTheLargerCopy();
};

namespace
{

QImage larger(const QString &path)
{
    QImage image(":/icons/" + path + "@2x.png");
    image.setDevicePixelRatio(1.0);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// What the widget shows, in the pixels of the screen.
QImage picture(QWidget &widget)
{
    QImage image(widget.size() * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2.0);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    image.setDevicePixelRatio(1.0);
    return image;
}

class Frame : public StyleWindow
{
public:
    using StyleWindow::rescaleEdges;
    void reposition() override {}
};

} // namespace

void SharpSkinTest::loaderTakesTheLargerCopy()
{
    const QImage image = SkinImages::load(":/icons/Normal/ICON_LINE.png");
    QCOMPARE(image.size(), QSize(130, 94));
    QCOMPARE(image.devicePixelRatioF(), 2.0);
    QCOMPARE(SkinImages::layoutSize(image), QSize(65, 47));
    QCOMPARE(SkinImages::load(":/icons/Background/POP_BK_COLOR_1LINE").size(), QSize(584, 94));
}

void SharpSkinTest::loaderFallsBackToTheOnlyCopy()
{
    const QImage image = SkinImages::load(":/icons/Background/MAIN_WINDOWS.png");
    QCOMPARE(image.size(), QSize(1280, 720));
    QCOMPARE(image.devicePixelRatioF(), 1.0);
    QVERIFY(SkinImages::load(":/icons/Normal/NO_SUCH_SKIN.png").isNull());
    QCOMPARE(SkinImages::layoutSize(QImage()), QSize(0, 0));
}

void SharpSkinTest::stretchedImagesStaySharp()
{
    const QImage source = SkinImages::load(":/icons/Background_Sub/ICON_BK_MID.png");
    const QImage image = SkinImages::stretched(source, QSize(134, 647));
    QCOMPARE(image.size(), QSize(268, 1294));
    QCOMPARE(SkinImages::layoutSize(image), QSize(134, 647));
    QVERIFY(SkinImages::stretched(source, QSize(0, 5)).isNull());
    QVERIFY(SkinImages::stretched(source, QSize(5, -1)).isNull());
    QVERIFY(SkinImages::stretched(QImage(), QSize(5, 5)).isNull());
}

void SharpSkinTest::buttonKeepsItsSizeAndShowsEveryPixel()
{
    ImageButton button("ICON_FREEZE", nullptr, 0, 0);
    QCOMPARE(button.size(), QSize(65, 47));
    QCOMPARE(picture(button), larger("Normal/ICON_FREEZE"));
    button.setDown(true);
    QCOMPARE(picture(button), larger("Click/ICON_FREEZE"));
}

void SharpSkinTest::grayButtonShowsEveryPixel()
{
    ImageButton button("ICON_FREEZE", nullptr, 0, 0);
    button.setGray(true);
    QImage inverted = larger("Normal/ICON_FREEZE");
    inverted.invertPixels();
    QCOMPARE(picture(button), inverted);
}

void SharpSkinTest::imageWidgetKeepsItsSize()
{
    ImageWidget widget(SkinImages::load(":/icons/Background/FILM_CONTROL_BK.png"), nullptr);
    QCOMPARE(widget.size(), QSize(310, 37));
    QCOMPARE(picture(widget), larger("Background/FILM_CONTROL_BK"));
}

void SharpSkinTest::windowBackgroundKeepsItsSizeAndPixels()
{
    const QString name = "Background/POP_BK_SETTING_MULTILANG";
    FramelessWindow window(SkinImages::load(":/icons/" + name + ".png"), true, nullptr);
    QCOMPARE(window.size(), QSize(370, 306));
    QCOMPARE(window.minimumSize(), QSize(370, 306));
    QImage shown = window.grab().toImage();
    shown.setDevicePixelRatio(1.0);
    QCOMPARE(shown.convertToFormat(QImage::Format_RGB32),
             larger(name).convertToFormat(QImage::Format_RGB32));
}

void SharpSkinTest::framePiecesKeepTheirPlaces()
{
    Frame window;
    window.setExpanded(true);
    window.resize(938, 768);
    window.rescaleEdges();
    const QImage shown = picture(window);
    const QImage corner = larger("Background_Sub/VIDEO_FRAME_TOP_LEFT_EXPANDED");
    QCOMPARE(shown.copy(0, 0, 348, 60), corner);
    // The highlight is one layout pixel, two of the screen's, all along the top.
    const QRgb highlight = qRgb(0x31, 0x36, 0x3d);
    for (const int x : {348, 1000, 1875}) {
        QCOMPARE(shown.pixel(x, 1), highlight);
        QVERIFY(shown.pixel(x, 2) != highlight);
    }
    // No gap between the pieces.
    int gaps = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            gaps += qAlpha(shown.pixel(x, y)) == 255 ? 0 : 1;
    }
    QCOMPARE(gaps, 0);
}

void SharpSkinTest::panelKeepsItsPlaces()
{
    Panel panel(nullptr);
    QCOMPARE(panel.width(), 134);
    panel.addGroup("title");
    auto *button = new ImageButton("ICON_LINE", "tip", &panel, 0, 0);
    panel.addButton(button);
    panel.finishAdding();
    panel.resize(134, 668);
    panel.grab();
    QCOMPARE(button->geometry(), QRect(0, 27, 65, 47));
    button->hide();
    const QImage shown = picture(panel);
    const QImage bottom = larger("Background_Sub/ICON_BK_BOT");
    QCOMPARE(shown.copy(0, 1336 - bottom.height(), 268, bottom.height()), bottom);
}

void SharpSkinTest::handleKeepsItsPlace()
{
    HorizontalSlider slider(SkinImages::load(":/icons/Background/FILM_SCROLL_BAR.png"), nullptr);
    slider.resize(749, 10);
    slider.setHandleWidth(22);
    const QImage shown = picture(slider);
    const QImage handle = larger("Background/FILM_SCROLL_BAR");
    // Held 6 from the left; its middle, away from the round ends, over the strip's own rows.
    QImage wanted = shown.copy(2, 0, 1, 12).scaled(24, 12);
    QPainter(&wanted).drawImage(0, 0, handle.copy(10, 0, 24, 12));
    QCOMPARE(shown.copy(12 + 10, 0, 24, 12), wanted);
}

void SharpSkinTest::styleSheetsTakeTheLargerCopy()
{
    Slider slider(Qt::Horizontal, nullptr);
    slider.setFixedSize(160, 20);
    slider.setRange(0, 5);
    slider.setValue(5);
    const QImage shown = picture(slider);
    // The groove's round end and the first tick, away from the handle.
    QCOMPARE(shown.copy(0, 0, 60, 40), larger("Background/TIME_SLIDE_BK_1").copy(0, 0, 60, 40));
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    SharpSkinTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sharp_skin.moc"
