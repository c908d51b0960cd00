#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"

#include <QTextEdit>

#include <cmath>

namespace
{

double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QPalette desktop(const QColor &ground, const QColor &ink)
{
    QPalette palette(ground, ground);
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, ink);
    palette.setColor(QPalette::WindowText, ink);
    return palette;
}

} // namespace

/// The text that is being typed onto the picture, under the palettes that desktops have.
class TextContrastTest : public QObject
{
    Q_OBJECT

private slots:
    void theTextBeingTypedCanBeRead_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<QColor>("ink");
        const QPalette palettes[] = {desktop(Qt::white, Qt::black), desktop(0x202326, Qt::white),
                                     desktop(Qt::black, Qt::yellow), desktop(0x7F7F7F, Qt::white)};
        const char *names[] = {"light", "dark", "yellow on black", "grey"};
        for (int i = 0; i < 4; ++i) {
            for (const Qt::GlobalColor ink : {Qt::black, Qt::white, Qt::yellow, Qt::red, Qt::blue})
                QTest::addRow("%s, %s", qPrintable(QColor(ink).name()), names[i])
                    << palettes[i] << QColor(ink);
        }
    }

    void theTextBeingTypedCanBeRead()
    {
        QFETCH(QPalette, palette);
        QFETCH(QColor, ink);
        QApplication::setPalette(palette);
        ImageCanvas canvas;
        canvas.resize(640, 480);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        canvas.setTextColor(ink);
        canvas.setMouseMode(ImageCanvas::Text);
        QTest::mouseClick(&canvas, Qt::LeftButton, {}, {100, 100});
        const auto *editor = canvas.findChild<QTextEdit *>();
        QVERIFY(editor && editor->isVisible());
        const QColor ground = canvas.grab().toImage().pixelColor(110, 380);
        QVERIFY2(contrast(ground, ink) >= 4.5, qPrintable(ground.name()));
    }

    void cleanupTestCase() { QApplication::setPalette(QPalette()); }
};

REGISTER_TEST(TextContrastTest)
#include "tst_text_contrast.moc"
