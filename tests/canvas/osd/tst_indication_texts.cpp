#include "canvas/osd/EffectNames.h"
#include "canvas/osd/IndicationTexts.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTranslator>

#include <cmath>

namespace
{

/// Answers every text with its context and itself in capitals.
class ShoutingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return QString::fromLatin1(context) + '/' + QString::fromLatin1(source).toUpper();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class IndicationTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void recordTimeCountsHoursMinutesAndSeconds_data()
    {
        QTest::addColumn<qint64>("elapsedMs");
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << qint64(0) << "00:00:00";
        QTest::newRow("just below a second") << qint64(999) << "00:00:00";
        QTest::newRow("59 s") << qint64(59000) << "00:00:59";
        QTest::newRow("60 s") << qint64(60000) << "00:01:00";
        QTest::newRow("3725 s") << qint64(3725000) << "01:02:05";
        QTest::newRow("ten of each") << qint64(36610000) << "10:10:10";
        QTest::newRow("a hundred hours") << qint64(360000000) << "100:00:00";
    }

    void recordTimeCountsHoursMinutesAndSeconds()
    {
        QFETCH(qint64, elapsedMs);
        QFETCH(QString, text);
        QCOMPARE(IndicationTexts::recordTime(elapsedMs), text);
    }

    void zoomLevelsReadAsPowersOfTwo_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<QString>("text");
        QTest::newRow("1") << 1.0 << "1x";
        QTest::newRow("2") << 2.0 << "2x";
        QTest::newRow("3") << 3.0 << "4x";
        QTest::newRow("6") << 6.0 << "32x";
        QTest::newRow("between") << 2.9 << "2x";
        QTest::newRow("fitting a turned picture") << 0.5625 << "Best fit";
        QTest::newRow("nothing") << 0.0 << "Best fit";
        QTest::newRow("not a number") << std::nan("") << "Best fit";
        QTest::newRow("beyond all levels") << 1e9 << "1073741824x";
    }

    void zoomLevelsReadAsPowersOfTwo()
    {
        QFETCH(double, level);
        QFETCH(QString, text);
        QCOMPARE(IndicationTexts::zoomStep(level), text);
    }

    void threeQuarterTurnsRead270() { QCOMPARE(IndicationTexts::rotation(3), QString("270")); }

    void digitalZoomIsRightAlignedInFiveCharacters_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<QString>("text");
        QTest::newRow("2") << 2.0 << "x  2.0";
        QTest::newRow("12.34") << 12.34 << "x 12.3";
        QTest::newRow("none") << 0.0 << "x  0.0";
    }

    void digitalZoomIsRightAlignedInFiveCharacters()
    {
        QFETCH(double, factor);
        QFETCH(QString, text);
        QCOMPARE(IndicationTexts::digitalZoom(factor), text);
    }

    void namesOfModesOutsideTheTablesAreEmpty()
    {
        QCOMPARE(EffectNames::nameOf(EffectNames::maskIconNames, 4), QString("TOP"));
        QCOMPARE(EffectNames::nameOf(EffectNames::maskIconNames, 0), QString());
        QCOMPARE(EffectNames::nameOf(EffectNames::maskIconNames, 5), QString());
        QCOMPARE(EffectNames::nameOf(EffectNames::effectIconNames, -1), QString());
        QCOMPARE(EffectNames::translatedEffectName(4), QString());
        QCOMPARE(EffectNames::translatedEffectName(-1), QString());
    }

    void textsFollowATranslatorInstalledLater()
    {
        QCOMPARE(EffectNames::translatedEffectName(1), QString("B & W"));
        ShoutingTranslator translator;
        QCoreApplication::installTranslator(&translator);
        QCOMPARE(EffectNames::translatedEffectName(1), QString("EffectToolWindow/B & W"));
        QCOMPARE(EffectNames::translatedEffectName(3), QString("EffectToolWindow/MOSAIC"));
        QCOMPARE(IndicationTexts::zoomStep(0.5), QString("OSDProcessor/BEST FIT"));
        QCoreApplication::removeTranslator(&translator);
    }
};

REGISTER_CORE_TEST(IndicationTextsTest)
#include "tst_indication_texts.moc"
