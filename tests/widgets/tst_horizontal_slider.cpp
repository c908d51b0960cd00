#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "widgets/HorizontalSlider.h"

#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <limits>

class HorizontalSliderTest : public QObject
{
    Q_OBJECT

private slots:
    void stepsAreRealNumbers();
    void pointerGivesTheValue_data();
    void pointerGivesTheValue();
    void everyMouseEventSaysItsValue();
    void settersAreSilent();
    void handleStandsOnItsValue_data();
    void handleStandsOnItsValue();
    void emptyRangesAndWidthsGiveTheMinimum_data();
    void emptyRangesAndWidthsGiveTheMinimum();
};

namespace
{

constexpr QRgb HANDLE_COLOUR = qRgb(255, 0, 255);

QImage handleImage()
{
    QImage image(22, 6, QImage::Format_RGB32);
    image.fill(HANDLE_COLOUR);
    return image;
}

void mouse(HorizontalSlider &slider, QEvent::Type type, double x)
{
    QMouseEvent event(type, QPointF(x, 3), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&slider, &event);
}

// First and last column that show the handle, in device-independent pixels.
QPair<int, int> handleColumns(HorizontalSlider &slider)
{
    const QImage image = slider.grab().toImage();
    const int ratio = qRound(image.devicePixelRatioF());
    QPair<int, int> columns(-1, -1);
    for (int x = 0; x < slider.width(); ++x) {
        if (image.pixel(x * ratio, ratio) == HANDLE_COLOUR) {
            columns.first = columns.first < 0 ? x : columns.first;
            columns.second = x;
        }
    }
    return columns;
}

} // namespace

void HorizontalSliderTest::stepsAreRealNumbers()
{
    HorizontalSlider slider(handleImage(), nullptr);
    slider.resize(609, 10);
    slider.setRange(0, 100);
    QCOMPARE(slider.strip(), 597.0 / 101.0);
    // A range without steps counts as one.
    slider.setRange(3, 2);
    QCOMPARE(slider.strip(), 597.0);
    slider.setRange(3, -90);
    QCOMPARE(slider.strip(), 597.0);
}

void HorizontalSliderTest::pointerGivesTheValue_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("value");
    QTest::newRow("left of the strip") << 609 << 0 << 100 << 5.0 << 0;
    QTest::newRow("outside") << 609 << 0 << 100 << -300.0 << 0;
    QTest::newRow("its start") << 609 << 0 << 100 << 6.0 << 0;
    QTest::newRow("just before the second step") << 609 << 0 << 100 << 11.0 << 0;
    QTest::newRow("the second step") << 609 << 0 << 100 << 12.0 << 1;
    QTest::newRow("rounds up to the second step") << 609 << 0 << 100 << 11.5 << 1;
    QTest::newRow("middle") << 609 << 0 << 100 << 304.0 << 50;
    QTest::newRow("right end") << 609 << 0 << 100 << 608.0 << 100;
    QTest::newRow("right of it") << 609 << 0 << 100 << 5000.0 << 100;
    QTest::newRow("another minimum") << 113 << 10 << 19 << 6.0 + 35.0 << 13;
    QTest::newRow("truncated toward zero") << 112 << -10 << 9 << 6.0 + 3.0 << -9;
    QTest::newRow("one step") << 112 << 4 << 4 << 50.0 << 4;
}

void HorizontalSliderTest::pointerGivesTheValue()
{
    QFETCH(int, width);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(double, x);
    QFETCH(int, value);
    HorizontalSlider slider(handleImage(), nullptr);
    slider.resize(width, 10);
    slider.setRange(minimum, maximum);
    QSignalSpy values(&slider, &HorizontalSlider::valueChanged);
    mouse(slider, QEvent::MouseButtonPress, x);
    QCOMPARE(slider.value(), value);
    QCOMPARE(values.count(), 1);
    QCOMPARE(values[0][0].toInt(), value);
}

void HorizontalSliderTest::everyMouseEventSaysItsValue()
{
    HorizontalSlider slider(handleImage(), nullptr);
    slider.resize(609, 10);
    QSignalSpy values(&slider, &HorizontalSlider::valueChanged);
    mouse(slider, QEvent::MouseButtonPress, 304);
    mouse(slider, QEvent::MouseMove, 304);
    mouse(slider, QEvent::MouseMove, 608);
    mouse(slider, QEvent::MouseButtonRelease, 608);
    QCOMPARE(values.count(), 4);
    QCOMPARE(values[1][0].toInt(), 50);
    QCOMPARE(values[3][0].toInt(), 100);
    QVERIFY(!slider.hasMouseTracking());
}

void HorizontalSliderTest::settersAreSilent()
{
    HorizontalSlider slider(handleImage(), nullptr);
    QCOMPARE(slider.value(), 0);
    QCOMPARE(slider.minimum(), 0);
    QCOMPARE(slider.maximum(), 100);
    QSignalSpy values(&slider, &HorizontalSlider::valueChanged);
    slider.setRange(5, 8);
    slider.setHandleWidth(30);
    slider.setValue(-700);
    QCOMPARE(slider.value(), -700);
    slider.setValue(700);
    QCOMPARE(slider.value(), 700);
    QCOMPARE(values.count(), 0);
}

void HorizontalSliderTest::handleStandsOnItsValue_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("left");
    // 200 wide: 188 for 10 steps of 18.8; the handle's half is 11.
    QTest::newRow("first, held at the margin") << 0 << 6;
    QTest::newRow("second") << 1 << 23;
    QTest::newRow("middle") << 4 << 80;
    QTest::newRow("last, held at the margin") << 9 << 200 - 6 - 22;
    QTest::newRow("below the range") << -500 << 6;
    QTest::newRow("above the range") << 500 << 200 - 6 - 22;
}

void HorizontalSliderTest::handleStandsOnItsValue()
{
    QFETCH(int, value);
    QFETCH(int, left);
    HorizontalSlider slider(handleImage(), nullptr);
    slider.resize(200, 10);
    slider.setRange(0, 9);
    slider.setHandleWidth(22);
    slider.setValue(value);
    const QPair<int, int> columns = handleColumns(slider);
    QVERIFY2(qAbs(columns.first - left) <= 1, qPrintable(QString::number(columns.first)));
    QCOMPARE(columns.second - columns.first + 1, 22);
    // Four rows less than the widget, from the top.
    const QImage image = slider.grab().toImage();
    const int ratio = qRound(image.devicePixelRatioF());
    const int middle = (columns.first + 11) * ratio;
    QCOMPARE(image.pixel(middle, 0), HANDLE_COLOUR);
    QCOMPARE(image.pixel(middle, 5 * ratio), HANDLE_COLOUR);
    QVERIFY(image.pixel(middle, 6 * ratio) != HANDLE_COLOUR);
}

void HorizontalSliderTest::emptyRangesAndWidthsGiveTheMinimum_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    const int low = std::numeric_limits<int>::min();
    const int high = std::numeric_limits<int>::max();
    QTest::newRow("no width") << 0 << 3 << 9;
    QTest::newRow("nothing but margins") << 12 << 3 << 9;
    QTest::newRow("less than the margins") << 5 << 3 << 9;
    QTest::newRow("one below") << 200 << 3 << 2;
    QTest::newRow("far below") << 200 << 3 << -90;
    QTest::newRow("upside down") << 200 << high << low;
    QTest::newRow("everything") << 10 << low << high;
}

void HorizontalSliderTest::emptyRangesAndWidthsGiveTheMinimum()
{
    QFETCH(int, width);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    HorizontalSlider slider(handleImage(), nullptr);
    slider.resize(width, 3);
    slider.setRange(minimum, maximum);
    slider.setValue(7);
    mouse(slider, QEvent::MouseButtonPress, 100);
    QCOMPARE(slider.value(), minimum);
    slider.grab();
    slider.setHandleWidth(-4);
    slider.grab();
}

REGISTER_TEST(HorizontalSliderTest)
#include "tst_horizontal_slider.moc"
