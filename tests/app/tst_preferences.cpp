#include "settings/Preferences.h"

#include "tests/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

class PreferencesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName("Quillmark");
        QCoreApplication::setApplicationName("Document Camera");
        QFile::remove(Preferences::fileName());
        QDir(Preferences::fileName()).removeRecursively();
    }

    void theFileIsBesideTheSettings()
    {
        QVERIFY2(Preferences::fileName().endsWith("/Quillmark/Document Camera Extras.conf"),
                 qPrintable(Preferences::fileName()));
    }

    void thereIsNoFileUntilTheFirstChoice()
    {
        QCOMPARE(Preferences::number("page", 1, 0, 2), 1);
        QVERIFY(!QFileInfo::exists(Preferences::fileName()));
        Preferences::setNumber("page", 2);
        QVERIFY(QFileInfo::exists(Preferences::fileName()));
        QCOMPARE(Preferences::number("page", 1, 0, 2), 2);
    }

    void whatIsNoNumberOrOutsideGivesTheDefault_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("garbage") << QByteArray("\x00\xff[[page\n=%%", 12);
        QTest::newRow("a word") << QByteArray("[General]\npage=two\n");
        QTest::newRow("too large") << QByteArray("[General]\npage=3\n");
        QTest::newRow("too small") << QByteArray("[General]\npage=-1\n");
    }

    void whatIsNoNumberOrOutsideGivesTheDefault()
    {
        QFETCH(QByteArray, content);
        QVERIFY(QDir().mkpath(QFileInfo(Preferences::fileName()).path()));
        QFile file(Preferences::fileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QCOMPARE(Preferences::number("page", 1, 0, 2), 1);
    }

    void aFolderInItsPlaceIsNoHarm()
    {
        QVERIFY(QDir().mkpath(Preferences::fileName()));
        QCOMPARE(Preferences::number("page", 1, 0, 2), 1);
        Preferences::setNumber("page", 2);
        QCOMPARE(Preferences::number("page", 1, 0, 2), 1);
    }
};

REGISTER_CORE_TEST(PreferencesTest)
#include "tst_preferences.moc"
