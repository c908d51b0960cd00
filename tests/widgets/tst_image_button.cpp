#include "resources/Skin.h"
#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "widgets/ImageButton.h"

#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <array>

class ImageButtonTest : public QObject
{
    Q_OBJECT

private slots:
    void takesTheSizeOfItsSkinAndItsPlace();
    void toolTipButtonHasNoParent();
    void paintsItsState();
    void missingStatesFallBackToTheNormalImage();
    void statesThatAreNotShownAreNotLoaded();
    void unknownNameGivesAnEmptyButton();
    void captionStandsOnItsBaseline();
    void captionIsBlackUntilItHasAColour();
    void grayButtonShowsInvertedColoursAndNoCaption();
    void grayImageOutlivesTheSkin();
    void grayButtonIgnoresTheMouseButNotThePointer();
    void shortPressClicksOnly();
    void longPressHoldsOnceAndThenClicks();
    void aHoldIsNeverEarly();
    void pressOfTheRightButtonDoesNotHold();
    void leavingTheButtonDoesNotStopTheHold();
    void grayScaleTurnsSharedPixels();
    void grayScaleLeavesOtherFormatsAlone_data();
    void grayScaleLeavesOtherFormatsAlone();
    void grayScaleOfNothingIsNothing();
};

// Q_CLEANUP_RESOURCE must stand outside every namespace.
static void removeSkin()
{
    Q_CLEANUP_RESOURCE(skin);
}

namespace
{

// The widget over a colour that no skin contains, so that transparent pixels show.
QImage overBlue(QWidget &widget)
{
    QImage image(widget.size() * widget.devicePixelRatioF(), QImage::Format_RGB32);
    image.setDevicePixelRatio(widget.devicePixelRatioF());
    image.fill(QColor(12, 34, 56));
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

QImage expected(const QImage &skin)
{
    QImage image(skin.size(), QImage::Format_RGB32);
    image.setDevicePixelRatio(skin.devicePixelRatioF());
    image.fill(QColor(12, 34, 56));
    QPainter(&image).drawImage(0, 0, skin);
    return image;
}

QImage skin(const QString &state, const QString &name)
{
    return SkinImages::load(":/icons/" + state + '/' + name + ".png");
}

void pointerEnters(QWidget &widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(&widget, &event);
}

void pointerLeaves(QWidget &widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

void ImageButtonTest::takesTheSizeOfItsSkinAndItsPlace()
{
    QWidget parent;
    ImageButton button("ICON_LINE", &parent, 7, 9);
    QCOMPARE(button.geometry(), QRect(7, 9, 65, 47));
    QCOMPARE(button.minimumSize(), QSize(65, 47));
    QCOMPARE(button.maximumSize(), QSize(65, 47));
    QVERIFY(button.isFlat());
    QCOMPARE(button.parentWidget(), &parent);
    button.setImage("POPUP_BUTTON");
    QCOMPARE(button.size(), QSize(76, 24));
}

void ImageButtonTest::toolTipButtonHasNoParent()
{
    QWidget parent;
    const ImageButton button("ICON_LINE", "Line", &parent, 3, 4);
    QCOMPARE(button.parentWidget(), nullptr);
    QCOMPARE(button.toolTip(), QString("Line"));
    QCOMPARE(button.accessibleName(), QString("Line"));
    QCOMPARE(button.pos(), QPoint(3, 4));
}

void ImageButtonTest::paintsItsState()
{
    ImageButton button("ICON_ARROW", nullptr, 0, 0);
    QCOMPARE(overBlue(button), expected(skin("Normal", "ICON_ARROW")));
    pointerEnters(button);
    QCOMPARE(button.cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(overBlue(button), expected(skin("Over", "ICON_ARROW")));
    button.setDown(true);
    QCOMPARE(overBlue(button), expected(skin("Click", "ICON_ARROW")));
    button.setDown(false);
    button.setCheckable(true);
    button.setChecked(true);
    QCOMPARE(overBlue(button), expected(skin("Click", "ICON_ARROW")));
    button.setChecked(false);
    pointerLeaves(button);
    QCOMPARE(overBlue(button), expected(skin("Normal", "ICON_ARROW")));
}

void ImageButtonTest::missingStatesFallBackToTheNormalImage()
{
    ImageButton alone("ONLY_NORMAL", nullptr, 0, 0);
    QCOMPARE(alone.size(), QSize(8, 6));
    const QImage normal = overBlue(alone);
    QCOMPARE(normal.pixel(7, 5), qRgb(210, 200, 200));
    pointerEnters(alone);
    QCOMPARE(overBlue(alone), normal);
    alone.setDown(true);
    QCOMPARE(overBlue(alone), normal);
}

void ImageButtonTest::statesThatAreNotShownAreNotLoaded()
{
    const QImage over = expected(skin("Over", "ICON_LINE"));
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    ImageButton hovered("ICON_LINE", nullptr, 0, 0);
    pointerEnters(hovered);
    QCOMPARE(overBlue(hovered), over);
    const QImage normal = overBlue(button);
    removeSkin();
    const auto bringBack = qScopeGuard(initialiseSkin);
    // What was shown once is kept; what was not is only looked for when it is painted.
    QCOMPARE(overBlue(hovered), over);
    pointerEnters(button);
    QCOMPARE(overBlue(button), normal);
}

void ImageButtonTest::unknownNameGivesAnEmptyButton()
{
    ImageButton button("NO_SUCH_SKIN", nullptr, 5, 6);
    QCOMPARE(button.size(), QSize(0, 0));
    button.setText("caption");
    button.show();
    QCoreApplication::processEvents();
    button.setGray(true);
    button.repaint();
    ImageButton nameless(QString(), nullptr, 0, 0);
    QCOMPARE(nameless.size(), QSize(0, 0));
    nameless.setImage("BUTTON_SIDE_OPEN");
    QCOMPARE(nameless.size(), QSize(28, 60));
}

void ImageButtonTest::captionStandsOnItsBaseline()
{
    ImageButton button("MAIN_BUTTON", nullptr, 0, 0);
    button.setFont(QFont("Arial", 11));
    button.setTextColor(Qt::white);
    button.setText("Photograph & B");
    QImage image = expected(skin("Normal", "MAIN_BUTTON"));
    QPainter painter(&image);
    painter.setFont(QFont("Arial", 11));
    painter.setPen(Qt::white);
    const QFontMetrics metrics = painter.fontMetrics();
    painter.drawText((105 - metrics.horizontalAdvance("Photograph & B")) / 2,
                     (20 + metrics.height()) / 2 - 3, "Photograph & B");
    painter.end();
    QCOMPARE(overBlue(button), image);
}

void ImageButtonTest::captionIsBlackUntilItHasAColour()
{
    ImageButton button("POPUP_BUTTON", nullptr, 0, 0);
    button.setStyleSheet("color: white; font-family: Arial; font-size: 15px;");
    button.setText("OK");
    const QImage image = overBlue(button);
    int black = 0;
    int white = 0;
    for (int y = 4; y < 20; ++y) {
        for (int x = 10; x < 66; ++x) {
            const int lightness = qGray(image.pixel(x, y));
            black += lightness < 60 ? 1 : 0;
            white += lightness > 220 ? 1 : 0;
        }
    }
    QVERIFY(black > 5);
    QCOMPARE(white, 0);
}

void ImageButtonTest::grayButtonShowsInvertedColoursAndNoCaption()
{
    ImageButton button("POPUP_BUTTON", nullptr, 0, 0);
    button.setText("OK");
    button.setGray(true);
    QImage inverted =
        QImage(":/icons/Normal/POPUP_BUTTON.png").convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < inverted.height(); ++y) {
        for (int x = 0; x < inverted.width(); ++x)
            inverted.setPixel(x, y, inverted.pixel(x, y) ^ 0x00ffffffu);
    }
    const QImage shown = overBlue(button);
    const QImage wanted = expected(inverted);
    // Premultiplied corner pixels round differently by a shade.
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QColor a(shown.pixel(x, y));
            const QColor b(wanted.pixel(x, y));
            QVERIFY(qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 &&
                    qAbs(a.blue() - b.blue()) <= 2);
        }
    }
    button.setGray(false);
    QVERIFY(overBlue(button) != shown);
}

void ImageButtonTest::grayImageOutlivesTheSkin()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    button.setGray(true);
    const QImage gray = overBlue(button);
    button.setImage("ICON_CIRCLE");
    QCOMPARE(overBlue(button), gray);
    button.setGray(false);
    QCOMPARE(overBlue(button), expected(skin("Normal", "ICON_CIRCLE")));
}

void ImageButtonTest::grayButtonIgnoresTheMouseButNotThePointer()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    button.setGray(true);
    QSignalSpy clicks(&button, &ImageButton::clicked);
    QSignalSpy holds(&button, &ImageButton::hold);
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(!button.isDown());
    // Longer than a button has to be held, as a gray one must not answer.
    QTest::qWait(600);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 0);
    QCOMPARE(holds.count(), 0);
    pointerEnters(button);
    button.setGray(false);
    QCOMPARE(overBlue(button), expected(skin("Over", "ICON_LINE")));
}

void ImageButtonTest::shortPressClicksOnly()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    QSignalSpy clicks(&button, &ImageButton::clicked);
    QSignalSpy holds(&button, &ImageButton::hold);
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(button.isDown());
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 1);
    QVERIFY(!holds.wait(700));
    QCOMPARE(clicks.count(), 1);
}

void ImageButtonTest::aHoldIsNeverEarly()
{
    // A coarse timer is rounded to its place in the second, so the presses are spread over one.
    struct Press {
        ImageButton button{"ICON_LINE", nullptr, 0, 0};
        QElapsedTimer clock;
        qint64 heldMs = -1;
    };
    constexpr int COUNT = 24;
    std::array<Press, COUNT> presses;
    for (Press &press : presses) {
        connect(&press.button, &ImageButton::hold, this,
                [&press] { press.heldMs = press.clock.elapsed(); });
        press.clock.start();
        QTest::mousePress(&press.button, Qt::LeftButton);
        QTest::qWait(41);
    }
    for (Press &press : presses) {
        QTRY_VERIFY(press.heldMs >= 0);
        QVERIFY2(press.heldMs >= 500, qPrintable(QString::number(press.heldMs)));
    }
}

void ImageButtonTest::longPressHoldsOnceAndThenClicks()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    QSignalSpy clicks(&button, &ImageButton::clicked);
    QSignalSpy holds(&button, &ImageButton::hold);
    bool wasDown = false;
    connect(&button, &ImageButton::hold, this, [&] { wasDown = button.isDown(); });
    QElapsedTimer clock;
    clock.start();
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(holds.wait(10000));
    QVERIFY2(clock.elapsed() >= 500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(wasDown);
    QCOMPARE(clicks.count(), 0);
    QVERIFY(!holds.wait(700));
    QCOMPARE(holds.count(), 1);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(holds.count(), 1);
}

void ImageButtonTest::pressOfTheRightButtonDoesNotHold()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    QSignalSpy holds(&button, &ImageButton::hold);
    QTest::mousePress(&button, Qt::RightButton);
    QVERIFY(!holds.wait(700));
    QTest::mouseRelease(&button, Qt::RightButton);
}

void ImageButtonTest::leavingTheButtonDoesNotStopTheHold()
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    QSignalSpy holds(&button, &ImageButton::hold);
    QTest::mousePress(&button, Qt::LeftButton);
    QMouseEvent away(QEvent::MouseMove, QPointF(200, 200), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &away);
    pointerLeaves(button);
    QVERIFY(holds.wait(10000));
    QTest::mouseRelease(&button, Qt::LeftButton);
}

void ImageButtonTest::grayScaleTurnsSharedPixels()
{
    QImage source(3, 2, QImage::Format_ARGB32);
    source.fill(qRgba(200, 100, 40, 77));
    const QImage result = ImageButton::convertToGrayScale(source);
    const int gray = (11 * 200 + 16 * 100 + 5 * 40) >> 5;
    QCOMPARE(result.pixel(2, 1), qRgba(gray, gray, gray, 77));
    QCOMPARE(source.pixel(2, 1), qRgba(gray, gray, gray, 77));
    QImage opaque(3, 2, QImage::Format_RGB32);
    opaque.fill(qRgb(255, 0, 0));
    QCOMPARE(ImageButton::convertToGrayScale(opaque).pixel(0, 0), qRgb(87, 87, 87));
    QCOMPARE(opaque.pixel(2, 1), qRgb(87, 87, 87));
}

void ImageButtonTest::grayScaleLeavesOtherFormatsAlone_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("packed") << int(QImage::Format_RGB888);
    QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied);
    QTest::newRow("16 bits") << int(QImage::Format_RGB16);
    QTest::newRow("grey") << int(QImage::Format_Grayscale8);
    QTest::newRow("bits") << int(QImage::Format_Mono);
}

void ImageButtonTest::grayScaleLeavesOtherFormatsAlone()
{
    QFETCH(int, format);
    QImage source(5, 3, static_cast<QImage::Format>(format));
    source.fill(Qt::red);
    const QImage before = source.copy();
    const QImage result = ImageButton::convertToGrayScale(source);
    QCOMPARE(source, before);
    QCOMPARE(result.depth(), 32);
    QCOMPARE(result.pixel(4, 2), before.pixel(4, 2));
}

void ImageButtonTest::grayScaleOfNothingIsNothing()
{
    QVERIFY(ImageButton::convertToGrayScale(QImage()).isNull());
}

REGISTER_TEST(ImageButtonTest)
#include "tst_image_button.moc"
