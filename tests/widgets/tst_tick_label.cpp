#include "widgets/TickLabel.h"

#include "tests/TestProgram.h"

#include <QTest>

class TickLabelTest : public QObject
{
    Q_OBJECT

private slots:
    void everyNumberStandsUnderItsTick();
    void twoDigitsStandBesideEachOther();
    void nothingIsCutOff();
    void theTextIsTheTextGiven();

private:
    static QImage painted(TickLabel &label, int height = 10);
};

namespace
{

const QString NUMBERS = QStringLiteral("1     2     5    10    15    30  sec.");

/// The centre of the ink between two columns; -1 where there is none.
double inkCentre(const QImage &picture, int from, int to)
{
    int first = -1;
    int last = -1;
    for (int x = from; x < to; ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (qGray(picture.pixel(x, y)) < 160) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
    }
    return first < 0 ? -1.0 : (first + last + 1) / 2.0;
}

} // namespace

QImage TickLabelTest::painted(TickLabel &label, int height)
{
    label.setFixedSize(200, height);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    label.setPalette(palette);
    label.setAutoFillBackground(true);
    return label.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

void TickLabelTest::everyNumberStandsUnderItsTick()
{
    TickLabel label(NUMBERS, nullptr);
    const QImage picture = painted(label);
    // The ticks are 30 apart. A number of two digits begins 5 before the next 30.
    for (int tick = 0; tick < 6; ++tick) {
        const double centre = inkCentre(picture, qMax(30 * tick - 15, 0), 30 * tick + 12);
        QVERIFY2(centre >= 0.0 && qAbs(centre - (30 * tick + 2.5)) <= 3.0,
                 qPrintable(QString("tick %1: the number stands at %2").arg(tick).arg(centre)));
    }
}

void TickLabelTest::twoDigitsStandBesideEachOther()
{
    TickLabel label("11", nullptr);
    const QImage picture = painted(label);
    const double first = inkCentre(picture, 0, 5);
    const double second = inkCentre(picture, 5, 10);
    QCOMPARE(second - first, 5.0);
    QCOMPARE(inkCentre(picture, 10, 200), -1.0);
}

void TickLabelTest::nothingIsCutOff()
{
    // Two letters that reach as far up and down as any.
    TickLabel label("0 Sj", nullptr);
    TickLabel high("0 Sj", nullptr);
    const QImage picture = painted(label);
    const QImage whole = painted(high, 30);
    const auto inkRows = [](const QImage &image) {
        int rows = 0;
        for (int y = 0; y < image.height(); ++y)
            rows += int(inkCentre(image.copy(0, y, image.width(), 1), 0, image.width()) >= 0.0);
        return rows;
    };
    QVERIFY(inkRows(whole) > 0);
    QCOMPARE(inkRows(picture), inkRows(whole));
}

void TickLabelTest::theTextIsTheTextGiven()
{
    const TickLabel label(NUMBERS, nullptr);
    QCOMPARE(label.text(), NUMBERS);
}

REGISTER_TEST(TickLabelTest)
#include "tst_tick_label.moc"
