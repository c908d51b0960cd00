#include "canvas/ImageCanvas.h"
#include "mainwindow/actions/PicturePrinter.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/PrintedPage.h"

#include <QMessageBox>
#include <QPrinter>
#include <QtTest>

using PrintedPage::quarters;

/// The printer's part without a window, a print server or a dialog: pages are written as PDF files.
class PicturePrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void aPageHoldsThePictureFittedAndCentred_data();
    void aPageHoldsThePictureFittedAndCentred();
    void anEmptyPictureMakesNoPage();
    void withoutPrintersTheUserIsTold();

private:
    QTemporaryDir m_folder;
};

void PicturePrinterTest::aPageHoldsThePictureFittedAndCentred_data()
{
    using namespace PrintedPage;
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<bool>("landscape");
    // The picture's quarters that lie at the printed picture's top left and top right.
    QTest::addColumn<int>("topLeft");
    QTest::addColumn<int>("topRight");
    QTest::newRow("wide picture on upright paper is turned clockwise")
        << QSize(1280, 720) << false << int(BottomLeft) << int(TopLeft);
    QTest::newRow("wide picture on wide paper")
        << QSize(1280, 720) << true << int(TopLeft) << int(TopRight);
    QTest::newRow("upright picture on upright paper is turned all the same")
        << QSize(600, 900) << false << int(BottomLeft) << int(TopLeft);
    QTest::newRow("upright picture on wide paper")
        << QSize(600, 900) << true << int(TopLeft) << int(TopRight);
}

void PicturePrinterTest::aPageHoldsThePictureFittedAndCentred()
{
    QFETCH(QSize, picture);
    QFETCH(bool, landscape);
    QFETCH(int, topLeft);
    QFETCH(int, topRight);
    const QString file = m_folder.filePath("page.pdf");
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    printer.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    PicturePrinter::drawPage(quarters(picture), &printer);
    const QImage page = PrintedPage::of(file);
    QVERIFY(!page.isNull());
    QCOMPARE(page.width() > page.height(), landscape);

    // Millimetres of margin cost the page a little; both of its sides lose the same.
    QSize drawn = landscape ? picture : picture.transposed();
    drawn.scale(printer.width(), printer.height(), Qt::KeepAspectRatio);
    const QRect box = PrintedPage::inked(page);
    const double shape = double(drawn.width()) / drawn.height();
    QVERIFY2(qAbs(double(box.width()) / box.height() / shape - 1.0) < 0.01,
             qPrintable(QString("%1 x %2").arg(box.width()).arg(box.height())));
    QVERIFY2(qAbs(box.center().x() - page.rect().center().x()) <= 2, "centred across");
    QVERIFY2(qAbs(box.center().y() - page.rect().center().y()) <= 2, "centred upwards");
    const bool fillsWidth = box.width() > page.width() * 0.9;
    const bool fillsHeight = box.height() > page.height() * 0.9;
    QVERIFY2(fillsWidth || fillsHeight, "as large as the page allows");

    QCOMPARE(PrintedPage::quarterAt(page, box.topLeft() + QPoint(20, 20)), topLeft);
    QCOMPARE(PrintedPage::quarterAt(page, box.topRight() + QPoint(-20, 20)), topRight);
}

void PicturePrinterTest::anEmptyPictureMakesNoPage()
{
    const QString file = m_folder.filePath("empty.pdf");
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    PicturePrinter::drawPage({}, &printer);
    QVERIFY(!QFile::exists(file));
}

void PicturePrinterTest::withoutPrintersTheUserIsTold()
{
    qputenv("CUPS_SERVER", QFile::encodeName(m_folder.filePath("no-server.sock")));
    ImageCanvas canvas;
    canvas.imageCaptured(quarters({64, 48}));
    QWidget window;
    window.show();
    QString message;
    QTimer::singleShot(0, &window, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        QCOMPARE(box->parentWidget(), &window);
        message = box->text();
        box->accept();
    });
    PicturePrinter::print(&canvas, &window);
    QCOMPARE(message, QString("No printers found on this system."));
}

REGISTER_TEST(PicturePrinterTest)
#include "tst_picture_printer.moc"
