#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"

#include "canvas/model/SnapshotFile.h"

#include <QtTest>

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

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

/// No file can be opened while it lives.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit limit{0, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }
    Q_DISABLE_COPY(NoDescriptors)

private:
    rlimit m_before{};
};

/// Why it failed; empty when it did not.
QString save(const QString &path, const QImage &picture)
{
    return SnapshotFile::write(path, SnapshotFile::encoded(picture)).value_or(QString());
}

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
        QCOMPARE(save(path, picture), QString());
        QImage read;
        QVERIFY(read.load(path, "JPG"));
        QCOMPARE(read.size(), picture.size());
        QVERIFY(std::abs(qRed(read.pixel(30, 20)) - 200) < 6);
    }

    void replacesAnEarlierFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.jpg");
        QCOMPARE(save(path, ReferencePipeline::noise({640, 480}, QImage::Format_RGB888, 1)),
                 QString());
        QImage small(8, 8, QImage::Format_RGB888);
        small.fill(Qt::red);
        QCOMPARE(save(path, small), QString());
        QCOMPARE(QImage(path).size(), QSize(8, 8));
    }

    void leavesNoFileInAMissingFolder()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("gone/a.jpg");
        QCOMPARE(save(path, ReferencePipeline::noise({8, 8}, QImage::Format_RGB888, 1)),
                 QString("No such file or directory"));
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
        QCOMPARE(save(path, picture), QString());
        const auto whole = QFileInfo(path).size();
        QFile::remove(path);
        {
            const FileSizeLimit limit(static_cast<rlim_t>(room < 0 ? whole - 1 : room));
            QCOMPARE(save(path, picture), QString("File too large"));
        }
        QVERIFY(!QFile::exists(path));
    }

    void leavesNoFileWithoutDescriptors()
    {
        QTemporaryDir folder;
        const QImage picture = ReferencePipeline::noise({32, 24}, QImage::Format_RGB888, 2);
        const QString path = folder.filePath("a.jpg");
        QString reason;
        {
            const NoDescriptors none;
            reason = save(path, picture);
        }
        QCOMPARE(reason, QString("Too many open files"));
        QVERIFY(!QFile::exists(path));
    }

    void leavesNoFileForANullPicture()
    {
        QTemporaryDir folder;
        QVERIFY(!save(folder.filePath("a.jpg"), {}).isEmpty());
        QVERIFY(!QFile::exists(folder.filePath("a.jpg")));
    }
};

REGISTER_CORE_TEST(SnapshotFileTest)
#include "tst_snapshot_file.moc"
