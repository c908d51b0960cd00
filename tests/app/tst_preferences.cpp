#include "settings/Preferences.h"

#include "diagnostics/TerminalLines.h"
#include "settings/StoredSettings.h"
#include "tests/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using TerminalLines::Line;

class PreferencesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        StoredSettings::nameFiles();
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
        QTest::addColumn<QString>("line");
        const QString file = Preferences::fileName();
        QTest::newRow("garbage") << QByteArray("\x00\xff[[page\n=%%", 12)
                                 << TerminalLines::text(Line::SettingsUnreadable, {file});
        for (const char *value : {"two", "3", "-1"}) {
            QTest::newRow(value) << QByteArray("[General]\npage=") + value + '\n'
                                 << TerminalLines::text(
                                        Line::SettingsOutOfRange,
                                        {file, QStringLiteral("page=") + QLatin1String(value)});
        }
    }

    void whatIsNoNumberOrOutsideGivesTheDefault()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, line);
        QVERIFY(QDir().mkpath(QFileInfo(Preferences::fileName()).path()));
        QFile file(Preferences::fileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
        QCOMPARE(Preferences::number("page", 1, 0, 2), 1);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
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
