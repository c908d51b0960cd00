#include "ReferencePipeline.h"

#include "canvas/SnapshotFile.h"

#include <QtTest>

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <thread>

namespace
{

/// No file of this process grows beyond the limit while it lives, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY(FileSizeLimit)

private:
    rlimit m_before{};
};

} // namespace

class SnapshotFileTest : public QObject
{
    Q_OBJECT

private slots:
    void isNamedAfterTheSecond()
    {
        const QDateTime time(QDate(2026, 3, 9), QTime(7, 5, 2, 999));
        QCOMPARE(SnapshotFile::path("/pictures", time),
                 QString("/pictures/2026-03-09_07-05-02.jpg"));
    }

    void writesAJpegOfThePicture()
    {
        QTemporaryDir folder;
        QImage picture(64, 48, QImage::Format_RGB888);
        picture.fill(QColor(200, 100, 50));
        const QString path = folder.filePath("a.jpg");
        QVERIFY(SnapshotFile::write(path, picture));
        QImage read;
        QVERIFY(read.load(path, "JPG"));
        QCOMPARE(read.size(), picture.size());
        QVERIFY(std::abs(qRed(read.pixel(30, 20)) - 200) < 6);
    }

    void replacesAnEarlierFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.jpg");
        QVERIFY(SnapshotFile::write(
            path, ReferencePipeline::noise({640, 480}, QImage::Format_RGB888, 1)));
        QImage small(8, 8, QImage::Format_RGB888);
        small.fill(Qt::red);
        QVERIFY(SnapshotFile::write(path, small));
        QCOMPARE(QImage(path).size(), QSize(8, 8));
    }

    void leavesNoFileInAMissingFolder()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("gone/a.jpg");
        QVERIFY(
            !SnapshotFile::write(path, ReferencePipeline::noise({8, 8}, QImage::Format_RGB888, 1)));
        QVERIFY(!QFile::exists(path));
    }

    void leavesNoFileOnAFullDisk_data()
    {
        QTest::addColumn<int>("room");
        QTest::newRow("none at all") << 0;
        QTest::newRow("a little") << 20000;
        QTest::newRow("all but the last buffer") << -1;
    }

    void leavesNoFileOnAFullDisk()
    {
        QFETCH(int, room);
        QTemporaryDir folder;
        const QImage picture = ReferencePipeline::noise({320, 240}, QImage::Format_RGB888, 2);
        const QString path = folder.filePath("a.jpg");
        QVERIFY(SnapshotFile::write(path, picture));
        const auto whole = QFileInfo(path).size();
        QFile::remove(path);
        {
            const FileSizeLimit limit(static_cast<rlim_t>(room < 0 ? whole - 1 : room));
            QVERIFY(!SnapshotFile::write(path, picture));
        }
        QVERIFY(!QFile::exists(path));
    }

    void leavesNoFileForANullPicture()
    {
        QTemporaryDir folder;
        QVERIFY(!SnapshotFile::write(folder.filePath("a.jpg"), {}));
        QVERIFY(!QFile::exists(folder.filePath("a.jpg")));
    }

    void twoThreadsMaySaveToOneName()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.jpg");
        const QImage picture = ReferencePipeline::noise({160, 120}, QImage::Format_RGB888, 3);
        const auto save = [&] {
            for (int i = 0; i < 20; ++i)
                SnapshotFile::write(path, picture.copy());
        };
        std::thread other(save);
        save();
        other.join();
        QCOMPARE(QImage(path).size(), picture.size());
    }
};

QTEST_GUILESS_MAIN(SnapshotFileTest)
#include "tst_snapshot_file.moc"
