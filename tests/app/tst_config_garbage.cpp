#include "settings/Config.h"
#include "settings/StoredSettings.h"

#include <QtTest>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>

namespace
{

/// The file behind the default store.
QString storeFile()
{
    return QSettings().fileName();
}

void writeStore(const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(storeFile()).path()));
    QFile file(storeFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// What a fresh process reads: the settings are read once in a process, so each store needs one.
QStringList readInAFreshProcess()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--print-settings"});
    process.waitForFinished();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).split('\n');
}

int printSettings()
{
    const QSize preview = Config::resolution();
    const QSize recording = Config::recordingResolution();
    printf("%d\n%llu\n%s\n%dx%d\n%dx%d\n%s\n", int(Config::snapshotMode()),
           Config::snapshotInterval(), qPrintable(Config::snapshotPath()), preview.width(),
           preview.height(), recording.width(), recording.height(),
           qPrintable(Config::getLanguage()));
    return 0;
}

} // namespace

class ConfigGarbageTest : public QObject
{
    Q_OBJECT

private slots:
    void textInsteadOfNumbersCountsAsZero()
    {
        writeStore("[General]\nsnapshotMode=seven\nsnapshotInterval=soon\nresolution=wide\n"
                   "recordingResolution=2\nlanguage=fr\nsnapshotPath=/some/where\n");
        const QStringList lines = readInAFreshProcess();
        QVERIFY(lines.size() > 5);
        QCOMPARE(lines[0], QString("0"));
        QCOMPARE(lines[1], QString("0"));
        QCOMPARE(lines[2], QString("/some/where"));
        QCOMPARE(lines[3], QString("1024x768"));
        QCOMPARE(lines[4], QString("1920x1080"));
        QCOMPARE(lines[5], QString("fr"));
    }

    void numbersOutOfRangeAreKeptAndHarmless()
    {
        writeStore("[General]\nsnapshotMode=7\nsnapshotInterval=-5\nresolution=-1\n"
                   "recordingResolution=99\n");
        const QStringList lines = readInAFreshProcess();
        QVERIFY(lines.size() > 5);
        QCOMPARE(lines[0], QString("7"));
        QCOMPARE(lines[1], QString("0"));
        QCOMPARE(lines[3], QString("1920x1080"));
        QCOMPARE(lines[4], QString("1920x1080"));
    }

    void aFileOfRandomBytesGivesTheDefaults()
    {
        QByteArray bytes;
        quint32 state = 1;
        for (int i = 0; i < 20000; ++i) {
            state = state * 1664525 + 1013904223;
            bytes.append(char(state >> 24));
        }
        writeStore(bytes);
        const QStringList lines = readInAFreshProcess();
        QVERIFY(lines.size() > 5);
        QCOMPARE(lines[0], QString("0"));
        QCOMPARE(lines[3], QString("1280x720"));
        QCOMPARE(lines[5], QString("en"));
    }

    void aFolderInThePlaceOfTheFileGivesTheDefaults()
    {
        QFile::remove(storeFile());
        QVERIFY(QDir().mkpath(storeFile()));
        const QStringList lines = readInAFreshProcess();
        QVERIFY(lines.size() > 5);
        QCOMPARE(lines[3], QString("1280x720"));
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    StoredSettings::nameFiles();
    if (application.arguments().contains("--print-settings"))
        return printSettings();
    ConfigGarbageTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_config_garbage.moc"
