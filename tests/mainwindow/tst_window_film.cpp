#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "sources/FilmSource.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/Slider.h"

#include "tests/TestProgram.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

using namespace WindowProbe;

namespace
{

/// A fifth of a second a percent; seeking goes to whole seconds.
constexpr int SECONDS = 20;

} // namespace

/// The bar under a film drives the film, and the film its slider.
class WindowFilmTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_window.reset(); }
    void theSliderFollowsTheFilm();
    void theSliderSeeks();
    void stopReturnsToTheStart();
    void backwardRewindsAndFasterWinds();
    void oneKeyPlaysAndPauses();
    void atTheEndTheKeyPlaysOn();
    void afterAWindBeyondAnEndOneKeyPlays_data();
    void afterAWindBeyondAnEndOneKeyPlays();
    void theVolumeReachesTheSource();

private:
    [[nodiscard]] int position() const { return m_film->currentPosition(); }
    void click(const char *name) const { button(*m_window, name)->click(); }
    [[nodiscard]] bool comesTo(int from, int to) const;
    void dragTo(int percent) const;

    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;
    FilmSource *m_film = nullptr;
    HorizontalSlider *m_slider = nullptr;
};

void WindowFilmTest::initTestCase()
{
    beOnOneself();
    usualSettings();
    QCOMPARE(QProcess::execute("ffmpeg",
                               {"-v", "error", "-f", "lavfi", "-i", "testsrc=size=320x240:rate=30",
                                "-t", QString::number(SECONDS), "-g", "15", "-pix_fmt", "yuv420p",
                                m_folder.filePath("film.mp4")}),
             0);
}

void WindowFilmTest::init()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_film = m_window->findChild<FilmSource *>();
    m_slider = m_window->findChildren<HorizontalSlider *>()[0];
    QVERIFY(m_film);
    enter(*m_window, 1);
    chooseFile(m_window.get(), m_folder.filePath("film.mp4"));
    click("Open film");
    QTRY_COMPARE_WITH_TIMEOUT(m_window->currentCanvas()->pictureSize(), QSize(320, 240),
                              TIMEOUT_MS);
}

bool WindowFilmTest::comesTo(int from, int to) const
{
    return QTest::qWaitFor([=] { return position() >= from && position() <= to; }, TIMEOUT_MS);
}

/// Drags with the mouse, as a value that the film itself writes into its slider seeks nothing.
void WindowFilmTest::dragTo(int percent) const
{
    const QPoint place(m_slider->width() * percent / 100, m_slider->height() / 2);
    QTest::mouseClick(m_slider, Qt::LeftButton, {}, place);
}

void WindowFilmTest::theSliderFollowsTheFilm()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_slider->value() > 5, TIMEOUT_MS);
    const int then = m_slider->value();
    QTRY_VERIFY_WITH_TIMEOUT(m_slider->value() > then, TIMEOUT_MS);
}

void WindowFilmTest::theSliderSeeks()
{
    click("Pause");
    dragTo(50);
    QVERIFY(comesTo(45, 55));
    dragTo(20);
    QVERIFY(comesTo(15, 25));
}

void WindowFilmTest::stopReturnsToTheStart()
{
    click("Pause");
    dragTo(50);
    QVERIFY(comesTo(45, 55));
    click("Stop");
    QVERIFY(comesTo(0, 0));
    QTRY_COMPARE_WITH_TIMEOUT(m_slider->value(), 0, TIMEOUT_MS);
    click("Play");
    QVERIFY(comesTo(3, 40));
}

void WindowFilmTest::backwardRewindsAndFasterWinds()
{
    dragTo(60);
    QVERIFY(comesTo(55, 70));
    click("Slower or backward");
    QVERIFY(comesTo(1, 40));
    for (int i = 0; i < 3; ++i)
        click("Faster");
    QVERIFY(comesTo(60, 100));
}

void WindowFilmTest::oneKeyPlaysAndPauses()
{
    m_window->filmPlayOrPause();
    dragTo(30);
    QVERIFY(comesTo(25, 35));
    const int there = position();
    // The film stands still: a twentieth of its length would show.
    QTest::qWait(SECONDS * 50 + 400);
    QVERIFY(position() <= there + 1);
    m_window->filmPlayOrPause();
    QVERIFY(comesTo(there + 3, 100));
}

void WindowFilmTest::atTheEndTheKeyPlaysOn()
{
    dragTo(95);
    QVERIFY(comesTo(100, 100));
    m_window->filmPlayOrPause();
    QVERIFY(comesTo(1, 80));
}

void WindowFilmTest::afterAWindBeyondAnEndOneKeyPlays_data()
{
    QTest::addColumn<QString>("faster");
    QTest::newRow("beyond the start") << "Slower or backward";
    QTest::newRow("beyond the end") << "Faster";
}

void WindowFilmTest::afterAWindBeyondAnEndOneKeyPlays()
{
    QFETCH(QString, faster);
    for (int i = 0; i < 5; ++i)
        button(*m_window, faster)->click();
    QVERIFY(m_film->moving());
    QTRY_VERIFY_WITH_TIMEOUT(!m_film->moving(), TIMEOUT_MS);
    QCOMPARE(position(), 0);
    m_window->filmPlayOrPause();
    QVERIFY(m_film->moving());
    QVERIFY(comesTo(3, 100));
}

void WindowFilmTest::theVolumeReachesTheSource()
{
    auto *volume = m_window->findChildren<Slider *>()[0];
    QCOMPARE(volume->minimum(), 1);
    QCOMPARE(volume->maximum(), 100);
    QCOMPARE(volume->value(), 100);
    QVERIFY(QObject::disconnect(volume, SIGNAL(valueChanged(int)), m_film, SLOT(setVolume(int))));
}

REGISTER_TEST(WindowFilmTest)
#include "tst_window_film.moc"
