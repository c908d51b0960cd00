#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"

#include "tests/TestProgram.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>

using namespace WindowProbe;

namespace
{

constexpr int TIMEOUT_MS = 60000;
/// Of the pictures that are made of a page.
constexpr int DOTS_PER_INCH = 72;

enum Quarter { TopLeft, TopRight, BottomLeft, BottomRight };
const QRgb COLORS[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00};

/// A picture whose quarters tell how it lies.
QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2;
    const int h = size.height() / 2;
    painter.fillRect(0, 0, w, h, QColor(COLORS[TopLeft]));
    painter.fillRect(w, 0, w, h, QColor(COLORS[TopRight]));
    painter.fillRect(0, h, w, h, QColor(COLORS[BottomLeft]));
    painter.fillRect(w, h, w, h, QColor(COLORS[BottomRight]));
    return image;
}

/// The smallest rectangle that holds everything printed.
QRect inked(const QImage &page)
{
    QRect box;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QRgb pixel = page.pixel(x, y);
            if (qRed(pixel) < 200 || qGreen(pixel) < 200 || qBlue(pixel) < 200)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

/// Which quarter of the picture lies there.
int quarterAt(const QImage &page, QPoint point)
{
    const QRgb pixel = page.pixel(point);
    for (int i = 0; i < 4; ++i) {
        if (qAbs(qRed(pixel) - qRed(COLORS[i])) < 60 &&
            qAbs(qGreen(pixel) - qGreen(COLORS[i])) < 60 &&
            qAbs(qBlue(pixel) - qBlue(COLORS[i])) < 60)
            return i;
    }
    return -1;
}

} // namespace

/// Prints through a print server of its own to a printer that keeps the pages as files.
class PrintingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void pagesHoldThePictureFittedAndCentred_data();
    void pagesHoldThePictureFittedAndCentred();
    void aDismissedDialogPrintsNothing();
    void anEmptyPicturePrintsNothing();

private:
    /// Waits for the next job and makes a picture of its only page; null if none comes.
    QImage nextPage();
    [[nodiscard]] QStringList jobs() const;

    QTemporaryDir m_folder;
    QProcess m_server;
    QStringList m_seen;
};

void PrintingTest::initTestCase()
{
    const QString folder = m_folder.filePath("server");
    qputenv("CUPS_SERVER", QFile::encodeName(folder + "/cups.sock"));
    m_server.setProcessChannelMode(QProcess::SeparateChannels);
    m_server.start(QStringLiteral(TEST_SOURCE_DIR) + "/private-print-server", {folder});
    QVERIFY(m_server.waitForStarted());
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += m_server.readAllStandardOutput()).contains("ready"),
                             TIMEOUT_MS);
    QCOMPARE(QPrinterInfo::availablePrinterNames(), QStringList{"TestPDF"});
}

void PrintingTest::cleanupTestCase()
{
    m_server.terminate();
    QVERIFY(m_server.waitForFinished());
}

QStringList PrintingTest::jobs() const
{
    return QDir(m_folder.filePath("server/jobs")).entryList({"*.pdf"}, QDir::Files);
}

QImage PrintingTest::nextPage()
{
    QString job;
    const bool came = QTest::qWaitFor(
        [&] {
            for (const QString &each : jobs()) {
                if (!m_seen.contains(each))
                    job = each;
            }
            return !job.isEmpty();
        },
        TIMEOUT_MS);
    if (!came)
        return {};
    m_seen << job;
    const QString pdf = m_folder.filePath("server/jobs/" + job);
    QProcess::execute(
        "pdftoppm", {"-png", "-r", QString::number(DOTS_PER_INCH), pdf, m_folder.filePath("page")});
    const QStringList pages = QDir(m_folder.path()).entryList({"page*.png"});
    if (pages.size() != 1)
        return {};
    const QImage page(m_folder.filePath(pages.first()));
    QFile::remove(m_folder.filePath(pages.first()));
    return page;
}

void PrintingTest::pagesHoldThePictureFittedAndCentred_data()
{
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

void PrintingTest::pagesHoldThePictureFittedAndCentred()
{
    QFETCH(QSize, picture);
    QFETCH(bool, landscape);
    QFETCH(int, topLeft);
    QFETCH(int, topRight);
    MainWindow window;
    window.show();
    enter(window, 3);
    window.currentCanvas()->stopAutoRefresh();
    window.currentCanvas()->imageCaptured(quarters(picture));
    QSize paper;
    whenAsked<QPrintDialog>(&window, [&](QPrintDialog *dialog) {
        QCOMPARE(dialog->parentWidget(), &window);
        dialog->printer()->setPageOrientation(landscape ? QPageLayout::Landscape
                                                        : QPageLayout::Portrait);
        paper = QSize(dialog->printer()->width(), dialog->printer()->height());
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    window.button(Command::Print)->click();
    const QImage page = nextPage();
    QVERIFY(!page.isNull());
    QCOMPARE(page.width() > page.height(), landscape);

    // Millimetres of margin cost the page a little; both of its sides lose the same.
    QSize drawn = landscape ? picture : picture.transposed();
    drawn.scale(paper, Qt::KeepAspectRatio);
    const QRect box = inked(page);
    const double shape = double(drawn.width()) / drawn.height();
    QVERIFY2(qAbs(double(box.width()) / box.height() / shape - 1.0) < 0.01,
             qPrintable(QString("%1 x %2").arg(box.width()).arg(box.height())));
    QVERIFY2(qAbs(box.center().x() - page.rect().center().x()) <= 2, "centred across");
    QVERIFY2(qAbs(box.center().y() - page.rect().center().y()) <= 2, "centred upwards");
    const bool fillsWidth = box.width() > page.width() * 0.9;
    const bool fillsHeight = box.height() > page.height() * 0.9;
    QVERIFY2(fillsWidth || fillsHeight, "as large as the page allows");

    QCOMPARE(quarterAt(page, box.topLeft() + QPoint(20, 20)), topLeft);
    QCOMPARE(quarterAt(page, box.topRight() + QPoint(-20, 20)), topRight);
}

void PrintingTest::aDismissedDialogPrintsNothing()
{
    MainWindow window;
    window.show();
    const int before = jobs().size();
    bool shown = false;
    whenAsked<QPrintDialog>(&window, [&](QPrintDialog *dialog) {
        shown = true;
        dialog->reject();
    });
    window.button(Command::Print)->click();
    QVERIFY(shown);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(jobs().size(), before);
}

void PrintingTest::anEmptyPicturePrintsNothing()
{
    MainWindow window;
    window.show();
    enter(window, 2);
    window.currentCanvas()->stopAutoRefresh();
    window.currentCanvas()->imageCaptured(QImage());
    if (!window.currentCanvas()->currentImage().isNull())
        QCOMPARE(window.currentCanvas()->currentImage().size(), QSize(0, 0));
    whenAsked<QPrintDialog>(&window, [](QPrintDialog *dialog) {
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    window.button(Command::Print)->click();
    // The job after it is the first that the printer gets.
    enter(window, 3);
    window.currentCanvas()->imageCaptured(quarters(QSize(1280, 720)));
    whenAsked<QPrintDialog>(&window, [](QPrintDialog *dialog) {
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    const int before = jobs().size();
    window.button(Command::Print)->click();
    QVERIFY(!nextPage().isNull());
    QCOMPARE(jobs().size(), before + 1);
}

REGISTER_TEST(PrintingTest)
#include "tst_printing.moc"
