#include "resources/ApplicationIcon.h"

#include "tests/TestProgram.h"

#include <QTest>

class ApplicationIconTest : public QObject
{
    Q_OBJECT

private slots:
    void everySizeIsDrawnForItself_data();
    void everySizeIsDrawnForItself();
};

void ApplicationIconTest::everySizeIsDrawnForItself_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        QTest::addRow("%d", size) << size;
}

// An icon that lacks a size is shown with a larger one, scaled down, or with a smaller one as it
// is.
void ApplicationIconTest::everySizeIsDrawnForItself()
{
    QFETCH(int, size);
    const QIcon icon = applicationIcon();
    QVERIFY(icon.availableSizes().contains(QSize(size, size)));
    const QImage image = icon.pixmap(size, size).toImage();
    QCOMPARE(image.size(), QSize(size, size));
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    int white = 0;
    int ground = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            white += image.pixel(x, y) == 0xFFFFFFFF ? 1 : 0;
            ground += image.pixel(x, y) == 0xFF0062C4 ? 1 : 0;
        }
    }
    // The lamp and the sheet are crisp: a good part of their pixels is not blended.
    QVERIFY2(white * 8 > size * size, qPrintable(QString::number(white)));
    QVERIFY2(ground * 4 > size * size, qPrintable(QString::number(ground)));
}

REGISTER_TEST(ApplicationIconTest)
#include "tst_application_icon.moc"
