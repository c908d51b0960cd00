#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/FakeMainWindow.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>
#include <optional>

#include <unistd.h>

namespace
{

class Receiver : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override { pictures.append(image); }
    void imageCaptured(void *, int, int, bool, bool) override { QFAIL("photographs are images"); }
    void startAutoRefresh() override { calls.append("start"); }
    void stopAutoRefresh() override { calls.append("stop"); }

    QVector<QImage> pictures;
    QStringList calls;
};

} // namespace

class PhotographSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_receiver = Receiver();
        m_window = std::make_unique<MainWindow>();
        m_source = new PhotographSource(&m_receiver, m_window.get());
    }

    void itIsAChildOfTheWindow() { QCOMPARE(m_source->parent(), m_window.get()); }

    void openingAFolderShowsTheChosenPicture()
    {
        fill({"a.png", "b.png", "c.png"});
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QCOMPARE(m_source->photographCount(), 3);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].toInt(), 1);
        QCOMPARE(shownWidth(), 2);
        QCOMPARE(m_window->thumbnailRefreshes, 1);
        QCOMPARE(m_source->fileNameList(),
                 QStringList(
                     {dir().filePath("a.png"), dir().filePath("b.png"), dir().filePath("c.png")}));
    }

    void aFolderWithoutTheFileChangesNothing()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QTemporaryDir other;
        QVERIFY(!m_source->setDirectory(QDir(other.path()), "b.png"));
        QVERIFY(!m_source->setDirectory(dir(), "B.png"));
        QVERIFY(!m_source->setDirectory(dir(), "missing.png"));
        QCOMPARE(m_source->photographCount(), 2);
        QCOMPARE(m_window->thumbnailRefreshes, 1);
        QCOMPARE(m_receiver.pictures.size(), 1);
    }

    void aRefusedFolderLeavesTheSlideshowRunning()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        m_source->play();
        QVERIFY(!m_source->setDirectory(dir(), "missing.png"));
        QTRY_VERIFY(m_receiver.pictures.size() >= 3);
    }

    void anIndexOutsideTheListIsIgnored()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        m_source->selectPhotograph(-1);
        m_source->selectPhotograph(2);
        QCOMPARE(changed.size(), 0);
        QCOMPARE(m_receiver.pictures.size(), 1);
    }

    void steppingStopsAtBothEndsAndShowsTheEndAgain()
    {
        fill({"a.png", "b.png", "c.png"});
        QVERIFY(m_source->setDirectory(dir(), "c.png"));
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        m_source->next();
        QCOMPARE(changed.takeFirst()[0].toInt(), 2);
        m_source->selectPhotograph(0);
        changed.clear();
        m_source->previous();
        QCOMPARE(changed.takeFirst()[0].toInt(), 0);
        m_source->next();
        QCOMPARE(changed.takeFirst()[0].toInt(), 1);
    }

    void nothingHappensBeforeAFolderIsOpen()
    {
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        m_source->next();
        m_source->previous();
        m_source->setPlayInterval(1);
        m_source->play();
        QTest::qWait(20);
        QCOMPARE(changed.size(), 0);
        QCOMPARE(m_receiver.pictures.size(), 0);
    }

    void theSlideshowWrapsUntilStoppedWhichSaysSoOnce()
    {
        fill({"a.png", "b.png", "c.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        QSignalSpy done(m_source, &PhotographSource::playDone);
        m_source->setPlayInterval(1);
        m_source->play();
        QTRY_VERIFY(changed.size() >= 4);
        m_source->stop();
        QCOMPARE(done.size(), 1);
        const QVector<int> expected{2, 0, 1, 2};
        for (int i = 0; i < expected.size(); ++i)
            QCOMPARE(changed[i][0].toInt(), expected[i]);
        const int shown = changed.size();
        QTest::qWait(30);
        QCOMPARE(changed.size(), shown);
    }

    void stopSaysSoAlsoWhenNothingPlayed()
    {
        QSignalSpy done(m_source, &PhotographSource::playDone);
        m_source->stop();
        QCOMPARE(done.size(), 1);
    }

    void steppingAndOpeningStopTheSlideshowSilently_data()
    {
        QTest::addColumn<int>("action");
        QTest::newRow("previous") << 0;
        QTest::newRow("next") << 1;
        QTest::newRow("open") << 2;
    }

    void steppingAndOpeningStopTheSlideshowSilently()
    {
        QFETCH(int, action);
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QSignalSpy done(m_source, &PhotographSource::playDone);
        m_source->setPlayInterval(1);
        m_source->play();
        if (action == 0)
            m_source->previous();
        else if (action == 1)
            m_source->next();
        else
            QVERIFY(m_source->setDirectory(dir(), "b.png"));
        const int shown = m_receiver.pictures.size();
        QTest::qWait(30);
        QCOMPARE(m_receiver.pictures.size(), shown);
        QCOMPARE(done.size(), 0);
    }

    void aNewIntervalTakesEffectAtTheNextPlay()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        m_source->play();
        m_source->setPlayInterval(5000000);
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        QTRY_VERIFY(changed.size() >= 2);
        m_source->play();
        changed.clear();
        QTest::qWait(30);
        QCOMPARE(changed.size(), 0);
    }

    void returningToTheModeShowsTheOpenedPictureNotTheLastOne()
    {
        fill({"a.png", "b.png", "c.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        m_source->next();
        QCOMPARE(shownWidth(), 3);
        m_source->pauseCapture();
        QCOMPARE(m_receiver.calls, QStringList({"stop"}));
        m_source->resumeCapture();
        QCOMPARE(shownWidth(), 2);
        QCOMPARE(m_receiver.calls, QStringList({"stop", "start"}));
    }

    void returningToTheModeShowsThePictureOpenedLast()
    {
        fill({"a.png", "b.png", "c.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QVERIFY(m_source->setDirectory(dir(), "c.png"));
        m_source->previous();
        m_source->resumeCapture();
        QCOMPARE(shownWidth(), 3);
    }

    void theSlideshowRunsOnUnseenWhilePaused()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        m_source->play();
        m_source->pauseCapture();
        QTRY_VERIFY(m_receiver.pictures.size() >= 3);
    }

    void aFolderThatVanishedKeepsTheOldList()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QVERIFY(m_folder->remove());
        m_source->resumeCapture();
        QCOMPARE(m_source->photographCount(), 2);
        QCOMPARE(m_receiver.calls, QStringList({"start"}));
        m_source->next();
        QVERIFY(m_receiver.pictures.last().isNull());
    }

    void aFolderThatVanishesDuringASlideshowGivesNullPictures()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        QVERIFY(m_folder->remove());
        m_source->play();
        QTRY_VERIFY(m_receiver.pictures.size() >= 4);
        QVERIFY(m_receiver.pictures.last().isNull());
    }

    void aRefilledFolderIsReadAnewOnReturn()
    {
        fill({"b.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        fill({"a.png", "b.png", "c.png"});
        m_source->resumeCapture();
        QCOMPARE(m_source->photographCount(), 3);
        QVERIFY(QFile::remove(dir().filePath("b.png")));
        m_source->resumeCapture();
        QCOMPARE(m_source->photographCount(), 3);
    }

    void aPictureThatChangesOnTheDiskIsShownAnew()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QCOMPARE(shownWidth(), 2);
        // The watch looks from a thread of its own, from some moment on.
        QTRY_VERIFY((writePicture("b.png", 9), shownWidth() == 9));
        QVERIFY(QFile::remove(dir().filePath("b.png")));
        QTRY_VERIFY((writePicture("b.png", 5), shownWidth() == 5));
    }

    void aNewPictureJoinsTheListAndTheShownOneStays()
    {
        fill({"b.png"});
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QSignalSpy listed(m_source, &PhotographSource::folderChanged);
        QTRY_VERIFY((writePicture("a.png", 4), m_source->photographCount() == 2));
        QCOMPARE(m_source->current(), 1);
        QCOMPARE(listed.last()[0].toInt(), 1);
        QCOMPARE(m_window->thumbnailRefreshes, 1);
        QCOMPARE(shownWidth(), 1);
        m_source->previous();
        QCOMPARE(shownWidth(), 4);
    }

    void aPictureThatGoesKeepsItsPlaceInTheList()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QVERIFY(QFile::remove(dir().filePath("b.png")));
        QTRY_VERIFY((writePicture("c.png", 4), m_source->photographCount() == 3));
        m_source->next();
        QVERIFY(m_receiver.pictures.last().isNull());
        QVERIFY(m_source->problem() == PictureProblem::Gone);
    }

    void theWatchOfAFolderLeftBehindTellsNothing()
    {
        fill({"a.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        const std::unique_ptr<QTemporaryDir> old = std::move(m_folder);
        m_folder = std::make_unique<QTemporaryDir>();
        fill({"a.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QImage(3, 1, QImage::Format_RGB32).save(old->filePath("z.png"));
        QTRY_VERIFY((writePicture("b.png", 4), m_source->photographCount() == 2));
        QVERIFY(!m_source->fileNameList().join(' ').contains("z.png"));
    }

    void aSilentDriveHoldsNobodyAndItsPictureComesLater()
    {
        fill({"a.png", "b.png"});
        std::optional<HangingFolder> hanging(std::in_place, dir().filePath("b.png"),
                                             HangingFolder::Opening);
        QVERIFY(m_source->setDirectory(dir(), "b.png"));
        QVERIFY(m_receiver.pictures.last().isNull());
        QVERIFY(m_source->problem() == PictureProblem::NoAnswer);
        m_source->previous();
        QCOMPARE(shownWidth(), 1);
        m_source->next();
        QVERIFY(m_source->problem() == PictureProblem::NoAnswer);
        hanging.reset();
        QTRY_COMPARE(shownWidth(), 2);
        QVERIFY(m_source->problem() == PictureProblem::None);
    }

    void aRefusedFileIsToldGoneOrUnreadable()
    {
        fill({"a.png"});
        QVERIFY(!m_source->setDirectory(dir(), "b.png"));
        QVERIFY(m_source->refusal() == PictureProblem::Gone);
        QVERIFY(QDir(dir()).mkdir("c.png"));
        QVERIFY(!m_source->setDirectory(dir(), "c.png"));
        QVERIFY(m_source->refusal() == PictureProblem::Unreadable);
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QVERIFY(m_source->refusal() == PictureProblem::None);
    }

    void aFileThatItsDriveIsSilentAboutIsNotWaitedFor()
    {
        fill({"a.png"});
        // Its folder is listed; whether the file itself is there is not answered.
        const HangingFolder hanging(dir().filePath("gone.png"),
                                    HangingFolder::EverythingAndRemoving);
        QVERIFY(!m_source->setDirectory(dir(), "gone.png"));
        QVERIFY(m_source->refusal() == PictureProblem::NoAnswer);
        // A drive that was silent has a tenth of a second, which a busy machine may take itself.
        QTRY_VERIFY(m_source->setDirectory(dir(), "a.png"));
    }

    void aFolderOnASilentDriveIsRefusedAndAnotherOneOpens()
    {
        fill({"a.png"});
        QTemporaryDir other;
        QImage image(6, 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(other.filePath("o.png")));
        std::optional<HangingFolder> hanging(m_folder->path());
        QVERIFY(!m_source->setDirectory(dir(), "a.png"));
        QVERIFY(m_source->refusal() == PictureProblem::NoAnswer);
        QVERIFY(m_source->setDirectory(QDir(other.path()), "o.png"));
        QVERIFY(m_source->refusal() == PictureProblem::None);
        QCOMPARE(shownWidth(), 6);
        hanging.reset();
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
    }

    void aTextFileNamedAsAPictureIsDeliveredAsANullPicture()
    {
        QFile file(dir().filePath("a.jpg"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        file.close();
        QSignalSpy changed(m_source, &PhotographSource::photographChanged);
        QVERIFY(m_source->setDirectory(dir(), "a.jpg"));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(m_receiver.pictures.size(), 1);
        QVERIFY(m_receiver.pictures[0].isNull());
    }

    void aFolderThatIsRenamedDuringASlideshowGivesNullPicturesUntilItIsBack()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        m_source->play();
        const QString path = m_folder->path();
        QVERIFY(QDir().rename(path, path + "-moved"));
        QTRY_VERIFY(m_receiver.pictures.last().isNull());
        QVERIFY(QDir().rename(path + "-moved", path));
        QTRY_VERIFY(!m_receiver.pictures.last().isNull());
    }

    void picturesThatMayNotBeReadAreDeliveredAsNullAndTheOldListStays()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        {
            const WithoutRights withoutRights(dir());
            m_source->next();
            QCOMPARE(m_receiver.pictures.size(), 2);
            QVERIFY(m_receiver.pictures.last().isNull());
            QVERIFY(!m_source->setDirectory(dir(), "a.png"));
            m_source->resumeCapture();
            QCOMPARE(m_source->photographCount(), 2);
        }
        m_source->previous();
        QVERIFY(!m_receiver.pictures.last().isNull());
    }

    void namesInAnyScriptAreOpenedAndShown()
    {
        const QStringList names{QString::fromUtf8("фото № 1.png"),
                                QString::fromUtf8("写真 照片.png"),
                                QString::fromUtf8("صورة %1 #?.png")};
        fill(names);
        for (int i = 0; i < names.size(); ++i) {
            QVERIFY(m_source->setDirectory(dir(), names[i]));
            QCOMPARE(shownWidth(), i + 1);
        }
    }

private:
    /// Takes the right to read the pictures of a folder away from this process.
    class WithoutRights
    {
    public:
        explicit WithoutRights(const QDir &dir)
        {
            for (const QFileInfo &file : dir.entryInfoList(QDir::Files)) {
                m_files.append(file.filePath());
                QFile::setPermissions(file.filePath(), {});
            }
            // The administrator may read everything.
            if (m_isRoot && setresuid(NOBODY, NOBODY, 0) != 0)
                qFatal("cannot become another user");
        }
        ~WithoutRights()
        {
            if (m_isRoot && setresuid(0, 0, 0) != 0)
                qFatal("cannot become root again");
            for (const QString &file : m_files)
                QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
        }

    private:
        static constexpr uid_t NOBODY = 65534;
        const bool m_isRoot = getuid() == 0;
        QStringList m_files;
    };

    QDir dir() const { return QDir(m_folder->path()); }

    /// Writes pictures whose widths are 1, 2, 3, ... so that one can be told from another.
    void fill(const QStringList &names)
    {
        for (int i = 0; i < names.size(); ++i) {
            QImage image(i + 1, 1, QImage::Format_RGB32);
            image.fill(Qt::red);
            QVERIFY(image.save(dir().filePath(names[i])));
        }
    }

    /// A picture of that width in the place of any other; it is there at once and whole.
    void writePicture(const QString &name, int width) const
    {
        QImage image(width, 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(dir().filePath("new.tmp"), "png"));
        QCOMPARE(rename(qPrintable(dir().filePath("new.tmp")), qPrintable(dir().filePath(name))),
                 0);
    }

    int shownWidth() const { return m_receiver.pictures.last().width(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    Receiver m_receiver;
    PhotographSource *m_source = nullptr;
};

REGISTER_TEST(PhotographSourceTest)
#include "tst_photograph_source.moc"
