#include "tests/TestProgram.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/SheetPicture.h"

#include <QBuffer>
#include <QPainter>
#include <QTransform>
#include <QtTest>

#include <map>

class SheetCounterTest : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatTheSheetShowsAtAnyScale_data();
    void readsWhatTheSheetShowsAtAnyScale();
    void readsTurnedAndInvertedPictures();
    void readsDimAndBrightPictures();
    void readsEveryNumberFromItsCells();
    void countsFromZeroAgain();
    void seesNothingWithoutARow();
    void doesNotReadADamagedRow();
};

namespace
{

QImage sheet(QSize size, quint32 number, const CameraView &view = {})
{
    static std::map<int, SheetPicture> pictures;
    SheetPicture &picture =
        pictures.try_emplace(size.width(), size, QStringLiteral("Emulated camera")).first->second;
    picture.draw(number, view);
    return picture.image().copy();
}

/// The row alone, with cells of `cell` pixels.
QImage row(const std::array<bool, SheetCounter::CELL_COUNT> &cells, int cell)
{
    QImage picture((SheetCounter::CELL_COUNT + 6) * cell, 8 * cell, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int i = 0; i < SheetCounter::CELL_COUNT; ++i) {
        if (cells[static_cast<std::size_t>(i)])
            painter.fillRect((3 + i) * cell, 2 * cell, cell, 4 * cell, Qt::black);
    }
    return picture;
}

} // namespace

void SheetCounterTest::readsWhatTheSheetShowsAtAnyScale_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("scale");
    QTest::addColumn<bool>("smooth");
    for (const QSize size : {QSize(1024, 768), QSize(1280, 720), QSize(1920, 1080)}) {
        for (const int width : {500, 1000, 1333, 1920}) {
            for (const bool smooth : {false, true}) {
                QTest::addRow("%d to %d %s", size.width(), width, smooth ? "smooth" : "fast")
                    << size << static_cast<double>(width) / size.width() << smooth;
            }
        }
    }
}

void SheetCounterTest::readsWhatTheSheetShowsAtAnyScale()
{
    QFETCH(QSize, size);
    QFETCH(double, scale);
    QFETCH(bool, smooth);
    const quint32 number = 1234 + static_cast<quint32>(100 * scale);
    const QImage shown = sheet(size, number)
                             .scaled(size * scale, Qt::KeepAspectRatio,
                                     smooth ? Qt::SmoothTransformation : Qt::FastTransformation);
    QBuffer jpeg;
    QVERIFY(shown.save(&jpeg, "JPEG", 75));
    QCOMPARE(SheetCounter::read(QImage::fromData(jpeg.data())), std::optional(number));
}

void SheetCounterTest::readsTurnedAndInvertedPictures()
{
    QImage picture = sheet(QSize(1280, 720), 4711);
    for (int turn = 0; turn < 4; ++turn) {
        QCOMPARE(SheetCounter::read(picture), std::optional<quint32>(4711));
        picture = picture.transformed(QTransform().rotate(90));
    }
    picture.invertPixels();
    QCOMPARE(SheetCounter::read(picture), std::optional<quint32>(4711));
}

void SheetCounterTest::readsDimAndBrightPictures()
{
    for (const double brightness : {0.5, 1.5}) {
        CameraView view;
        view.brightness = brightness;
        QCOMPARE(SheetCounter::read(sheet(QSize(1280, 720), 99, view)), std::optional<quint32>(99));
    }
}

void SheetCounterTest::readsEveryNumberFromItsCells()
{
    for (quint32 number = 0; number < SheetCounter::MODULUS; number += 257)
        QCOMPARE(SheetCounter::read(row(SheetCounter::cells(number), 3)), std::optional(number));
}

void SheetCounterTest::countsFromZeroAgain()
{
    QCOMPARE(SheetCounter::cells(SheetCounter::MODULUS + 5), SheetCounter::cells(5));
}

void SheetCounterTest::seesNothingWithoutARow()
{
    QImage blank(640, 480, QImage::Format_RGB888);
    blank.fill(Qt::white);
    QVERIFY(!SheetCounter::read(blank));
    QVERIFY(!SheetCounter::read(QImage()));
}

void SheetCounterTest::doesNotReadADamagedRow()
{
    const auto good = SheetCounter::cells(4242);
    for (std::size_t i = 0; i < good.size(); ++i) {
        auto damaged = good;
        damaged[i] = !damaged[i];
        QVERIFY(!SheetCounter::read(row(damaged, 4)));
    }
}

REGISTER_TEST(SheetCounterTest)
#include "tst_sheet_counter.moc"
