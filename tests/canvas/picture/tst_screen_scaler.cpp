#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"

#include "canvas/picture/Frame.h"
#include "canvas/picture/ScreenScaler.h"

#include <QtTest>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{

using ReferencePipeline::noise;
using ReferencePipeline::same;

/// That part of it, or all.
QImage scaled(ScreenScaler &scaler, const QImage &picture, QSize size, QRect part = QRect())
{
    const std::unique_ptr<Frame> frame = Frame::create(picture.size(), picture.format());
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    const Frame &source = *frame;
    scaler.scale(source.rows(),
                 {image.bits(), size.width(), size.height(), image.bytesPerLine(), 4},
                 part.isNull() ? image.rect() : part);
    return image;
}

/// How much of a source pixel is in a pixel of the result, in plain arithmetic.
double share(int from, int to, int pixel, int sourcePixel)
{
    const double factor = double(from) / to;
    if (to < from)
        return std::max(std::min<double>(sourcePixel + 1, (pixel + 1) * factor) -
                            std::max<double>(sourcePixel, pixel * factor),
                        0.0) /
               factor;
    const double centre = std::clamp((pixel + 0.5) * factor - 0.5, 0.0, double(from - 1));
    return std::max(1.0 - std::abs(sourcePixel - centre), 0.0);
}

double referenceChannel(const QImage &picture, QSize size, int x, int y, int shift)
{
    const auto firstOf = [](int from, int to, int pixel) {
        return std::max(static_cast<int>(std::floor(double(pixel) * from / to)) - 1, 0);
    };
    const auto endOf = [](int from, int to, int pixel) {
        return std::min(static_cast<int>(std::ceil((pixel + 1.0) * from / to)) + 2, from);
    };
    double sum = 0;
    const QSize from = picture.size();
    for (int sy = firstOf(from.height(), size.height(), y);
         sy < endOf(from.height(), size.height(), y); ++sy) {
        const double rowShare = share(from.height(), size.height(), y, sy);
        for (int sx = firstOf(from.width(), size.width(), x);
             rowShare > 0 && sx < endOf(from.width(), size.width(), x); ++sx)
            sum += rowShare * share(from.width(), size.width(), x, sx) *
                   (picture.pixel(sx, sy) >> shift & 0xffU);
    }
    return sum;
}

} // namespace

class ScreenScalerTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { FrameKernels::select(nullptr); }

    void averagesGoingDownAndInterpolatesGoingUp_data()
    {
        QTest::addColumn<QSize>("from");
        QTest::addColumn<QSize>("to");
        QTest::newRow("live picture's ratio") << QSize(192, 108) << QSize(100, 56);
        QTest::newRow("a little down") << QSize(128, 72) << QSize(127, 71);
        QTest::newRow("half") << QSize(128, 72) << QSize(64, 36);
        QTest::newRow("a twelfth") << QSize(361, 239) << QSize(30, 20);
        QTest::newRow("to a point") << QSize(61, 47) << QSize(1, 1);
        QTest::newRow("a little up") << QSize(127, 71) << QSize(128, 72);
        QTest::newRow("up") << QSize(64, 36) << QSize(143, 80);
        QTest::newRow("nearly four times") << QSize(64, 36) << QSize(255, 143);
        QTest::newRow("twice as large") << QSize(64, 36) << QSize(128, 72);
        QTest::newRow("twice as large, odd") << QSize(61, 35) << QSize(122, 70);
        QTest::newRow("twice as large, a point") << QSize(2, 2) << QSize(4, 4);
        QTest::newRow("up one way only") << QSize(30, 300) << QSize(30, 299);
        QTest::newRow("one column") << QSize(1, 50) << QSize(1, 60);
    }

    void averagesGoingDownAndInterpolatesGoingUp()
    {
        QFETCH(QSize, from);
        QFETCH(QSize, to);
        ScreenScaler scaler;
        for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_ARGB32}) {
            const QImage picture = noise(from, format, 3);
            const QImage result = scaled(scaler, picture, to);
            for (int y = 0; y < to.height(); ++y) {
                for (int x = 0; x < to.width(); ++x) {
                    QCOMPARE(qAlpha(result.pixel(x, y)), 255);
                    for (const int shift : {0, 8, 16}) {
                        const double expected = referenceChannel(picture, to, x, y, shift);
                        const int actual = static_cast<int>(result.pixel(x, y) >> shift & 0xffU);
                        QVERIFY2(std::abs(actual - expected) < 0.6,
                                 qPrintable(QString("(%1, %2) is %3 and not %4")
                                                .arg(x)
                                                .arg(y)
                                                .arg(actual)
                                                .arg(expected)));
                    }
                }
            }
        }
    }

    void bothKindsOfKernelsGiveTheSameBytes()
    {
        for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_ARGB32}) {
            for (const QSize &to :
                 {QSize(100, 56), QSize(191, 107), QSize(31, 18), QSize(301, 169), QSize(7, 4),
                  QSize(800, 450), QSize(384, 216), QSize(192, 108)}) {
                const QImage picture = noise({192, 108}, format, 8);
                ScreenScaler scaler;
                FrameKernels::select(&FrameKernels::portable());
                const QImage plain = scaled(scaler, picture, to);
                FrameKernels::select(nullptr);
                QVERIFY(same(scaled(scaler, picture, to), plain));
            }
        }
    }

    void keepsPlainColours()
    {
        ScreenScaler scaler;
        for (const QColor &colour : {QColor(Qt::white), QColor(Qt::black), QColor(1, 128, 254)}) {
            QImage picture(101, 67, QImage::Format_RGB888);
            picture.fill(colour);
            for (const QSize &to : {QSize(50, 33), QSize(100, 66), QSize(151, 100)}) {
                QImage expected(to, QImage::Format_RGB32);
                expected.fill(colour);
                QVERIFY(same(scaled(scaler, picture, to), expected));
            }
        }
    }

    void showsPixelsAsSquaresFromFourTimesOn()
    {
        ScreenScaler scaler;
        const QImage picture = noise({32, 18}, QImage::Format_RGB888, 8);
        for (const QSize &to : {QSize(32, 18), QSize(128, 72), QSize(131, 74), QSize(192, 108)}) {
            QImage expected(to, QImage::Format_RGB32);
            QPainter painter(&expected);
            painter.drawImage(expected.rect(), picture);
            painter.end();
            QVERIFY(same(scaled(scaler, picture, to), expected));
        }
        // One pixel short of it there are mixed pixels.
        const QImage smooth = scaled(scaler, picture, {127, 71});
        QVERIFY(smooth.pixel(2, 2) != smooth.pixel(1, 2));
    }

    void theShortWaysGiveTheBytesOfTheLongOne()
    {
        ScreenScaler scaler;
        const QImage picture = noise({193, 107}, QImage::Format_RGB888, 4);
        // Of 4 bytes a pixel, every picture goes the long way.
        const QImage four = picture.convertToFormat(QImage::Format_ARGB32);
        for (const QSize &to : {QSize(193, 107), QSize(386, 214)})
            QVERIFY(same(scaled(scaler, picture, to), scaled(scaler, four, to)));
    }

    void aPartIsThatOfTheWhole()
    {
        const QImage picture = noise({192, 108}, QImage::Format_RGB888, 6);
        for (const QSize &to :
             {QSize(192, 108), QSize(384, 216), QSize(100, 56), QSize(301, 169), QSize(800, 450)}) {
            ScreenScaler scaler;
            const QImage whole = scaled(scaler, picture, to);
            for (const QRect &part : {QRect(3, 5, 31, 17), QRect(0, 1, to.width(), 3),
                                      QRect(to.width() - 1, 0, 1, to.height())}) {
                QImage expected(to, QImage::Format_RGB32);
                expected.fill(Qt::magenta);
                QPainter(&expected).drawImage(part.topLeft(), whole, part);
                QVERIFY(same(scaled(scaler, picture, to, part), expected));
            }
        }
    }

    void isReadyForAnotherPictureEachTime()
    {
        ScreenScaler used;
        for (const QSize &from :
             {QSize(192, 108), QSize(20, 11), QSize(192, 108), QSize(50, 300)}) {
            for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_ARGB32}) {
                for (const QSize &to : {QSize(100, 56), QSize(101, 57)}) {
                    ScreenScaler fresh;
                    const QImage picture = noise(from, format, 8);
                    QVERIFY(same(scaled(used, picture, to), scaled(fresh, picture, to)));
                }
            }
        }
    }
};

REGISTER_CORE_TEST(ScreenScalerTest)
#include "tst_screen_scaler.moc"
