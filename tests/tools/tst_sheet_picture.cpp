#include "tests/TestProgram.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/SheetPicture.h"
#include "tools/virtualcamera/TileEncoder.h"

#include <QColor>
#include <QPainter>
#include <QtTest>

/// What the emulated camera sees, and its frames as JPEG.
class SheetPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void touchesOnlyWhatItReports();
    void showsABannerAndMovesAPencil();
    void zoomEnlarges();
    void outOfFocusIsSoft();
    void brightnessChangesThePicture();
    void encodedTilesMakeTheWholeFrame_data();
    void encodedTilesMakeTheWholeFrame();
    void framesWeighAsMuchAsACameras();
};

namespace
{

const QSize SIZE(1280, 720);

double meanGrey(const QImage &picture)
{
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    double sum = 0;
    for (int y = 0; y < grey.height(); ++y) {
        for (int x = 0; x < grey.width(); ++x)
            sum += grey.constScanLine(y)[x];
    }
    return sum / grey.width() / grey.height();
}

/// The mean step from pixel to pixel along the rows.
double sharpness(const QImage &picture)
{
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    double sum = 0;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *row = grey.constScanLine(y);
        for (int x = 1; x < grey.width(); ++x)
            sum += qAbs(row[x] - row[x - 1]);
    }
    return sum / grey.width() / grey.height();
}

QByteArray encoded(const QImage &picture, int quality)
{
    TileEncoder encoder(picture.size(), quality);
    encoder.update(picture, picture.rect());
    const auto bytes = encoder.frame();
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}

int biggestDifference(const QImage &a, const QImage &b)
{
    const QImage first = a.convertToFormat(QImage::Format_Grayscale8);
    const QImage second = b.convertToFormat(QImage::Format_Grayscale8);
    int biggest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            biggest = qMax(biggest, qAbs(first.constScanLine(y)[x] - second.constScanLine(y)[x]));
    }
    return biggest;
}

} // namespace

void SheetPictureTest::touchesOnlyWhatItReports()
{
    SheetPicture picture(SIZE, QStringLiteral("Emulated camera"));
    picture.draw(0, {});
    QImage kept = picture.image().copy();
    for (quint32 frame = 1; frame < 40; frame += 13) {
        const auto areas = picture.draw(frame, {});
        QVERIFY(!areas.empty() && !areas.front().contains(picture.image().rect()));
        const QImage &now = picture.image();
        for (const QRect &area : areas)
            QPainter(&kept).drawImage(area.topLeft(), now, area);
        QCOMPARE(now, kept);
        SheetPicture fresh(SIZE, QStringLiteral("Emulated camera"));
        fresh.draw(frame, {});
        QCOMPARE(now, fresh.image());
    }
}

void SheetPictureTest::showsABannerAndMovesAPencil()
{
    SheetPicture one(SIZE, QStringLiteral("One")), other(SIZE, QStringLiteral("Other"));
    one.draw(0, {});
    other.draw(0, {});
    const QRect heading(330, 30, 620, 50), writingArea(800, 400, 330, 150);
    QVERIFY(one.image().copy(heading) != other.image().copy(heading));
    const QImage before = one.image().copy(writingArea);
    one.draw(20, {});
    QVERIFY(one.image().copy(writingArea) != before);
}

void SheetPictureTest::zoomEnlarges()
{
    SheetPicture picture(SIZE, QStringLiteral("Emulated camera"));
    picture.draw(0, {});
    const QRgb desk = picture.image().pixel(20, 360);
    CameraView view;
    view.zoom = 2.0;
    for (quint32 frame = 1; frame < 4; ++frame) { // moving, settled, standing
        picture.draw(frame, view);
        QCOMPARE(SheetCounter::read(picture.image()), std::optional(frame));
        const QRgb paper = picture.image().pixel(20, 360);
        QVERIFY2(qGray(paper) > qGray(desk) + 60, "the sheet does not fill the picture");
    }
    picture.draw(4, {});
    QCOMPARE(picture.image().pixel(20, 360), desk);
}

void SheetPictureTest::outOfFocusIsSoft()
{
    SheetPicture picture(SIZE, QStringLiteral("Emulated camera"));
    picture.draw(0, {});
    const double sharp = sharpness(picture.image());
    CameraView view;
    view.blur = 0.5;
    picture.draw(1, view);
    const double soft = sharpness(picture.image());
    view.blur = 1.0;
    picture.draw(2, view);
    const double softer = sharpness(picture.image());
    QVERIFY(soft < 0.7 * sharp);
    QVERIFY(softer < 0.9 * soft);
    picture.draw(3, {});
    QVERIFY(sharpness(picture.image()) > 0.95 * sharp);
}

void SheetPictureTest::brightnessChangesThePicture()
{
    SheetPicture picture(SIZE, QStringLiteral("Emulated camera"));
    picture.draw(0, {});
    const double middle = meanGrey(picture.image());
    CameraView view;
    view.brightness = 0.5;
    picture.draw(1, view);
    QVERIFY(qAbs(meanGrey(picture.image()) - 0.5 * middle) < 2);
    picture.draw(2, view);
    QVERIFY(qAbs(meanGrey(picture.image()) - 0.5 * middle) < 2);
    view.brightness = 1.2;
    picture.draw(3, view);
    QVERIFY(meanGrey(picture.image()) > middle + 10);
}

void SheetPictureTest::encodedTilesMakeTheWholeFrame_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(1024, 768), QSize(1280, 720), QSize(1920, 1080)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

void SheetPictureTest::encodedTilesMakeTheWholeFrame()
{
    QFETCH(QSize, size);
    SheetPicture picture(size, QStringLiteral("Emulated camera"));
    TileEncoder encoder(size, 90);
    for (quint32 frame = 0; frame < 4; ++frame) {
        for (const QRect &area : picture.draw(frame, {}))
            encoder.update(picture.image(), area);
    }
    const auto bytes = encoder.frame();
    const QByteArray updated(reinterpret_cast<const char *>(bytes.data()),
                             static_cast<int>(bytes.size()));
    QCOMPARE(updated, encoded(picture.image(), 90));
    const QImage decoded = QImage::fromData(updated, "JPEG");
    QCOMPARE(decoded.size(), size);
    QVERIFY(biggestDifference(decoded, picture.image()) < 48);
}

void SheetPictureTest::framesWeighAsMuchAsACameras()
{
    SheetPicture picture(QSize(1920, 1080), QStringLiteral("Emulated camera"));
    picture.draw(0, {});
    const int kilobytes = encoded(picture.image(), 85).size() / 1000;
    QVERIFY2(kilobytes > 400 && kilobytes < 650, qPrintable(QString::number(kilobytes)));
}

REGISTER_TEST(SheetPictureTest)
#include "tst_sheet_picture.moc"
