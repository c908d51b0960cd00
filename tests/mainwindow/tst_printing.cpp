#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"

#include "tests/TestProgram.h"
#include "tests/mainwindow/PrintedPage.h"

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

/// Prints through a print server of its own to a printer that keeps the pages as files.
class PrintingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void aPageHoldsThePictureOnTheChosenPaper();
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
    return PrintedPage::of(m_folder.filePath("server/jobs/" + job));
}

void PrintingTest::aPageHoldsThePictureOnTheChosenPaper()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    window.currentCanvas()->stopAutoRefresh();
    window.currentCanvas()->imageCaptured(PrintedPage::quarters({1280, 720}));
    whenAsked<QPrintDialog>(&window, [&](QPrintDialog *dialog) {
        QCOMPARE(dialog->parentWidget(), &window);
        dialog->printer()->setPageOrientation(QPageLayout::Landscape);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    window.button(Command::Print)->click();
    const QImage page = nextPage();
    QVERIFY(!page.isNull());
    QVERIFY(page.width() > page.height());
    const QRect box = PrintedPage::inked(page);
    QVERIFY(box.width() > page.width() * 0.9);
    QCOMPARE(PrintedPage::quarterAt(page, box.topLeft() + QPoint(20, 20)),
             int(PrintedPage::TopLeft));
    QCOMPARE(PrintedPage::quarterAt(page, box.topRight() + QPoint(-20, 20)),
             int(PrintedPage::TopRight));
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
    window.currentCanvas()->imageCaptured(PrintedPage::quarters({1280, 720}));
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
