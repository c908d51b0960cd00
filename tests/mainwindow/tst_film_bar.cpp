#include "mainwindow/bars/FilmBar.h"

#include "mainwindow/CanvasMessage.h"
#include "mainwindow/WindowLayout.h"
#include "sources/FilmSource.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/Slider.h"

#include "tests/TestProgram.h"
#include "tests/fakes/FakeFilmPlayer.h"
#include "tests/mainwindow/HelperScene.h"

#include <QPointer>
#include <QTest>

namespace
{

struct FilmScene : HelperScene {
    FilmScene()
        : source(deck.canvas(Modes::Film), nullptr, std::make_unique<FakeFilmPlayer>(film),
                 [this](std::function<void()> tick) {
                     return std::make_unique<FakeDisplayLink>(refresh, std::move(tick));
                 })
        , bar(&source, deck.canvas(Modes::Film), &popups, &buttons, &parent)
    {
    }

    Slider *volume() const { return parent.findChild<Slider *>(); }
    HorizontalSlider *position() const { return parent.findChild<HorizontalSlider *>(); }

    FakeFilm film;
    FakeRefresh refresh;
    FilmSource source;
    FilmBar bar;
};

} // namespace

/// The controls of Film mode without a window.
class FilmBarTest : public QObject
{
    Q_OBJECT

private slots:
    void theButtonsStandInARowAndJoinTheOthers();
    void theModeShowsAndHidesItsParts();
    void theFilmIsPlayedAndPaused();
    void aFilmThatCannotBeShownHasNoPosition();
    void eachFaultIsSaidInASentenceOfItsOwn();
    void thePlayerAloneKnowsWhetherTheFilmMoves();
    void everyButtonClosesThePopUp();
};

void FilmBarTest::theButtonsStandInARowAndJoinTheOthers()
{
    const FilmScene scene;
    int x = 20;
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::FilmBar)) {
        const ImageButton *button = scene.buttons.of(row.command);
        QVERIFY(button);
        QCOMPARE(button->pos(), QPoint(x, 5));
        QCOMPARE(button->accessibleName(), QString(row.text));
        QCOMPARE(button->toolTip(), QString(row.text));
        QCOMPARE(button->isCheckable(), row.command == Command::FilmVolume);
        x += 40;
    }
}

void FilmBarTest::theModeShowsAndHidesItsParts()
{
    FilmScene scene;
    const QWidget *bar = scene.buttons.of(Command::PlayFilm)->parentWidget();
    QVERIFY(bar->isHidden() && scene.position()->isHidden() && scene.volume()->isHidden());
    scene.bar.enter();
    QVERIFY(!bar->isHidden() && !scene.position()->isHidden() && scene.volume()->isHidden());
    scene.buttons.of(Command::FilmVolume)->setChecked(true);
    scene.bar.showVolume();
    QVERIFY(!scene.volume()->isHidden());
    scene.bar.leave();
    QVERIFY(bar->isHidden() && scene.position()->isHidden() && scene.volume()->isHidden());
    QVERIFY(!scene.buttons.of(Command::FilmVolume)->isChecked());
}

void FilmBarTest::theFilmIsPlayedAndPaused()
{
    FilmScene scene;
    QVERIFY(scene.source.setFile("film.mov"));
    scene.film.opened(100);
    QVERIFY(scene.film.playing);
    scene.bar.playOrPause();
    QVERIFY(!scene.film.playing);
    scene.bar.playOrPause();
    QVERIFY(scene.film.playing);
    scene.film.time = 50;
    scene.bar.showPosition();
    QCOMPARE(scene.position()->value(), 50);
    scene.volume()->setValue(50);
    QCOMPARE(scene.film.volume, 0.5F);
}

void FilmBarTest::aFilmThatCannotBeShownHasNoPosition()
{
    FilmScene scene;
    scene.source.setFile("film.mov");
    scene.film.opened(100);
    scene.film.time = 50;
    scene.bar.showPosition();
    scene.source.setFile("noise.mov");
    scene.film.fails(FilmFault::NoFilm);
    QTRY_COMPARE(scene.position()->value(), 0);
}

void FilmBarTest::eachFaultIsSaidInASentenceOfItsOwn()
{
    FilmScene scene;
    const auto *message = scene.deck.canvas(Modes::Film)->findChild<CanvasMessage *>();
    QVERIFY(message);
    QStringList said;
    for (const FilmFault fault :
         {FilmFault::Unreadable, FilmFault::NoFilm, FilmFault::NoPicture, FilmFault::DecoderMissing,
          FilmFault::NotAnswering, FilmFault::SoundNotAnswering, FilmFault::BrokenOff}) {
        scene.source.setFile("film.mov");
        scene.film.events.faulty(scene.film.number, fault);
        QTRY_VERIFY(!message->text().isEmpty() && !said.contains(message->text()));
        said << message->text();
    }
    QVERIFY(said[1].contains("damaged") && said[3].contains("decoder") &&
            said[5].contains("without sound") && said[6].contains("further"));
}

void FilmBarTest::thePlayerAloneKnowsWhetherTheFilmMoves()
{
    FilmScene scene;
    QVERIFY(scene.source.setFile("film.mov"));
    scene.film.opened(100);
    // At its end it stands, though nobody has paused it: one press plays it again.
    scene.film.ends();
    QTRY_VERIFY(!scene.source.moving());
    scene.bar.playOrPause();
    QVERIFY(scene.film.playing);
    QVERIFY(scene.source.moving());
}

void FilmBarTest::everyButtonClosesThePopUp()
{
    using Slot = void (FilmBar::*)();
    for (const Slot slot : {&FilmBar::play, &FilmBar::pause, &FilmBar::stop, &FilmBar::backward,
                            &FilmBar::forward, &FilmBar::showVolume, &FilmBar::playOrPause}) {
        FilmScene scene;
        const QPointer<ToolWindow> popup = scene.open(Command::Line);
        QVERIFY(popup);
        (scene.bar.*slot)();
        QVERIFY(!popup);
    }
    FilmScene scene;
    const QPointer<ToolWindow> popup = scene.open(Command::Line);
    scene.bar.showPosition();
    QVERIFY(popup);
}

REGISTER_TEST(FilmBarTest)
#include "tst_film_bar.moc"
