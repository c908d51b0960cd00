#include "mainwindow/actions/PageFit.h"

#include "tests/TestProgram.h"

#include <QTest>

class PageFitTest : public QObject
{
    Q_OBJECT

private slots:
    void fitsAndCentres_data();
    void fitsAndCentres();
    void withoutAreaThereIsNothingToPrint_data();
    void withoutAreaThereIsNothingToPrint();
};

void PageFitTest::fitsAndCentres_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("page");
    QTest::addColumn<bool>("turned");
    QTest::addColumn<QRect>("target");

    QTest::newRow("wide on wide, width limits")
        << QSize(1280, 720) << QSize(1000, 700) << false << QRect(0, 69, 1000, 562);
    QTest::newRow("wide on wide, height limits")
        << QSize(1280, 720) << QSize(1280, 360) << false << QRect(320, 0, 640, 360);
    QTest::newRow("wide on upright is turned")
        << QSize(1280, 720) << QSize(700, 1000) << true << QRect(69, 0, 562, 1000);
    QTest::newRow("upright on upright is turned all the same")
        << QSize(720, 1280) << QSize(700, 1000) << true << QRect(0, 303, 700, 393);
    QTest::newRow("upright on wide is not")
        << QSize(720, 1280) << QSize(1000, 700) << false << QRect(303, 0, 393, 700);
    QTest::newRow("square page counts as wide")
        << QSize(200, 100) << QSize(400, 400) << false << QRect(0, 100, 400, 200);
    QTest::newRow("small pictures grow")
        << QSize(1, 1) << QSize(300, 200) << false << QRect(50, 0, 200, 200);
}

void PageFitTest::fitsAndCentres()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, page);
    QFETCH(bool, turned);
    QFETCH(QRect, target);
    const std::optional<PageFit> fit = PageFit::of(picture, page);
    QVERIFY(fit);
    QCOMPARE(fit->turned, turned);
    QCOMPARE(fit->target, target);
}

void PageFitTest::withoutAreaThereIsNothingToPrint_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("page");
    QTest::newRow("no picture") << QSize() << QSize(700, 1000);
    QTest::newRow("empty picture") << QSize(0, 0) << QSize(700, 1000);
    QTest::newRow("flat picture") << QSize(10, 0) << QSize(700, 1000);
    QTest::newRow("no page") << QSize(10, 10) << QSize();
    QTest::newRow("flat page") << QSize(10, 10) << QSize(0, 1000);
}

void PageFitTest::withoutAreaThereIsNothingToPrint()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, page);
    QVERIFY(!PageFit::of(picture, page));
}

REGISTER_PLAIN_TEST(PageFitTest)
#include "tst_page_fit.moc"
