#include "tests/ProcessorWait.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/HangingFolder.h"
#include "tests/sources/PhotographTest.h"

#include <QSignalSpy>

#include <cstdio>
#include <optional>

#include <unistd.h>

/// Folders that change, vanish or do not answer while their photographs are shown.
class PhotographFoldersTest : public PhotographTest
{
    Q_OBJECT

private slots:
    void aFolderThatVanishedKeepsTheOldList()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        QVERIFY(m_folder->remove());
        m_source->resumeCapture();
        QCOMPARE(m_source->photographCount(), 2);
        QCOMPARE(m_receiver.calls, QStringList({"start"}));
        // One that was read ahead is shown when the machine has no time to look whether it is
        // there.
        QTRY_VERIFY((m_source->next(), m_receiver.pictures.last().isNull()));
        QCOMPARE(m_source->photographCount(), 2);
    }

    void aFolderThatVanishesDuringASlideshowGivesNullPictures()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        QVERIFY(m_folder->remove());
        m_source->play();
        QTRY_VERIFY(m_receiver.pictures.size() >= 4 && m_receiver.pictures.last().isNull());
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
        // One that was being read when its file went is shown once more.
        QTRY_VERIFY((m_source->selectPhotograph(1), m_receiver.pictures.last().isNull()));
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
        // It comes later where a machine is too busy to read it within the short wait after the
        // silence.
        QTRY_COMPARE(shownWidth(), 1);
        m_source->next();
        QVERIFY(m_source->problem() == PictureProblem::NoAnswer);
        hanging.reset();
        QTRY_COMPARE(shownWidth(), 2);
        QVERIFY(m_source->problem() == PictureProblem::None);
    }

    void returningToADriveThatFellSilentHoldsTheWindowBriefly()
    {
        fill({"a.png", "b.png"});
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        // Both are kept now. One that was being read could still come after the drive fell silent,
        // which then would count as an answer.
        m_source->next();
        m_source->previous();
        const HangingFolder hanging(dir().path());
        m_source->next();
        QCOMPARE(shownWidth(), 2);
        QElapsedTimer timer;
        timer.start();
        const qint64 waitedNs = processorWaitNs();
        m_source->resumeCapture();
        const qint64 machineMs = (processorWaitNs() - waitedNs) / 1000000;
        const qint64 tookMs = timer.elapsed();
        qInfo("%lld ms, %lld of them the machine's", tookMs, machineMs);
        QVERIFY(tookMs < 1500 * SLOWER + machineMs);
        QVERIFY(m_source->refusal() == PictureProblem::NoAnswer);
        QCOMPARE(m_source->photographCount(), 2);
    }

    void theSlideshowWaitsForASlowPictureWithoutHoldingTheWindow()
    {
        fill({"a.png", "b.png"});
        std::optional<HangingFolder> hanging(std::in_place, dir().filePath("b.png"),
                                             HangingFolder::Opening);
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        // The longer timer runs out after the shorter one, however slow the machine is.
        int deliveredAfterTheTick = 0;
        QTimer::singleShot(10, m_source,
                           [&] { deliveredAfterTheTick = m_receiver.pictures.size(); });
        m_source->play();
        QTRY_VERIFY(deliveredAfterTheTick > 0);
        QCOMPARE(deliveredAfterTheTick, 1);
        hanging.reset();
        QTRY_COMPARE(shownWidth(), 2);
    }

    void aStepThatIsDueIsNotMadeOnceTheUserHasChosen()
    {
        fill({"a.png", "b.png"});
        std::optional<HangingFolder> hanging(std::in_place, dir().filePath("b.png"),
                                             HangingFolder::Opening);
        QVERIFY(m_source->setDirectory(dir(), "a.png"));
        m_source->setPlayInterval(1);
        QTimer::singleShot(10, m_source, [this] {
            m_source->setPlayInterval(5000000);
            m_source->play();
            m_source->selectPhotograph(0);
        });
        m_source->play();
        QTRY_COMPARE(m_receiver.pictures.size(), 2);
        hanging.reset();
        // Many times what the picture takes to come, which must not be shown.
        QTest::qWait(50);
        QCOMPARE(m_receiver.pictures.size(), 2);
        QCOMPARE(shownWidth(), 1);
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
            // One that is open when the right goes is read to its end, and shown once more.
            QTRY_VERIFY_WITH_TIMEOUT((m_source->next(), m_receiver.pictures.last().isNull()),
                                     TIMEOUT_MS);
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

    /// A picture of that width in the place of any other; it is there at once and whole.
    void writePicture(const QString &name, int width) const
    {
        QImage image(width, 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(dir().filePath("new.tmp"), "png"));
        QCOMPARE(rename(qPrintable(dir().filePath("new.tmp")), qPrintable(dir().filePath(name))),
                 0);
    }
};

REGISTER_TEST(PhotographFoldersTest)
#include "tst_photograph_folders.moc"
