#include "canvas/ImageCanvas.h"
#include "tools/skinrender/SkinTable.h"
#include "widgets/ImageButton.h"

#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QSvgRenderer>
#include <QtTest>

#include <cmath>
#include <cstdio>

namespace
{

const QColor GROUND(0x22, 0x26, 0x2b);

QImage blank(QSizeF size, double factor)
{
    QImage image((size * factor).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(factor);
    image.fill(GROUND);
    return image;
}

/// What the widget shows on a plain ground, in the pixels of the screen.
QImage shownBy(QWidget &widget)
{
    QImage image = blank(widget.size(), widget.devicePixelRatioF());
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

/// How far the shown picture is from the one that was drawn for these pixels, as a part of what is
/// drawn on the ground: 0 is the same, 1 is as far as nothing at all.
double blur(const QImage &shown, const QImage &drawn)
{
    if (shown.size() != drawn.size())
        return 1.0;
    double off = 0.0;
    double ink = 0.0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const int wanted = qGray(drawn.pixel(x, y));
            off += std::pow(qGray(shown.pixel(x, y)) - wanted, 2);
            ink += std::pow(wanted - qGray(GROUND.rgb()), 2);
        }
    }
    return std::sqrt(off / ink);
}

QImage drawnIcon(const QString &name, QSize size, double factor, const SkinPalette &palette)
{
    QFile file(QString(SKIN_DIR "/states/%1.svg").arg(name));
    QString error;
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QSvgRenderer drawing(SkinTable::substitute(file.readAll(), palette.value("Normal"), &error));
    QImage image = blank(size, factor);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(QPointF(0, 0), size));
    return image;
}

/// The blur of the panel's icons on the average.
double iconsBlur(double factor)
{
    QString error;
    const SkinPalette palette = SkinTable::readPalette(SKIN_DIR "/palette.ini", &error);
    double sum = 0.0;
    int count = 0;
    for (const SkinImage &icon : SkinTable::readTable(SKIN_DIR "/skin.ini", &error)) {
        if (icon.section != "states" || icon.ground != "panel")
            continue;
        ++count;
        ImageButton button(icon.name, nullptr, 0, 0);
        sum += blur(shownBy(button), drawnIcon(icon.name, icon.size, factor, palette));
    }
    return count > 30 ? sum / count : 1.0;
}

/// The steps between neighbouring pixels, squared: what is blurred has fewer and smaller ones.
double edges(const QImage &image)
{
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 1; x < image.width(); ++x)
            sum += std::pow(qGray(image.pixel(x, y)) - qGray(image.pixel(x - 1, y)), 2);
    }
    return sum;
}

/// How much of its edges a text has: letters may stand a part of a pixel beside those that are
/// drawn for these pixels, so the pixels themselves are not compared.
double textSharpness(double factor)
{
    QFont font("Arial");
    font.setPixelSize(16);
    QLabel label("Brightness");
    label.setFont(font);
    label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label.resize(120, 24);
    QPalette colors;
    colors.setColor(QPalette::WindowText, Qt::white);
    label.setPalette(colors);
    QImage drawn = blank(label.size(), factor);
    drawn.setDevicePixelRatio(1.0);
    font.setPixelSize(qRound(16 * factor));
    QPainter painter(&drawn);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(drawn.rect(), Qt::AlignLeft | Qt::AlignTop, label.text());
    painter.end();
    return edges(shownBy(label)) / edges(drawn);
}

/// A camera's picture as large as the canvas in the pixels of the screen, each pixel another than
/// its neighbours.
double pictureBlur(double factor)
{
    ImageCanvas canvas;
    canvas.resize(160, 120);
    QImage picture(int(160 * factor), int(120 * factor), QImage::Format_RGB888);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::white : Qt::black);
    }
    const QImage given = picture.copy();
    canvas.imageCaptured(picture);
    // The canvas draws an edge over the picture.
    const QRect inner = given.rect().adjusted(8, 8, -8, -8);
    return blur(canvas.grab().toImage().copy(inner), given.copy(inner));
}

/// Prints what the test compares.
int measure(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    const double factor = application.devicePixelRatio();
    std::printf("%g %.3f %.3f %.3f\n", factor, iconsBlur(factor), textSharpness(factor),
                pictureBlur(factor));
    return 0;
}

} // namespace

/// Icons, texts and picture at the scales that desktops ask for, each beside what is drawn for just
/// these pixels. Each scale is a program of its own.
class SharpFactorsTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingIsSharp_data()
    {
        QTest::addColumn<QByteArray>("factor");
        for (const char *factor : {"1", "1.25", "1.5", "2"})
            QTest::newRow(factor) << QByteArray(factor);
    }

    void everythingIsSharp()
    {
        QFETCH(QByteArray, factor);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", factor);
        environment.insert("QT_SCALE_FACTOR_ROUNDING_POLICY", "PassThrough");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {"--measure"});
        QVERIFY(process.waitForFinished(60000));
        const QByteArray out = process.readAllStandardOutput();
        const QList<QByteArray> said = out.trimmed().split('\n').last().split(' ');
        QVERIFY2(said.size() == 4, process.readAllStandardError().constData());
        QCOMPARE(said[0], factor);
        // The images at their own size, enlarged, have 0.13 and more.
        QVERIFY2(said[1].toDouble() < 0.1, out.constData());
        QVERIFY2(said[2].toDouble() > 0.9, out.constData());
        QVERIFY2(said[3].toDouble() < 0.01, out.constData());
    }
};

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--measure") == 0)
        return measure(argc, argv);
    QCoreApplication application(argc, argv);
    SharpFactorsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sharp_factors.moc"
