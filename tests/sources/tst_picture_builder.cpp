#include "sources/photographs/PictureBuilder.h"
#include "tests/TestProgram.h"

#include <QtTest>

namespace
{

QImage grey(QSize size, int value)
{
    QImage image(size, QImage::Format_RGB888);
    image.fill(qRgb(value, value, value));
    return image;
}

} // namespace

/// Pictures that are put together from their rows.
class PictureBuilderTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsOfTheSameSizeAreKept()
    {
        PictureBuilder builder(QSize(7, 5), QSize(7, 5));
        builder.addRows(grey({7, 2}, 10));
        builder.addRows(grey({7, 9}, 20));
        const QImage picture = builder.picture();
        QCOMPARE(picture.size(), QSize(7, 5));
        QCOMPARE(qRed(picture.pixel(6, 1)), 10);
        QCOMPARE(qRed(picture.pixel(6, 4)), 20);
    }

    void pixelsAreAveraged()
    {
        // Five columns become two of three and two, and four rows two of two each.
        PictureBuilder builder(QSize(5, 4), QSize(2, 2));
        QImage rows(5, 2, QImage::Format_RGB888);
        for (int x = 0; x < 5; ++x) {
            rows.setPixel(x, 0, qRgb(10 * x, 0, 255));
            rows.setPixel(x, 1, qRgb(10 * x, 100, 255));
        }
        builder.addRows(rows);
        builder.addRows(rows);
        const QImage picture = builder.picture();
        for (int y = 0; y < 2; ++y) {
            QCOMPARE(picture.pixel(0, y), qRgb(10, 50, 255));
            QCOMPARE(picture.pixel(1, y), qRgb(35, 50, 255));
        }
    }

    void whatIsMissingIsWhite()
    {
        PictureBuilder builder(QSize(4, 8), QSize(2, 4));
        builder.addRows(grey({4, 2}, 0));
        builder.skipRows(2);
        builder.addRows(grey({4, 2}, 50));
        const QImage picture = builder.picture();
        QCOMPARE(qRed(picture.pixel(0, 0)), 0);
        QCOMPARE(qRed(picture.pixel(0, 1)), 255);
        QCOMPARE(qRed(picture.pixel(0, 2)), 50);
        QCOMPARE(qRed(picture.pixel(0, 3)), 255);
    }

    void everyPlaceIsFilledWhateverTheSize()
    {
        const uchar black[3] = {0, 0, 0};
        for (const QSize size : {QSize(13, 11), QSize(12, 7), QSize(5, 10), QSize(1, 1)}) {
            PictureBuilder builder(QSize(13, 11), size);
            for (int y = 0; y < 11; y += 4) {
                for (int x = 0; x < 13; x += 4)
                    builder.fill({x, y, 4, 4}, black);
            }
            QCOMPARE(builder.picture(), grey(size, 0));
        }
    }
};

REGISTER_CORE_TEST(PictureBuilderTest)
#include "tst_picture_builder.moc"
