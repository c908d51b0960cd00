#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"

#include "canvas/ImageCanvas.h"

#include <QtTest>

#include <cstring>

/// A screen whose pixels are no whole fraction of the layout's. CTest sets the ratio to 1.5.
class CanvasFractionalRatioTest : public QObject
{
    Q_OBJECT

private slots:
    void thePictureIsScaledOnceToThePixelsOfTheScreen_data()
    {
        QTest::addColumn<QSize>("canvasSize");
        QTest::newRow("bars above and below") << QSize(333, 201);
        QTest::newRow("bars left and right") << QSize(335, 101);
        QTest::newRow("odd margins") << QSize(101, 101);
    }

    void thePictureIsScaledOnceToThePixelsOfTheScreen()
    {
        QFETCH(QSize, canvasSize);
        ImageCanvas canvas;
        QCOMPARE(canvas.devicePixelRatioF(), 1.5);
        canvas.resize(canvasSize);
        const QImage picture = ReferencePipeline::noise({192, 108}, QImage::Format_RGB888, 5);
        canvas.imageCaptured(picture);
        const QImage shown = canvas.grab().toImage();
        QCOMPARE(shown.size(), (QSizeF(canvasSize) * 1.5).toSize());

        const ViewGeometry::Fit fit = ViewGeometry::fit(picture.size(), canvasSize);
        const auto edge = [](int logical) { return qRound(logical * 1.5); };
        const QRect place(QPoint(edge(fit.margin.x()), edge(fit.margin.y())),
                          QPoint(edge(fit.margin.x() + fit.size.width()) - 1,
                                 edge(fit.margin.y() + fit.size.height()) - 1));
        FramePool pool;
        const std::shared_ptr<Frame> frame = pool.acquire(picture.size(), picture.format());
        std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
        ScaledPicture scaled;
        const QImage expected = scaled.image(frame, 1, place.size());
        // The canvas's edge covers three pixels at most.
        const QRect inner = place & QRect({0, 0}, shown.size()).adjusted(4, 4, -4, -4);
        for (int y = inner.top(); y <= inner.bottom(); ++y) {
            for (int x = inner.left(); x <= inner.right(); ++x)
                QCOMPARE(shown.pixel(x, y), expected.pixel(x - place.left(), y - place.top()));
        }
    }

    void nothingIsLeftBetweenThePictureAndItsBars()
    {
        // The canvas lies at half a pixel of the screen, or not.
        for (const int place : {0, 1}) {
            for (int width = 101; width < 107; ++width) {
                QWidget window;
                ImageCanvas canvas(&window);
                canvas.setGeometry(place, place, width, 101);
                canvas.imageCaptured(ReferencePipeline::noise({9, 108}, QImage::Format_RGB888, 5));
                canvas.show();
                QImage shown(QSize(180, 180), QImage::Format_RGB32);
                shown.setDevicePixelRatio(1.5);
                shown.fill(Qt::magenta);
                window.render(&shown, {}, {}, QWidget::DrawChildren);
                for (int y = 6; y < 148; ++y) {
                    for (int x = 6; x < (width - 3) * 3 / 2; ++x)
                        QVERIFY2(shown.pixelColor(x, y) != Qt::magenta,
                                 qPrintable(QString("%1 %2").arg(x).arg(y)));
                }
            }
        }
    }
};

REGISTER_TEST(CanvasFractionalRatioTest)
#include "tst_canvas_fractional_ratio.moc"
