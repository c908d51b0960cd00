#include "settings/StoredSettings.h"
#include "tests/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QtTest>

/// What a settings file holds that no setting can be.
class StoredSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void namesWhatIsOutOfRange_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("empty") << QByteArray() << QStringList();
        QTest::newRow("least") << QByteArray("snapshotMode=0\nsnapshotInterval=0\nresolution=0\n"
                                             "recordingResolution=0\n")
                               << QStringList();
        QTest::newRow("most") << QByteArray(
                                     "snapshotMode=1\nsnapshotInterval=18446744073709551615\n"
                                     "resolution=2\nrecordingResolution=2\n")
                              << QStringList();
        QTest::newRow("above") << QByteArray("snapshotMode=2\nresolution=3\n"
                                             "recordingResolution=99\n")
                               << QStringList{"snapshotMode=2", "resolution=3",
                                              "recordingResolution=99"};
        QTest::newRow("below") << QByteArray("snapshotInterval=-5\nresolution=-1\n")
                               << QStringList{"snapshotInterval=-5", "resolution=-1"};
        QTest::newRow("no numbers")
            << QByteArray("snapshotMode=seven\nsnapshotInterval=\nresolution=1.5\n")
            << QStringList{"snapshotMode=seven", "snapshotInterval=", "resolution=1.5"};
        QTest::newRow("other keys")
            << QByteArray("language=99\nsnapshotPath=-1\n") << QStringList();
    }

    void namesWhatIsOutOfRange()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, found);
        QFile file(QDir::tempPath() + "/stored.conf");
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[General]\n" + content) > 0);
        file.close();
        QCOMPARE(StoredSettings::outOfRange(QSettings(file.fileName(), QSettings::IniFormat)),
                 found);
    }
};

REGISTER_CORE_TEST(StoredSettingsTest)
#include "tst_stored_settings.moc"
