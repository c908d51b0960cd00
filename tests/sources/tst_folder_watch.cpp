#include "sources/photographs/FolderLister.h"
#include "sources/photographs/FolderWatch.h"
#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <optional>

namespace
{

/// What a watch told, all together. It outlives the watch's thread.
class Told
{
public:
    void add(const FolderWatch::Change &change)
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_names = change.names;
        m_written += change.written;
    }
    [[nodiscard]] int count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    [[nodiscard]] QStringList names() const
    {
        const std::lock_guard lock(m_mutex);
        return m_names;
    }
    [[nodiscard]] bool wasWritten(const QString &name) const
    {
        const std::lock_guard lock(m_mutex);
        return m_written.contains(name);
    }

private:
    /// Guards the others.
    mutable std::mutex m_mutex;
    int m_count = 0;
    QStringList m_names;
    QStringList m_written;
};

} // namespace

class FolderWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        write("a.jpg");
        m_told = std::make_shared<Told>();
        m_watch = std::make_unique<FolderWatch>(
            QDir(m_folder->path()), QStringList("a.jpg"),
            [told = m_told](const FolderWatch::Change &change) { told->add(change); });
        // The watch looks at the folder when its thread runs: until then nothing is told.
        QTRY_VERIFY((write("first.jpg"), m_told->count() > 0));
    }

    void cleanup() { m_watch.reset(); }

    void aPictureThatCameAfterTheListingIsTold()
    {
        // No event tells of it any more.
        write("late.jpg");
        const auto told = std::make_shared<Told>();
        const FolderWatch watch(QDir(m_folder->path()), {"a.jpg", "first.jpg"},
                                [told](const FolderWatch::Change &change) { told->add(change); });
        QTRY_COMPARE(told->names(), QStringList({"a.jpg", "first.jpg", "late.jpg"}));
    }

    void aNewPictureIsTold_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"written", "moved in", "linked"})
            QTest::newRow(how) << how;
    }

    void aNewPictureIsTold()
    {
        QFETCH(QString, how);
        if (how == "written") {
            write("b.jpg");
        } else if (how == "linked") {
            QVERIFY(QFile::link(path("a.jpg"), path("b.jpg")));
        } else {
            write("b.tmp");
            QVERIFY(QFile::rename(path("b.tmp"), path("b.jpg")));
        }
        QTRY_VERIFY(m_told->names().contains("b.jpg"));
        QVERIFY(m_told->names().contains("a.jpg"));
    }

    void aPictureThatIsWrittenOverIsTold_data()
    {
        QTest::addColumn<bool>("replaced");
        QTest::newRow("written over") << false;
        QTest::newRow("replaced") << true;
    }

    void aPictureThatIsWrittenOverIsTold()
    {
        QFETCH(bool, replaced);
        QVERIFY(!m_told->wasWritten("a.jpg"));
        if (replaced) {
            write("new.tmp");
            QVERIFY(rename(qPrintable(path("new.tmp")), qPrintable(path("a.jpg"))) == 0);
        } else {
            write("a.jpg");
        }
        QTRY_VERIFY(m_told->wasWritten("a.jpg"));
    }

    void otherFilesAreNotTold()
    {
        QTRY_VERIFY(m_told->wasWritten("first.jpg"));
        const int before = m_told->count();
        write("notes.txt");
        write("b.PNG");
        write("c.jpg");
        QTRY_VERIFY(m_told->names().contains("c.jpg"));
        QVERIFY(!m_told->wasWritten("notes.txt"));
        QVERIFY(m_told->count() > before);
        QVERIFY(!m_told->names().contains("b.PNG"));
    }

    void manyChangesAreToldTogether()
    {
        const int before = m_told->count();
        for (int i = 0; i < 500; ++i)
            write(QString("q%1.jpg").arg(i));
        QTRY_VERIFY(m_told->names().contains("q499.jpg"));
        QTRY_VERIFY(m_told->wasWritten("q499.jpg"));
        QVERIFY(m_told->count() - before < 50);
    }

    void aSilentDriveHoldsNobody()
    {
        FolderLister lister;
        QTemporaryDir other;
        const auto listing = lister.list(QDir(m_folder->path()), "a.jpg");
        QVERIFY(listing && listing->hasFile);
        QCOMPARE(listing->names.first(), QString("a.jpg"));
        std::optional<HangingFolder> hanging(m_folder->path());
        QVERIFY(!lister.list(QDir(m_folder->path()), {}));
        QVERIFY(lister.list(QDir(other.path()), {}));
        QVERIFY(!lister.list(QDir(m_folder->path()), {}));
        hanging.reset();
        QVERIFY(lister.list(QDir(m_folder->path()), {}));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    void write(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("content");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<Told> m_told;
    std::unique_ptr<FolderWatch> m_watch;
};

REGISTER_CORE_TEST(FolderWatchTest)
#include "tst_folder_watch.moc"
