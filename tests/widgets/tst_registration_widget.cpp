#include "tests/TestProgram.h"
#include "widgets/RegistrationFile.h"
#include "widgets/RegistrationWidget.h"

#include <QtTest>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>

namespace
{

/// Answers the next file dialog with a path, or cancels it when the path is empty. The caption of
/// the dialog that came is left in `caption`.
void answerFileDialog(const QString &path, QString *caption)
{
    QTimer::singleShot(0, [path, caption] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        *caption = dialog->windowTitle();
        if (path.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        dialog->findChild<QDialogButtonBox *>()->buttons().first()->click();
        if (dialog->isVisible())
            static_cast<QDialog *>(dialog)->accept();
    });
}

} // namespace

class RegistrationWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QVERIFY(m_folder.isValid());
    }

    void init() { m_widget = std::make_unique<RegistrationWidget>(nullptr); }

    void anEmptyListIsOnePageOfDisabledEditors()
    {
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        m_widget->refresh();
        QCOMPARE(pages.takeFirst(), QVariantList({1, 1}));
        for (int slot = 0; slot < 8; ++slot) {
            QVERIFY(!name(slot)->isEnabled() && name(slot)->text().isEmpty());
            QVERIFY(!content(slot)->isEnabled() && content(slot)->toPlainText().isEmpty());
        }
    }

    void slotsStandTwoByTwoContentBelowName()
    {
        auto *grid = qobject_cast<QGridLayout *>(m_widget->layout());
        QVERIFY(grid);
        for (int slot = 0; slot < 8; ++slot) {
            QCOMPARE(grid->itemAtPosition((slot / 2) * 2, slot % 2)->widget(),
                     static_cast<QWidget *>(name(slot)));
            QCOMPARE(grid->itemAtPosition((slot / 2) * 2 + 1, slot % 2)->widget(),
                     static_cast<QWidget *>(content(slot)));
        }
    }

    void nineItemsGiveTwoPages()
    {
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        add(9);
        QCOMPARE(pages.last(), QVariantList({1, 2}));
        m_widget->nextPage();
        QCOMPARE(pages.last(), QVariantList({2, 2}));
        QVERIFY(name(0)->isEnabled());
        for (int slot = 1; slot < 8; ++slot)
            QVERIFY(!name(slot)->isEnabled() && !content(slot)->isEnabled());
    }

    void theLastAndTheFirstPageStopTheSteppingAndSaySo()
    {
        add(9);
        m_widget->nextPage();
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        m_widget->nextPage();
        QCOMPARE(pages.takeFirst(), QVariantList({2, 2}));
        m_widget->previousPage();
        m_widget->previousPage();
        QCOMPARE(pages.last(), QVariantList({1, 2}));
    }

    void whatIsTypedGoesIntoTheItemOfItsPage()
    {
        add(10);
        m_widget->nextPage();
        name(1)->setText("Ada");
        content(1)->setPlainText("two\nlines");
        QCOMPARE(m_widget->items().at(9), (RegistrationItem{"Ada", "two\nlines"}));
        m_widget->previousPage();
        QVERIFY(name(1)->text().isEmpty());
        m_widget->nextPage();
        QCOMPARE(name(1)->text(), QString("Ada"));
        QCOMPARE(content(1)->toPlainText(), QString("two\nlines"));
        QVERIFY(m_widget->items().at(1).name.isEmpty());
    }

    void showingAPageDoesNotRewriteItsItems()
    {
        // The editors would make one kind of line end of both, and an empty string of the null one.
        QVERIFY(RegistrationFile::write(path("ends.rf"), {{QString(), "one\r\ntwo"}}));
        openFrom("ends.rf");
        m_widget->refresh();
        QVERIFY(m_widget->items().at(0).name.isNull());
        QCOMPARE(m_widget->items().at(0).content, QString("one\r\ntwo"));
    }

    void createStartsAnEmptyListWithoutAFile()
    {
        add(3);
        saveTo("first.rf");
        QVERIFY(!m_widget->fileName().isEmpty());
        m_widget->create();
        QVERIFY(m_widget->items().isEmpty());
        QVERIFY(m_widget->fileName().isEmpty());
    }

    void aSavedListIsReadBack()
    {
        add(2);
        name(0)->setText("n");
        content(0)->setPlainText("c");
        QCOMPARE(saveTo("list.rf"), QString("Save registration file..."));
        m_widget->create();
        QCOMPARE(openFrom("list.rf"), QString("Open registration file..."));
        QCOMPARE(m_widget->items().size(), 2);
        QCOMPARE(name(0)->text(), QString("n"));
    }

    void savingAgainAsksForNoName()
    {
        add(1);
        saveTo("again.rf");
        name(0)->setText("changed");
        m_widget->save();
        QFile file(path("again.rf"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(RegistrationFile::read(file)->at(0).name, QString("changed"));
    }

    void savingAfterOpeningAsksForAName()
    {
        add(1);
        saveTo("opened.rf");
        m_widget->create();
        openFrom("opened.rf");
        QVERIFY(m_widget->fileName().isEmpty());
        QCOMPARE(saveTo("other.rf"), QString("Save registration file..."));
        QVERIFY(QFile::exists(path("other.rf")));
    }

    void cancelledDialogsChangeNothing()
    {
        add(9);
        m_widget->nextPage();
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        openFrom(QString());
        saveTo(QString());
        QCOMPARE(pages.size(), 0);
        QVERIFY(m_widget->fileName().isEmpty());
        QCOMPARE(m_widget->items().size(), 9);
    }

    void aTruncatedFileLeavesTheListAndReturnsToPageOne()
    {
        QFile file(path("cut.rf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromHex("00000002 00000002 0041"));
        file.close();
        add(9);
        m_widget->nextPage();
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        openFrom("cut.rf");
        QCOMPARE(pages.last(), QVariantList({1, 2}));
        QCOMPARE(m_widget->items().size(), 9);
    }

    void noFailedReadChangesTheList_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray whole = QByteArray::fromHex("00000001 00000004 00410042 00000002 0043");
        for (int length = 0; length < whole.size(); ++length)
            QTest::newRow(qPrintable(QString("cut at %1").arg(length))) << whole.left(length);
        QTest::newRow("negative count") << QByteArray::fromHex("80000000") + whole.mid(4);
        QTest::newRow("huge count") << QByteArray::fromHex("7FFFFFFF") + whole.mid(4);
        QTest::newRow("odd length") << QByteArray::fromHex("00000001 00000003 004100 00000000");
    }

    void noFailedReadChangesTheList()
    {
        QFETCH(QByteArray, bytes);
        put("bad.rf", bytes);
        m_widget->add();
        name(0)->setText("kept");
        openFrom("bad.rf");
        QCOMPARE(m_widget->items(), QVector<RegistrationItem>({{"kept", QString()}}));
    }

    void aFailedSaveLeavesTheFileAndSaysNothing()
    {
        add(1);
        saveTo("kept.rf");
        const QByteArray before = get("kept.rf");
        content(0)->setPlainText(QString(50000, 'x'));

        // A full disk: no file of this process may grow beyond a few bytes.
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        signal(SIGXFSZ, SIG_IGN);
        const rlimit small{10, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        m_widget->save();
        setrlimit(RLIMIT_FSIZE, &old);

        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(get("kept.rf"), before);
        QCOMPARE(m_widget->items().at(0).content.size(), 50000);
        m_widget->save();
        QVERIFY(get("kept.rf").size() > 100000);
    }

    void aHundredThousandItemsCanBePagedThrough()
    {
        QVERIFY(RegistrationFile::write(path("many.rf"),
                                        QVector<RegistrationItem>(100000, {"n", "c"})));
        openFrom("many.rf");
        QSignalSpy pages(m_widget.get(), &RegistrationWidget::pageChanged);
        m_widget->nextPage();
        QCOMPARE(pages.last(), QVariantList({2, 12500}));
        m_widget->add();
        QCOMPARE(pages.last(), QVariantList({2, 12501}));
        QCOMPARE(name(7)->text(), QString("n"));
    }

private:
    void put(const QString &fileName, const QByteArray &bytes) const
    {
        QFile file(path(fileName));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    QByteArray get(const QString &fileName) const
    {
        QFile file(path(fileName));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString path(const QString &name) const
    {
        return name.isEmpty() ? QString() : m_folder.filePath(name);
    }

    void add(int count)
    {
        for (int i = 0; i < count; ++i)
            m_widget->add();
    }

    QString saveTo(const QString &file)
    {
        QString caption;
        answerFileDialog(path(file), &caption);
        m_widget->save();
        return caption;
    }

    QString openFrom(const QString &file)
    {
        QString caption;
        answerFileDialog(path(file), &caption);
        m_widget->open();
        return caption;
    }

    QLineEdit *name(int slot) const { return m_widget->findChildren<QLineEdit *>().at(slot); }
    QTextEdit *content(int slot) const { return m_widget->findChildren<QTextEdit *>().at(slot); }

    QTemporaryDir m_folder;
    std::unique_ptr<RegistrationWidget> m_widget;
};

REGISTER_TEST(RegistrationWidgetTest)
#include "tst_registration_widget.moc"
