#include "sources/film/PlanarToRgb.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

struct Standard {
    double kr;
    double kb;
    bool fullRange;
};

/// The definition of the conversion, in real numbers.
std::array<double, 3> exact(const Standard &standard, double y, double u, double v)
{
    const double light = standard.fullRange ? y / 255.0 : (y - 16) / 219.0;
    const double scale = standard.fullRange ? 255.0 : 224.0;
    const double cb = (u - 128) / scale;
    const double cr = (v - 128) / scale;
    const double red = light + 2 * (1 - standard.kr) * cr;
    const double blue = light + 2 * (1 - standard.kb) * cb;
    const double green =
        (light - standard.kr * red - standard.kb * blue) / (1 - standard.kr - standard.kb);
    const auto step = [](double value) { return std::clamp(value * 255, 0.0, 255.0); };
    return {step(red), step(green), step(blue)};
}

} // namespace

class PlanarToRgbTest : public QObject
{
    Q_OBJECT

private slots:
    void everyColourIsWithinOneStep_data()
    {
        QTest::addColumn<double>("kr");
        QTest::addColumn<double>("kb");
        QTest::addColumn<bool>("fullRange");
        QTest::newRow("BT.601") << 0.299 << 0.114 << false;
        QTest::newRow("BT.709") << 0.2126 << 0.0722 << false;
        QTest::newRow("BT.2020") << 0.2627 << 0.0593 << false;
        QTest::newRow("BT.601, full range") << 0.299 << 0.114 << true;
    }

    void everyColourIsWithinOneStep()
    {
        QFETCH(double, kr);
        QFETCH(double, kb);
        QFETCH(bool, fullRange);
        const Standard standard{kr, kb, fullRange};
        const PlanarToRgb convert(kr, kb, fullRange);
        QVector<quint8> y(256), u(128), v(128), rgb(768);
        for (int i = 0; i < 256; ++i)
            y[i] = quint8(i);
        double worst = 0;
        for (int cu = 0; cu < 256; cu += 5) {
            for (int cv = 0; cv < 256; cv += 3) {
                u.fill(quint8(cu));
                v.fill(quint8(cv));
                convert.row(y.constData(), u.constData(), v.constData(), rgb.data(), 256);
                for (int i = 0; i < 256; ++i) {
                    const std::array<double, 3> expected = exact(standard, i, cu, cv);
                    for (int c = 0; c < 3; ++c)
                        worst =
                            std::max(worst, std::abs(expected[std::size_t(c)] - rgb[3 * i + c]));
                }
            }
        }
        QVERIFY2(worst <= 1, qPrintable(QString::number(worst)));
    }

    void tenBitsAreWithinAnEighthOfAStep()
    {
        const Standard standard{0.2627, 0.0593, false};
        const PlanarToRgb convert(standard.kr, standard.kb, standard.fullRange);
        double worst = 0;
        for (int y = 64; y < 940; y += 7) {
            for (int u = 64; u < 960; u += 31) {
                const int v = 1023 - u;
                const quint16 deep[3] = {qToLittleEndian(quint16(y)), qToLittleEndian(quint16(u)),
                                         qToLittleEndian(quint16(v))};
                quint16 rgb[3];
                convert.deepRow(deep, deep + 1, deep + 2, rgb, 1, false);
                const auto expected = exact(standard, y / 4.0, u / 4.0, v / 4.0);
                for (std::size_t c = 0; c < 3; ++c)
                    worst = std::max(worst, std::abs(expected[c] - rgb[c] / 16.0));
            }
        }
        QVERIFY2(worst <= 0.125, qPrintable(QString::number(worst)));
    }

    void twoPixelsOfTenBitsShareAColour()
    {
        const PlanarToRgb convert(0.2627, 0.0593, false);
        const quint16 y[3] = {qToLittleEndian(quint16(300)), qToLittleEndian(quint16(300)),
                              qToLittleEndian(quint16(300))};
        const quint16 u[2] = {qToLittleEndian(quint16(400)), qToLittleEndian(quint16(700))};
        const quint16 v[2] = {qToLittleEndian(quint16(600)), qToLittleEndian(quint16(500))};
        quint16 rgb[10] = {};
        rgb[9] = 77;
        convert.deepRow(y, u, v, rgb, 3, true);
        QVERIFY(std::equal(rgb, rgb + 3, rgb + 3));
        QVERIFY(!std::equal(rgb, rgb + 3, rgb + 6));
        QCOMPARE(int(rgb[9]), 77);
    }

    void aColourForEachPixelIsThatOfTheHalvedWay()
    {
        QRandomGenerator random(8);
        const PlanarToRgb convert(0.299, 0.114, true);
        constexpr int width = 99;
        QVector<quint8> y(width), u(width), v(width);
        for (QVector<quint8> *plane : {&y, &u, &v}) {
            for (quint8 &value : *plane)
                value = quint8(random.bounded(256));
        }
        QVector<quint8> full(width * 3 + 1, 77);
        convert.rowOfFullColour(y.constData(), u.constData(), v.constData(), full.data(), width);
        for (int x = 0; x < width; ++x) {
            QVector<quint8> one(3);
            convert.plainRow(&y[x], &u[x], &v[x], one.data(), 0, 1);
            QCOMPARE(full.mid(3 * x, 3), one);
        }
        QCOMPARE(int(full.last()), 77);
    }

    void everyWidthEqualsThePlainWayAndStaysInItsRow()
    {
        QRandomGenerator random(7);
        const PlanarToRgb convert(0.2126, 0.0722, false);
        for (int width = 1; width <= 70; ++width) {
            QVector<quint8> y(width), u((width + 1) / 2), v((width + 1) / 2);
            for (QVector<quint8> *plane : {&y, &u, &v}) {
                for (quint8 &value : *plane)
                    value = quint8(random.bounded(256));
            }
            QVector<quint8> fast(width * 3 + 1, 77), plain(width * 3 + 1, 77);
            convert.row(y.constData(), u.constData(), v.constData(), fast.data(), width);
            convert.plainRow(y.constData(), u.constData(), v.constData(), plain.data(), 0, width);
            QCOMPARE(fast, plain);
            QCOMPARE(int(fast.last()), 77);
        }
    }
};

REGISTER_CORE_TEST(PlanarToRgbTest)
#include "tst_planar_to_rgb.moc"
