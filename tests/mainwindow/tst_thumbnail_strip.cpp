#include "mainwindow/ThumbnailButton.h"
#include "mainwindow/ThumbnailLoader.h"
#include "mainwindow/ThumbnailWidget.h"
#include "resources/Skin.h"
#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "widgets/HorizontalSlider.h"

#include <QtTest>

#include <QImage>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

/// What a loader has delivered, collected on the GUI thread.
class Loads : public QObject
{
public:
    struct Load {
        int generation;
        int index;
        QImage image;
    };

    explicit Loads(ThumbnailLoader *loader)
        : m_loader(loader)
    {
        connect(
            loader, &ThumbnailLoader::thumbnailLoaded, this,
            [this](int generation, int index, const QImage &image) {
                // Of an older folder's run, results may still be on their way.
                if (generation == m_loader->generation())
                    all.append({generation, index, image});
            },
            Qt::QueuedConnection);
    }

    QVector<Load> all;

private:
    ThumbnailLoader *m_loader;
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
        auto *loader = m_strip->findChild<ThumbnailLoader *>();
        const Loads loaded(loader);
        open(12);
        QTRY_COMPARE(loaded.all.size(), 12);
        for (int i = 0; i < loaded.all.size(); ++i) {
            QCOMPARE(loaded.all[i].index, i);
            QCOMPARE(loaded.all[i].image.size(), QSize(56, 42));
        }
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
        QCOMPARE(frame(), QColor(Qt::gray));
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(&button, &enter);
        QCOMPARE(frame(), QColor(Qt::white));
        button.setChecked(true);
        QCOMPARE(frame(), QColor(Qt::red));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &leave);
        button.setChecked(false);
        QCOMPARE(frame(), QColor(Qt::gray));
        button.setDown(true);
        QCOMPARE(frame(), QColor(Qt::red));
    }

    void aNewFolderInterruptsTheLoadingOfTheOldOne()
    {
        for (int round = 0; round < 50; ++round)
            open(4 + round % 3);
        auto *loader = m_strip->findChild<ThumbnailLoader *>();
        const Loads loaded(loader);
        const int generation = loader->generation();
        m_strip->refresh();
        QTRY_VERIFY(loaded.all.size() >= buttons().size());
        QCOMPARE(loaded.all.last().generation, generation + 1);
    }

    void resultsOfAnOldFolderDoNotReachTheNewButtons()
    {
        open(2);
        const auto *loader = m_strip->findChild<ThumbnailLoader *>();
        QTRY_VERIFY(loader->isFinished());
        QCoreApplication::processEvents();
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
        ThumbnailLoader loader(nullptr);
        loader.stop();
        loader.start(QThread::InheritPriority);
        loader.start(QThread::InheritPriority);
        loader.stop();
        loader.stop();
        for (int i = 0; i < 200; ++i) {
            loader.start(QThread::InheritPriority);
            loader.stop();
        }
    }

    void badFilesLeaveTheirButtonsBlackAndTheOthersLoaded()
    {
        open(3);
        QFile file(m_folder->filePath("p001.png"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        file.close();
        auto *loader = m_strip->findChild<ThumbnailLoader *>();
        const Loads loaded(loader);
        m_strip->refresh();
        QTRY_COMPARE(loaded.all.size(), 3);
        QVERIFY(!loaded.all[0].image.isNull());
        QVERIFY(loaded.all[1].image.isNull());
        QVERIFY(!loaded.all[2].image.isNull());
    }

    void aFolderThatVanishesWhileItIsLoadedLeavesTheRestBlack()
    {
        open(12);
        auto *loader = m_strip->findChild<ThumbnailLoader *>();
        const Loads loaded(loader);
        m_strip->refresh();
        QVERIFY(m_folder->remove());
        QTRY_COMPARE(loaded.all.size(), 12);
        QVERIFY(loaded.all.last().image.isNull());
        m_source->selectPhotograph(11);
        QVERIFY(buttons().at(11)->isChecked());
    }

    void theStripScrollsWhileADiskIsSlow()
    {
        open(20);
        // A pipe in the place of a picture gives nothing until somebody writes into it.
        const QByteArray slow = QFile::encodeName(m_folder->filePath("p001.png"));
        QVERIFY(QFile::remove(slow));
        QCOMPARE(mkfifo(slow.constData(), 0600), 0);
        auto *loader = m_strip->findChild<ThumbnailLoader *>();
        const Loads loaded(loader);
        m_strip->refresh();
        QTRY_COMPARE(loaded.all.size(), 1);
        emit m_slider->valueChanged(7);
        QCOMPARE(shown().first(), buttons().at(7));
        m_source->selectPhotograph(19);
        QCOMPARE(shown().last(), buttons().at(19));
        QCOMPARE(loaded.all.size(), 1);

        QFile first(m_folder->filePath("p000.png"));
        QVERIFY(first.open(QIODevice::ReadOnly));
        const QByteArray bytes = first.readAll();
        signal(SIGPIPE, SIG_IGN);
        // Whenever the loader stands at the other end, it gets the whole picture.
        const auto feed = [&slow, &bytes] {
            const int pipe = ::open(slow.constData(), O_WRONLY | O_NONBLOCK);
            if (pipe < 0)
                return;
            (void)!::write(pipe, bytes.constData(), std::size_t(bytes.size()));
            ::close(pipe);
        };
        QTRY_VERIFY((feed(), loaded.all.size() == 20));
        QVERIFY(!loaded.all.last().image.isNull());
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
        QCOMPARE(buttons().size(), 10001);
        m_source->selectPhotograph(9000);
        QVERIFY(buttons().at(9000)->isChecked());
        QCOMPARE(shown().last(), buttons().at(9000));
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

    /// In the order of the folder; raising a button changes its place among the children.
    QList<ThumbnailButton *> buttons() const
    {
        QList<ThumbnailButton *> all = m_strip->findChildren<ThumbnailButton *>();
        std::sort(all.begin(), all.end(), [](ThumbnailButton *one, ThumbnailButton *other) {
            return one->group()->id(one) > other->group()->id(other);
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

QTEST_MAIN(ThumbnailStripTest)
#include "tst_thumbnail_strip.moc"
