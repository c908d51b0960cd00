#include "mainwindow/bars/ThumbnailButton.h"
#include "mainwindow/bars/ThumbnailLoader.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "resources/Skin.h"
#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"
#include "widgets/HorizontalSlider.h"

#include <QtTest>

#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

namespace
{

class Receiver : public ICaptureCB
{
public:
    void imageCaptured(const QImage &) override { ++pictures; }
    void imageCaptured(void *, int, int, bool, bool) override {}
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}

    int pictures = 0;
};

} // namespace

/// The strip over a real source; the source's folder is handed over by refresh(), as the main
/// window's door does.
class ThumbnailStripTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initialiseSkin(); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_receiver = Receiver();
        m_parent = std::make_unique<QWidget>();
        m_source = std::make_unique<PhotographSource>(&m_receiver, nullptr);
        m_slider = new HorizontalSlider(QImage(10, 6, QImage::Format_RGB32), m_parent.get());
        m_strip = new ThumbnailWidget(m_source.get(), m_slider, m_parent.get());
        m_parent->resize(2000, 200);
        m_parent->show();
        resizeTo(500);
    }

    void cleanup() { m_parent.reset(); }

    void threePicturesStandInTheMiddle()
    {
        open(3);
        QCOMPARE(shownX(), QVector<int>({151, 217, 283}));
        for (const ThumbnailButton *button : shown())
            QCOMPARE(button->size(), QSize(56, 50));
        QCOMPARE(shown().first()->y(), 5);
        QCOMPARE(m_slider->minimum(), 0);
        QCOMPARE(m_slider->maximum(), 0);
    }

    void everyThumbnailSaysTheNameOfItsFile()
    {
        open(3);
        const QStringList paths = m_source->fileNameList();
        const auto buttons = m_strip->findChildren<ThumbnailButton *>();
        QCOMPARE(buttons.size(), paths.size());
        for (int i = 0; i < paths.size(); ++i) {
            const QString name = QFileInfo(paths[i]).fileName();
            QCOMPARE(buttons[i]->accessibleName(), name);
            QCOMPARE(buttons[i]->toolTip(), name);
        }
    }

    void selectingAFarPictureScrollsItToTheRightEdge()
    {
        open(20);
        QCOMPARE(shown().size(), 6);
        QCOMPARE(m_slider->maximum(), 14);
        m_source->selectPhotograph(10);
        QCOMPARE(m_slider->value(), 5);
        QCOMPARE(shown(), buttons().mid(5, 6));
        QVERIFY(buttons().at(10)->isChecked());
        QVERIFY(!buttons().at(0)->isChecked());
    }

    void selectingAPictureOnTheLeftMakesItTheLeftmost()
    {
        open(20);
        m_source->selectPhotograph(15);
        m_source->selectPhotograph(3);
        QCOMPARE(m_slider->value(), 3);
        QCOMPARE(shown().first(), buttons().at(3));
    }

    void aStripTooNarrowShowsNoButtons()
    {
        resizeTo(155);
        open(20);
        QVERIFY(shown().isEmpty());
    }

    void aClickShowsThePictureAndMarksIt()
    {
        open(5);
        const int before = m_receiver.pictures;
        buttons().at(2)->click();
        QCOMPARE(m_receiver.pictures, before + 1);
        QVERIFY(buttons().at(2)->isChecked());
    }

    void theSliderScrollsTheStrip()
    {
        open(20);
        emit m_slider->valueChanged(7);
        QCOMPARE(shown().first(), buttons().at(7));
        // A range of an older, longer folder must not lead outside the list.
        emit m_slider->valueChanged(99);
        QCOMPARE(shown(), buttons().mid(14, 6));
        emit m_slider->valueChanged(-3);
        QCOMPARE(shown().first(), buttons().at(0));
    }

    void aShorterFolderAfterScrollingFarShowsItsOwnPictures()
    {
        open(20);
        m_source->selectPhotograph(19);
        open(3);
        QCOMPARE(shown(), buttons());
    }

    void wideningAfterScrollingToTheEndStaysInTheList()
    {
        open(20);
        m_source->selectPhotograph(19);
        resizeTo(1400);
        QCOMPARE(shown().last(), buttons().last());
        QCOMPARE(shown().size(), 19);
    }

    void shrinkingFromMaximisedStillShowsTheButtonsThatFit()
    {
        open(3);
        resizeTo(1800);
        resizeTo(607);
        QCOMPARE(shown().size(), 3);
    }

    void aPictureOutsideTheListIsIgnored()
    {
        open(3);
        m_strip->photographChanged(-1);
        m_strip->photographChanged(3);
        QCOMPARE(shown().size(), 3);
    }

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

    void aThumbnailIsPaintedInTheMiddleOfItsButton()
    {
        ThumbnailButton button(nullptr);
        button.setFixedSize(56, 50);
        QCOMPARE(QColor(button.grab().toImage().pixel(28, 25)), QColor(Qt::black));
        QImage image(56, 42, QImage::Format_RGB32);
        image.fill(Qt::green);
        button.setImage(image);
        const QImage grabbed = button.grab().toImage();
        QCOMPARE(QColor(grabbed.pixel(28, 25)), QColor(Qt::green));
        QCOMPARE(QColor(grabbed.pixel(28, 5)), QColor(Qt::green));
        QCOMPARE(QColor(grabbed.pixel(28, 3)), QColor(Qt::black));
    }

    void theFrameIsGrayWhiteUnderThePointerAndRedWhenChosen()
    {
        ThumbnailButton button(nullptr);
        button.setFixedSize(56, 50);
        const auto frame = [&button] { return QColor(button.grab().toImage().pixel(1, 25)); };
        // The line inside tells the chosen one without its colour.
        const auto insideIsWhite = [&button] {
            const QImage shown = button.grab().toImage();
            const QRgb white = qRgb(255, 255, 255);
            return shown.pixel(2, 25) == white && shown.pixel(53, 25) == white &&
                   shown.pixel(28, 2) == white && shown.pixel(28, 47) == white;
        };
        QCOMPARE(frame(), QColor(Qt::gray));
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(&button, &enter);
        QCOMPARE(frame(), QColor(Qt::white));
        QVERIFY(!insideIsWhite());
        button.setChecked(true);
        QCOMPARE(frame(), QColor(Qt::red));
        QVERIFY(insideIsWhite());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &leave);
        button.setChecked(false);
        QCOMPARE(frame(), QColor(Qt::gray));
        button.setDown(true);
        QCOMPARE(frame(), QColor(Qt::red));
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

    void aSmallerFolderBringsTheScrollBarBack()
    {
        open(20);
        m_source->selectPhotograph(19);
        QCOMPARE(m_slider->value(), 14);
        for (const int count : {8, 3}) {
            {
                // As in the program, the strip is filled before the photograph is shown.
                const QSignalBlocker notYet(m_source.get());
                open(count);
            }
            QVERIFY(m_slider->value() <= m_slider->maximum());
            m_strip->photographChanged(0);
            QCOMPARE(m_slider->value(), 0);
        }
        QCOMPARE(shown(), buttons());
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

    void pressesBesideTheButtonsDoNotReachTheCanvas()
    {
        QVERIFY(m_strip->testAttribute(Qt::WA_NoMousePropagation));
    }

    void itsGroundIsStretchedToTheStrip()
    {
        resizeTo(500);
        const QImage grabbed = m_strip->grab().toImage();
        QCOMPARE(grabbed.width(), 500);
        QVERIFY(qAlpha(grabbed.pixel(250, 30)) > 0);
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

    void resizeTo(int width) { m_strip->setFixedSize(width, 60); }

    /// Opens a folder of that many pictures, the first one chosen.
    void open(int count)
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::blue);
        for (int i = 0; i < count; ++i)
            QVERIFY(image.save(m_folder->filePath(QString("p%1.png").arg(i, 3, 10, QChar('0')))));
        QVERIFY(m_source->setDirectory(QDir(m_folder->path()), "p000.png"));
        m_strip->refresh();
    }

    /// Whether the loader has been through the whole folder.
    bool allLoaded() const
    {
        const QList<ThumbnailButton *> all = buttons();
        return std::all_of(all.begin(), all.end(), [](auto *button) { return button->hasImage(); });
    }

    /// In the order of the folder; raising a button changes its place among the children.
    QList<ThumbnailButton *> buttons() const
    {
        QList<ThumbnailButton *> all = m_strip->findChildren<ThumbnailButton *>();
        std::sort(all.begin(), all.end(), [](ThumbnailButton *one, ThumbnailButton *other) {
            return one->toolTip() < other->toolTip();
        });
        return all;
    }

    QList<ThumbnailButton *> shown() const
    {
        QList<ThumbnailButton *> result;
        for (ThumbnailButton *button : buttons()) {
            if (!button->isHidden())
                result.append(button);
        }
        return result;
    }

    QVector<int> shownX() const
    {
        QVector<int> result;
        for (const ThumbnailButton *button : shown())
            result.append(button->x());
        return result;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    Receiver m_receiver;
    std::unique_ptr<PhotographSource> m_source;
    std::unique_ptr<QWidget> m_parent;
    HorizontalSlider *m_slider = nullptr;
    ThumbnailWidget *m_strip = nullptr;
};

REGISTER_TEST(ThumbnailStripTest)
#include "tst_thumbnail_strip.moc"
