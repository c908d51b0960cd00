#include "settings/Config.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace
{

QString documents()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

} // namespace

class ConfigTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("Quillmark");
        QCoreApplication::setApplicationName("Document Camera");
        QVERIFY(QDir::home().path().startsWith("/tmp/"));
    }

    void anEmptyStoreGivesTheDefaultsAndBothFolders()
    {
        QVERIFY2(!QDir(documents()).exists(), "the documents folder itself is missing here");
        QCOMPARE(Config::snapshotMode(), CanvasModes::Single);
        QCOMPARE(Config::snapshotInterval(), 0ULL);
        QCOMPARE(Config::snapshotPath(), documents() + "/Document Camera/images");
        QCOMPARE(Config::recordPath(), documents() + "/Document Camera/videos");
        QCOMPARE(Config::resolution(), QSize(1280, 720));
        QCOMPARE(Config::recordingResolution(), QSize(1280, 720));
        QCOMPARE(Config::getLanguage(), QString("en"));
        QVERIFY(QDir(Config::snapshotPath()).exists());
        QVERIFY(QDir(Config::recordPath()).exists());
    }

    void everySetterIsReadableFromTheStoreAtOnce()
    {
        Config::setSnapshotMode(CanvasModes::Continuous);
        QCOMPARE(QSettings().value("snapshotMode").toInt(), 1);
        QCOMPARE(Config::snapshotMode(), CanvasModes::Continuous);
        Config::setSnapshotInterval(5000000000ULL);
        QCOMPARE(QSettings().value("snapshotInterval").toULongLong(), 5000000000ULL);
        QCOMPARE(Config::snapshotInterval(), 5000000000ULL);
        Config::setSnapshotPath("/nowhere/images");
        QCOMPARE(QSettings().value("snapshotPath").toString(), QString("/nowhere/images"));
        Config::setRecordPath("/nowhere/videos");
        QCOMPARE(QSettings().value("recordPath").toString(), QString("/nowhere/videos"));
        QCOMPARE(Config::recordPath(), QString("/nowhere/videos"));
        Config::setResolutionIndex(2);
        QCOMPARE(QSettings().value("resolution").toInt(), 2);
        Config::setRecordingResolutionIndex(0);
        QCOMPARE(QSettings().value("recordingResolution").toInt(), 0);
        QCOMPARE(Config::recordingResolution(), QSize(1024, 768));
        Config::setLanguage("fr");
        QCOMPARE(QSettings().value("language").toString(), QString("fr"));
    }

    void aVanishedSnapshotFolderIsKeptAsItIs()
    {
        Config::setSnapshotPath("/nowhere/at/all");
        QCOMPARE(Config::snapshotPath(), QString("/nowhere/at/all"));
        QVERIFY(!QDir("/nowhere").exists());
    }

    void aResolutionIndexOutsideTheTableIsFullHighDefinition_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QSize>("size");
        QTest::newRow("0") << 0 << QSize(1024, 768);
        QTest::newRow("1") << 1 << QSize(1280, 720);
        QTest::newRow("2") << 2 << QSize(1920, 1080);
        QTest::newRow("7") << 7 << QSize(1920, 1080);
        QTest::newRow("99") << 99 << QSize(1920, 1080);
        QTest::newRow("-1") << -1 << QSize(1920, 1080);
    }

    void aResolutionIndexOutsideTheTableIsFullHighDefinition()
    {
        QFETCH(int, index);
        QFETCH(QSize, size);
        Config::setResolutionIndex(index);
        QCOMPARE(Config::resolution(), size);
        Config::setRecordingResolutionIndex(index);
        QCOMPARE(Config::recordingResolution(), size);
    }

    void bothFoldersAreCreatedAlsoWhenAPathIsStored()
    {
        QVERIFY(QDir(documents() + "/Document Camera").removeRecursively());
        Config second;
        QVERIFY(QDir(documents() + "/Document Camera/images").exists());
        QVERIFY(QDir(documents() + "/Document Camera/videos").exists());
    }
};

REGISTER_CORE_TEST(ConfigTest)
#include "tst_config.moc"
