#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "widgets/ImageWidget.h"
#include "widgets/RadioButton.h"
#include "widgets/Slider.h"

#include <QtTest>

class SmallWidgetsTest : public QObject
{
    Q_OBJECT

private slots:
    void sliderWearsItsStyleSheet();
    void sliderPaintsGrooveAndHandle_data();
    void sliderPaintsGrooveAndHandle();
    void sliderShowsAndHides();
    void aClickOnTheSliderLeavesTheFocus();
    void radioButtonWearsItsStyleSheet();
    void radioButtonPaintsItsMark();
    void imageWidgetIsItsImage();
    void imageWidgetOfNothingIsEmpty();
};

namespace
{

bool contains(const QImage &image, QRgb colour)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == colour)
                return true;
        }
    }
    return false;
}

} // namespace

void SmallWidgetsTest::sliderWearsItsStyleSheet()
{
    const Slider slider(Qt::Vertical, nullptr);
    QCOMPARE(
        slider.styleSheet(),
        QString("QSlider::groove:horizontal {  border-image: "
                "url(:/icons/Background/TIME_SLIDE_BK_1.png);}QSlider::handle:horizontal {  image: "
                "url(:/icons/Background/TIME_SLIDE_ADJUSTMENT.png);}QSlider::groove:vertical {  "
                "border-image: url(:/icons/Background/POP_VOL_BK.png);  border-width: "
                "10px}QSlider::handle:vertical {  image: "
                "url(:/icons/Background/TIME_SLIDE_ADJUSTMENT.png);}"));
}

void SmallWidgetsTest::sliderPaintsGrooveAndHandle_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");
    QTest::newRow("volume") << int(Qt::Vertical) << QSize(30, 120);
    QTest::newRow("interval") << int(Qt::Horizontal) << QSize(160, 20);
}

void SmallWidgetsTest::sliderPaintsGrooveAndHandle()
{
    QFETCH(int, orientation);
    QFETCH(QSize, size);
    Slider slider(Qt::Orientation(orientation), nullptr);
    slider.setFixedSize(size);
    slider.setRange(0, 100);
    slider.setValue(50);
    const QImage image = slider.grab().toImage();
    const QRgb groove = qRgb(0x7c, 0x87, 0x94);
    const QRgb handle = QImage(":/icons/Background/TIME_SLIDE_ADJUSTMENT.png").pixel(5, 7);
    QVERIFY(contains(image, groove));
    QVERIFY(contains(image, handle));
    slider.setValue(0);
    QVERIFY(slider.grab().toImage() != image);
}

void SmallWidgetsTest::sliderShowsAndHides()
{
    QWidget window;
    Slider slider(Qt::Vertical, &window);
    window.show();
    slider.hide();
    slider.showOrHide();
    QVERIFY(slider.isVisible());
    slider.showOrHide();
    QVERIFY(!slider.isVisible());
}

void SmallWidgetsTest::aClickOnTheSliderLeavesTheFocus()
{
    QWidget window;
    window.setFocusPolicy(Qt::StrongFocus);
    Slider slider(Qt::Horizontal, &window);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.setFocus();
    QTest::mouseClick(&slider, Qt::LeftButton);
    QVERIFY(window.hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(slider.hasFocus());
}

void SmallWidgetsTest::radioButtonWearsItsStyleSheet()
{
    QWidget window;
    const RadioButton button("Single", &window, 12, 34);
    QCOMPARE(button.pos(), QPoint(12, 34));
    QCOMPARE(button.text(), QString("Single"));
    QCOMPARE(button.parentWidget(), &window);
    QCOMPARE(button.styleSheet(),
             QString("QRadioButton {    color: white;    font-size: 14px;    spacing: "
                     "2px;}QRadioButton::indicator::unchecked {    image: "
                     "url(:/icons/settings_select_gray.png)}QRadioButton::indicator::checked {   "
                     " image: url(:/icons/settings_selected.png)}"));
}

void SmallWidgetsTest::radioButtonPaintsItsMark()
{
    RadioButton button("Single", nullptr, 0, 0);
    button.resize(100, 24);
    const QRgb accent = qRgb(0x00, 0x80, 0xff);
    QVERIFY(!contains(button.grab().toImage(), accent));
    button.setChecked(true);
    QVERIFY(contains(button.grab().toImage(), accent));
}

void SmallWidgetsTest::imageWidgetIsItsImage()
{
    const QImage bar = SkinImages::load(":/icons/Background/FILM_CONTROL_BK.png");
    ImageWidget widget(bar, nullptr);
    QCOMPARE(widget.size(), QSize(310, 37));
    QCOMPARE(widget.minimumSize(), widget.maximumSize());
    QImage image(bar.size(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(bar.devicePixelRatioF());
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(image, bar);
}

void SmallWidgetsTest::imageWidgetOfNothingIsEmpty()
{
    ImageWidget widget(QImage(), nullptr);
    QCOMPARE(widget.size(), QSize(0, 0));
    widget.show();
    widget.repaint();
}

REGISTER_TEST(SmallWidgetsTest)
#include "tst_small_widgets.moc"
