#include "mainwindow/bars/PhotographBar.h"

#include "mainwindow/bars/ThumbnailWidget.h"
#include "sources/PhotographSource.h"
#include "widgets/Slider.h"

#include "tests/TestProgram.h"
#include "tests/mainwindow/HelperScene.h"

#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace
{

struct PhotographScene : HelperScene {
    PhotographScene()
        : source(deck.canvas(Modes::Photograph), nullptr)
        , bar(&source, deck.canvas(Modes::Photograph), &popups, &buttons, &parent)
    {
    }

    /// Opens a folder of so many photographs.
    bool openFolder(int count)
    {
        QImage image(8, 6, QImage::Format_RGB32);
        image.fill(Qt::blue);
        for (int i = 0; i < count; ++i) {
            if (!image.save(folder.filePath(QString("%1.png").arg(i))))
                return false;
        }
        return source.setDirectory(QDir(folder.path()), "0.png");
    }

    ImageButton *slideshow() const { return buttons.of(Command::Slideshow); }

    QTemporaryDir folder;
    PhotographSource source;
    PhotographBar bar;
};

} // namespace

/// The controls of Photograph mode without a window.
class PhotographBarTest : public QObject
{
    Q_OBJECT

private slots:
    void theButtonsJoinTheOthers();
    void theModeShowsAndHidesItsParts();
    void theSlideshowsButtonShowsTheSource();
    void theIndexCountsFromOne();
    void theIntervalHasItsSeconds();
    void everyButtonClosesThePopUp();
};

void PhotographBarTest::theButtonsJoinTheOthers()
{
    const PhotographScene scene;
    int x = 20;
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::PhotographBar)) {
        const ImageButton *button = scene.buttons.of(row.command);
        QVERIFY(button);
        QCOMPARE(button->pos(), QPoint(x, 5));
        QCOMPARE(button->isCheckable(), (row.look & Commands::Checkable) != 0);
        x += 40;
    }
}

void PhotographBarTest::theModeShowsAndHidesItsParts()
{
    PhotographScene scene;
    const QWidget *bar = scene.slideshow()->parentWidget();
    const Slider *interval = scene.parent.findChild<Slider *>();
    scene.bar.enter();
    QVERIFY(!bar->isHidden() && interval->isHidden() && scene.bar.thumbnails()->isHidden());
    scene.buttons.of(Command::Thumbnails)->setChecked(true);
    scene.bar.showThumbnails();
    scene.buttons.of(Command::SlideshowInterval)->setChecked(true);
    scene.bar.showInterval();
    QVERIFY(!interval->isHidden() && !scene.bar.thumbnails()->isHidden());
    scene.bar.leave();
    QVERIFY(bar->isHidden() && interval->isHidden() && scene.bar.thumbnails()->isHidden());
    QVERIFY(!scene.buttons.of(Command::Thumbnails)->isChecked());
    QVERIFY(!scene.buttons.of(Command::SlideshowInterval)->isChecked());
}

void PhotographBarTest::theSlideshowsButtonShowsTheSource()
{
    PhotographScene scene;
    QVERIFY(scene.openFolder(3));
    scene.slideshow()->setChecked(true);
    scene.bar.playOrStop();
    QVERIFY(scene.source.playing());
    scene.bar.next();
    QCOMPARE(scene.slideshow()->isChecked(), scene.source.playing());
    scene.slideshow()->setChecked(true);
    scene.bar.playDone();
    QVERIFY(!scene.slideshow()->isChecked());
}

void PhotographBarTest::theIndexCountsFromOne()
{
    PhotographScene scene;
    QVERIFY(scene.openFolder(3));
    scene.bar.showIndex(1);
    const auto isShown = [&scene](const QString &text) {
        const QList<QLabel *> labels = scene.parent.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
                           [&text](const QLabel *label) { return label->text() == text; });
    };
    QVERIFY(isShown("2/3"));
    // A picture that joins the folder counts, too.
    QVERIFY(QFile::copy(scene.folder.filePath("2.png"), scene.folder.filePath("3.png")));
    QTRY_VERIFY_WITH_TIMEOUT(isShown("1/4"), 30000);
}

void PhotographBarTest::theIntervalHasItsSeconds()
{
    PhotographScene scene;
    QSignalSpy moved(&scene.bar, &PhotographBar::intervalMoved);
    scene.parent.findChild<Slider *>()->setValue(5);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved[0][0].toInt(), 5);
    scene.bar.setInterval(5);
    QCOMPARE(scene.source.playInterval(), 30000);
    for (const int outside : {-1, 6})
        scene.bar.setInterval(outside);
    QCOMPARE(scene.source.playInterval(), 30000);
}

void PhotographBarTest::everyButtonClosesThePopUp()
{
    using Slot = void (PhotographBar::*)();
    for (const Slot slot :
         {&PhotographBar::previous, &PhotographBar::next, &PhotographBar::playOrStop,
          &PhotographBar::showThumbnails, &PhotographBar::showInterval}) {
        PhotographScene scene;
        const QPointer<ToolWindow> popup = scene.open(Command::Line);
        QVERIFY(popup);
        (scene.bar.*slot)();
        QVERIFY(!popup);
    }
    PhotographScene scene;
    const QPointer<ToolWindow> popup = scene.open(Command::Line);
    scene.bar.playDone();
    QVERIFY(popup);
}

REGISTER_TEST(PhotographBarTest)
#include "tst_photograph_bar.moc"
