#include "mainwindow/bars/ThumbnailLoader.h"
#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"
#include "tests/mainwindow/ThumbnailTest.h"
#include "tests/sources/ExifPicture.h"

#include <QPointer>

#include <cstdio>
#include <optional>

/// The thumbnails that come one after another, from folders that change and disks that are slow.
class ThumbnailLoadingTest : public ThumbnailTest
{
    Q_OBJECT

private slots:
    void thumbnailsArriveFromLeftToRight()
    {
        open(12);
        ThumbnailLoader loader(7, m_source->fileNameList(), 1, nullptr);
        QVector<int> order;
        connect(
            &loader, &ThumbnailLoader::thumbnailLoaded, this,
            [&order](int generation, int index, const QImage &image) {
                QCOMPARE(generation, 7);
                QCOMPARE(image.size(), QSize(56, 42));
                order.append(index);
            },
            Qt::QueuedConnection);
        loader.start(QThread::InheritPriority);
        QTRY_COMPARE(order, QVector<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    }

    void theSmallPicturesOfCamerasComeBeforeThePicturesThemselves()
    {
        const QByteArray bytes = ExifPicture::with(ExifPicture::jpeg(QSize(160, 120), Qt::yellow),
                                                   ExifPicture::jpeg(QSize(800, 600), Qt::blue));
        QStringList names;
        for (int i = 0; i < 4; ++i) {
            QFile file(m_folder->filePath(QString("e%1.jpg").arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            names.append(file.fileName());
        }
        ThumbnailLoader loader(1, names, 1, nullptr);
        QVector<int> order;
        QVector<bool> yellow;
        connect(
            &loader, &ThumbnailLoader::thumbnailLoaded, this,
            [&](int, int index, const QImage &image) {
                order.append(index);
                yellow.append(image.pixelColor(28, 20).red() > 200);
            },
            Qt::QueuedConnection);
        loader.start(QThread::InheritPriority);
        QTRY_COMPARE(order, QVector<int>({0, 1, 2, 3, 0, 1, 2, 3}));
        QCOMPARE(yellow, QVector<bool>({true, true, true, true, false, false, false, false}));
    }

    void aSharpScreenGetsAllItsPixels()
    {
        open(1);
        ThumbnailLoader loader(1, m_source->fileNameList(), 2, nullptr);
        QImage loaded;
        connect(
            &loader, &ThumbnailLoader::thumbnailLoaded, this,
            [&loaded](int, int, const QImage &image) { loaded = image; }, Qt::QueuedConnection);
        loader.start(QThread::InheritPriority);
        QTRY_COMPARE(loaded.size(), QSize(112, 84));

        ThumbnailButton button(nullptr);
        button.setFixedSize(56, 50);
        button.setImage(loaded);
        QImage sharp(112, 100, QImage::Format_RGB32);
        sharp.setDevicePixelRatio(2);
        button.render(&sharp);
        QCOMPARE(QColor(sharp.pixel(56, 50)), QColor(Qt::blue));
        QCOMPARE(QColor(sharp.pixel(56, 10)), QColor(Qt::blue));
        QCOMPARE(QColor(sharp.pixel(56, 6)), QColor(Qt::black));
        QCOMPARE(QColor(sharp.pixel(105, 50)), QColor(Qt::blue));
    }

    void aNewFolderDoesNotWaitForAPictureOfTheOldOne()
    {
        open(3);
        // The folder outlives the next one.
        const std::unique_ptr<QTemporaryDir> old = std::move(m_folder);
        QTRY_VERIFY(allLoaded());
        // The strip alone reads this one: the source reads the first two, as the shown picture and
        // its neighbour.
        const HangingFolder slow(old->filePath("p002.png"));
        m_strip->refresh();
        QTRY_COMPARE(slow.waiting(), 1);
        open(4);
        QTRY_VERIFY(allLoaded());
        QCOMPARE(buttons().size(), 4);
        QCOMPARE(slow.waiting(), 1);
    }

    void foldersInQuickSuccessionEndWithTheLast()
    {
        for (int round = 0; round < 50; ++round)
            open(4 + round % 3);
        QTRY_VERIFY(allLoaded());
        QCOMPARE(buttons().size(), 5);
    }

    void resultsOfAnOldFolderDoNotReachTheNewButtons()
    {
        open(2);
        const auto *loader = m_strip->findChild<ThumbnailLoader *>();
        QTRY_VERIFY(allLoaded());
        QImage late(56, 42, QImage::Format_RGB32);
        late.fill(Qt::yellow);
        const auto deliver = [&](int generation) {
            QMetaObject::invokeMethod(m_strip, "thumbnailLoaded", Q_ARG(int, generation),
                                      Q_ARG(int, 0), Q_ARG(QImage, late));
            return QColor(buttons().at(0)->grab().toImage().pixel(28, 25));
        };
        QCOMPARE(deliver(loader->generation() - 1), QColor(Qt::blue));
        QCOMPARE(deliver(loader->generation()), QColor(Qt::yellow));
    }

    void stoppingTwiceAndDestroyingAtOnceDoNotBlock()
    {
        open(1);
        const QStringList names = m_source->fileNameList();
        ThumbnailLoader unused(1, names, 1, nullptr);
        unused.stop();
        unused.stop();
        for (int i = 0; i < 200; ++i) {
            ThumbnailLoader loader(i, names, 1, nullptr);
            loader.start(QThread::InheritPriority);
            loader.start(QThread::InheritPriority);
            loader.stop();
        }
    }

    void aRetiredLoaderGoesByItself()
    {
        const QStringList names{m_folder->filePath("slow.png")};
        std::optional<HangingFolder> slow(names.first());
        const QPointer<ThumbnailLoader> running = new ThumbnailLoader(1, names, 1, this);
        const QPointer<ThumbnailLoader> unused = new ThumbnailLoader(1, names, 1, this);
        running->start(QThread::InheritPriority);
        QTRY_COMPARE(slow->waiting(), 1);
        ThumbnailLoader::retire(running);
        ThumbnailLoader::retire(unused);
        QTRY_VERIFY(!unused);
        QVERIFY(running);
        slow.reset();
        QTRY_VERIFY(!running);
    }

    void badFilesLeaveTheirButtonsBlackAndTheOthersLoaded()
    {
        open(3);
        QFile file(m_folder->filePath("p001.png"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        file.close();
        m_strip->refresh();
        QTRY_VERIFY(allLoaded());
        QVERIFY(!buttons().at(0)->image().isNull());
        QVERIFY(buttons().at(1)->image().isNull());
        QVERIFY(!buttons().at(2)->image().isNull());
    }

    void aFolderThatVanishesWhileItIsLoadedLeavesTheRestBlack()
    {
        open(12);
        std::optional<HangingFolder> slow(m_folder->filePath("p001.png"));
        m_strip->refresh();
        // The loader before may wait for it as well.
        QTRY_VERIFY(buttons().at(0)->hasImage());
        QTRY_VERIFY(slow->waiting() >= 1);
        QVERIFY(m_folder->remove());
        slow.reset();
        QTRY_VERIFY(allLoaded());
        QVERIFY(!buttons().at(0)->image().isNull());
        for (int i = 1; i < 12; ++i)
            QVERIFY(buttons().at(i)->image().isNull());
        m_source->selectPhotograph(11);
        QVERIFY(buttons().at(11)->isChecked());
    }

    void theStripScrollsWhileADiskIsSlow()
    {
        open(20);
        std::optional<HangingFolder> slow(m_folder->filePath("p001.png"));
        m_strip->refresh();
        QTRY_VERIFY(buttons().at(0)->hasImage());
        emit m_slider->valueChanged(7);
        QCOMPARE(shown().first(), buttons().at(7));
        m_source->selectPhotograph(19);
        QCOMPARE(shown().last(), buttons().at(19));
        QVERIFY(!buttons().at(1)->hasImage());
        slow.reset();
        QTRY_VERIFY(allLoaded());
        QVERIFY(!buttons().at(19)->image().isNull());
    }

    void tenThousandPicturesOpenAndScroll()
    {
        open(1);
        QVERIFY(m_source->setDirectory(QDir(m_folder->path()), "p000.png"));
        for (int i = 0; i < 10000; ++i)
            QFile::link(m_folder->filePath("p000.png"),
                        m_folder->filePath(QString("q%1.png").arg(i, 5, 10, QChar('0'))));
        QVERIFY(m_source->setDirectory(QDir(m_folder->path()), "p000.png"));
        m_strip->refresh();
        m_source->selectPhotograph(9000);
        QCOMPARE(shown().last()->toolTip(), QString("q08999.png"));
        QVERIFY(shown().last()->isChecked());
        QTRY_COMPARE_WITH_TIMEOUT(m_strip->findChildren<ThumbnailButton *>().size(), 10001, 30000);
        QCOMPARE(shown().last(), buttons().at(9000));
    }

    void aNewPictureGetsAButtonBetweenTheOthersWhichStay()
    {
        open(3);
        m_source->selectPhotograph(1);
        QTRY_VERIFY(allLoaded());
        const QList<ThumbnailButton *> before = buttons();
        const auto joined = [this] { return buttons().size() == 4; };
        // The watch looks from a thread of its own, from some moment on.
        QTRY_VERIFY((writeYellow("p000a.png"), joined()));
        QCOMPARE(buttons().at(1)->toolTip(), QString("p000a.png"));
        QCOMPARE(buttons().at(0), before.at(0));
        QCOMPARE(buttons().at(2), before.at(1));
        QVERIFY(buttons().at(2)->isChecked());
        QCOMPARE(shown(), buttons());
        QTRY_COMPARE(middleOf(1), QColor(Qt::yellow));
        QCOMPARE(middleOf(3), QColor(Qt::blue));
    }

    void aPictureThatIsWrittenAnewGetsANewThumbnail()
    {
        open(3);
        QTRY_VERIFY(allLoaded());
        QCOMPARE(middleOf(1), QColor(Qt::blue));
        QTRY_COMPARE((writeYellow("p001.png"), middleOf(1)), QColor(Qt::yellow));
    }

private:
    QColor middleOf(int index) const { return buttons().at(index)->image().pixelColor(28, 20); }

    /// A picture in the place of any other; it is there at once and whole.
    void writeYellow(const QString &name) const
    {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::yellow);
        QVERIFY(image.save(m_folder->filePath("new.tmp"), "png"));
        QCOMPARE(
            rename(qPrintable(m_folder->filePath("new.tmp")), qPrintable(m_folder->filePath(name))),
            0);
    }

    /// Whether the loader has been through the whole folder.
    bool allLoaded() const
    {
        const QList<ThumbnailButton *> all = buttons();
        return std::all_of(all.begin(), all.end(), [](auto *button) { return button->hasImage(); });
    }
};

REGISTER_TEST(ThumbnailLoadingTest)
#include "tst_thumbnail_loading.moc"
