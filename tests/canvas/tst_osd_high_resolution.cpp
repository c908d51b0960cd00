#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <QPainter>

/// The indications on a screen with two pixels to each unit, which the environment asks for.
class OSDHighResolutionTest : public QObject
{
    Q_OBJECT

private slots:
    void theScreenHasTwoPixelsAUnit() { QCOMPARE(qGuiApp->devicePixelRatio(), 2.0); }

    void imagesKeepTheirSizeAndHaveTwiceTheDetail()
    {
        const QImage image = SkinImages::load(":/icons/OSD/OSD_TIME.png");
        QCOMPARE(image.devicePixelRatio(), 2.0);
        QCOMPARE(image.size(), 2 * SkinImages::layoutSize(image));
    }

    void indicationsStandWhereTheyStandOnOtherScreens()
    {
        MainWindow window;
        ImageCanvas canvas;
        canvas.resize(480, 160);
        OSDProcessor osd(&window, &canvas);
        osd.setClock([] { return qint64(0); });
        osd.osdRecord();
        osd.osdBrightness();

        QImage picture(2 * canvas.size(), QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(2.0);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        osd.postPaint(&painter);
        painter.end();

        // The record time's ground in the middle, 100 units above the lower edge.
        const QImage time = SkinImages::load(":/icons/OSD/OSD_TIME.png");
        const QSize size = SkinImages::layoutSize(time);
        QCOMPARE(inkIn(picture, QRect(0, 0, 480, 105)),
                 inkIn(time, QRect({0, 0}, size)).translated((480 - size.width()) / 2, 60));
        // The scale of a camera that is gone: two ends round one long segment, centred.
        const QRect scale = inkIn(picture, QRect(0, 110, 480, 50));
        const QImage end = SkinImages::load(":/icons/OSD/OSD_BRIGHTNESS_BK_MIN.png");
        QCOMPARE(scale.top(), 110 + inkIn(end, QRect({0, 0}, SkinImages::layoutSize(end))).top());
        QVERIFY(qAbs(scale.left() + scale.right() + 1 - 480) <= 2);
    }

private:
    /// What is painted in a part, in units.
    static QRect inkIn(const QImage &picture, const QRect &part)
    {
        QRect ink;
        for (int y = 2 * part.top(); y <= 2 * part.bottom() + 1; ++y) {
            for (int x = 2 * part.left(); x <= 2 * part.right() + 1; ++x) {
                if (qAlpha(picture.pixel(x, y)) != 0)
                    ink |= QRect(x / 2, y / 2, 1, 1);
            }
        }
        return ink;
    }
};

REGISTER_TEST(OSDHighResolutionTest)
#include "tst_osd_high_resolution.moc"
