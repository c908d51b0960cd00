#include "sources/film/PlaybackRequests.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

namespace
{

QVector<double> placesOf(const std::deque<PlaybackRequests::Seek> &seeks)
{
    QVector<double> places;
    for (const PlaybackRequests::Seek &seek : seeks)
        places.append(seek.seconds);
    return places;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(PlaybackRequests &, quint64)>)

class PlaybackRequestsTest : public QObject
{
    Q_OBJECT

    PlaybackRequests *m_wishes = nullptr;

private slots:
    void init() { m_wishes = new PlaybackRequests; }
    void cleanup() { delete std::exchange(m_wishes, nullptr); }

    void filmsAreNumberedFromOne()
    {
        QVERIFY(!m_wishes->otherFilm(0));
        QCOMPARE(m_wishes->setFilm(QString("a"), {}), quint64(1));
        QCOMPARE(m_wishes->setFilm(std::nullopt, {}), quint64(2));
        QVERIFY(!m_wishes->otherFilm(2));
        const auto film = m_wishes->otherFilm(1);
        QVERIFY(film && film->number == 2 && !film->path);
    }

    void anotherFilmBeginsPausedAtItsStart()
    {
        const quint64 first = m_wishes->setFilm(QString("a"), {});
        m_wishes->play(0);
        m_wishes->seek(7, {});
        const quint64 second = m_wishes->setFilm(QString("b"), {});
        QVERIFY(!m_wishes->takeMotion(first, false));
        const auto motion = m_wishes->takeMotion(second, false);
        QVERIFY(motion && !motion->playing && !motion->again);
        QCOMPARE(m_wishes->place().value_or(-1), 0.0);
    }

    void playBeginsAgainOnce()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->play(0);
        QVERIFY(m_wishes->takeMotion(film, false)->again);
        QVERIFY(!m_wishes->takeMotion(film, false)->again);
        QVERIFY(m_wishes->takeMotion(film, false)->playing);
    }

    void playAtTheLastPositionWaitsForTheEnd()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        QVERIFY(m_wishes->setLength(film, 20));
        m_wishes->play(20);
        // The player looks before it knows of the end.
        QVERIFY(m_wishes->takeMotion(film, false)->again);
        // The end turns out a moment later than the file says.
        QVERIFY(m_wishes->setLength(film, 20.02));
        QVERIFY(!m_wishes->ended(film));
        QVERIFY(!m_wishes->atEnd());
        QVERIFY(m_wishes->takeMotion(film, true)->again);
        QVERIFY(!m_wishes->takeMotion(film, true)->again);
        QVERIFY(m_wishes->ended(film));
    }

    void playAtTheLastPositionIsTakenBack_data()
    {
        using Step = std::function<void(PlaybackRequests &, quint64 film)>;
        QTest::addColumn<Step>("by");
        QTest::newRow("a pause") << Step([](auto &requests, quint64) { requests.pause(); });
        QTest::newRow("a seek") << Step([](auto &requests, quint64 film) {
            requests.seek(1, {});
            (void)requests.takeSeeks(film);
        });
        QTest::newRow("a longer film") << Step([](auto &requests, quint64 film) {
            QVERIFY(requests.setLength(film, 30));
            (void)requests.takeMotion(film, false);
        });
    }

    void playAtTheLastPositionIsTakenBack()
    {
        QFETCH(std::function<void(PlaybackRequests &, quint64)>, by);
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        QVERIFY(m_wishes->setLength(film, 20));
        m_wishes->play(20);
        by(*m_wishes, film);
        QVERIFY(m_wishes->ended(film));
        QVERIFY(!m_wishes->takeMotion(film, true)->again);
    }

    void anEndIsOneUntilSomethingIsAskedFor()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        QVERIFY(!m_wishes->atEnd());
        QVERIFY(m_wishes->ended(film));
        QVERIFY(m_wishes->atEnd());
        m_wishes->pause();
        QVERIFY(m_wishes->atEnd());
        m_wishes->play(0);
        QVERIFY(!m_wishes->atEnd());
        QVERIFY(m_wishes->ended(film));
        m_wishes->seek(1, {});
        QVERIFY(!m_wishes->atEnd());
        // A file that does not answer is given up: nothing more will come.
        (void)m_wishes->renew(film);
        QVERIFY(m_wishes->atEnd());
        m_wishes->setFilm(QString("b"), {});
        QVERIFY(!m_wishes->atEnd());
    }

    void pauseAndSeekTakeBackBeginningAgain()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->play(0);
        m_wishes->seek(1, {});
        const auto sought = m_wishes->takeMotion(film, false);
        QVERIFY(sought->playing && !sought->again);
        m_wishes->play(0);
        m_wishes->pause();
        const auto paused = m_wishes->takeMotion(film, false);
        QVERIFY(!paused->playing && !paused->again);
    }

    void aRenewedFilmKeepsWhatWasWished()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->play(0);
        m_wishes->setPlace(film, std::nullopt);
        QCOMPARE(m_wishes->answered(12), 12.0);
        m_wishes->seek(7, {});
        const PlaybackRequests::Film again = m_wishes->renew();
        QCOMPARE(again.number, film + 1);
        QCOMPARE(again.path, std::optional<QString>("a"));
        QCOMPARE(again.resumeAt, 7.0);
        // Whoever works on the film before works for nobody.
        QVERIFY(!m_wishes->takeMotion(film, false));
        QVERIFY(!m_wishes->setLength(film, 9));
        QVERIFY(!m_wishes->ended(film));
        QVERIFY(m_wishes->takeSeeks(film).empty());
        QVERIFY(m_wishes->takeSeeksBefore(film).empty());
        QCOMPARE(placesOf(m_wishes->takeSeeks(again.number)), QVector<double>{7});
        QVERIFY(m_wishes->takeMotion(again.number, false)->playing);
        QVERIFY(m_wishes->renew(film).path.has_value()); // that one is not the newest
        QVERIFY(!m_wishes->renew(film + 2).path);
        QCOMPARE(m_wishes->otherFilm(0)->number, film + 3);
    }

    void aFilmThatPlayedGoesOnWhereItWas()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->setPlace(film, std::nullopt);
        QCOMPARE(m_wishes->answered(12), 12.0);
        QCOMPARE(m_wishes->renew().resumeAt, 12.0);
        m_wishes->setFilm(QString("b"), {});
        QCOMPARE(m_wishes->otherFilm(0)->resumeAt, 0.0);
    }

    void aSeekStaysWithinTheFilm()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->seek(100, {});
        QVERIFY(m_wishes->setLength(film, 20));
        m_wishes->seek(30, {});
        m_wishes->seek(-3, {});
        m_wishes->seek(std::nan(""), {});
        m_wishes->seek(std::numeric_limits<double>::infinity(), {});
        m_wishes->seek(12, {});
        QCOMPARE(m_wishes->place().value_or(-1), 12.0);
        QCOMPARE(placesOf(m_wishes->takeSeeks(film)), (QVector<double>{100, 20, 0, 0, 0, 12}));
        QVERIFY(m_wishes->takeSeeks(film).empty());
    }

    void aLengthOfAnEarlierFilmLimitsNothing()
    {
        const quint64 first = m_wishes->setFilm(QString("a"), {});
        QVERIFY(m_wishes->setLength(first, 20));
        const quint64 second = m_wishes->setFilm(QString("b"), {});
        QVERIFY(!m_wishes->setLength(first, 5));
        m_wishes->seek(30, {});
        QCOMPARE(placesOf(m_wishes->takeSeeks(second)), QVector<double>{30});
    }

    void seeksAreTakenByTheirFilm()
    {
        const quint64 first = m_wishes->setFilm(QString("a"), {});
        m_wishes->seek(1, {});
        m_wishes->seek(2, {});
        const quint64 second = m_wishes->setFilm(QString("b"), {});
        m_wishes->seek(3, {});
        QCOMPARE(placesOf(m_wishes->takeSeeksBefore(second)), (QVector<double>{1, 2}));
        QVERIFY(m_wishes->takeSeeks(first).empty());
        QCOMPARE(placesOf(m_wishes->takeSeeks(second)), QVector<double>{3});
    }

    void anEndCountsUnlessSomethingNewerIsWanted()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->play(0);
        QVERIFY(m_wishes->ended(film));
        const auto motion = m_wishes->takeMotion(film, false);
        QVERIFY(motion->playing && !motion->again);
        m_wishes->seek(1, {});
        QVERIFY(!m_wishes->ended(film));
        (void)m_wishes->takeSeeks(film);
        QVERIFY(m_wishes->ended(film));
        m_wishes->setFilm(QString("b"), {});
        QVERIFY(!m_wishes->ended(film));
    }

    void theNewestWishSaysWhereTheFilmIs()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->seek(5, {});
        m_wishes->setPlace(film, 1);
        QCOMPARE(m_wishes->place().value_or(-1), 5.0);
        (void)m_wishes->takeSeeks(film);
        m_wishes->setPlace(film, std::nullopt);
        QVERIFY(!m_wishes->place());
        m_wishes->setPlace(film + 1, 9);
        QVERIFY(!m_wishes->place());
    }

    void withoutAnAnswerTheLastPlaceStands()
    {
        const quint64 film = m_wishes->setFilm(QString("a"), {});
        m_wishes->setPlace(film, 4);
        QVERIFY(m_wishes->place().has_value());
        m_wishes->setPlace(film, std::nullopt);
        QVERIFY(!m_wishes->place());
        QCOMPARE(m_wishes->answered(-1), 4.0);
        QCOMPARE(m_wishes->answered(4.5), 4.5);
        QCOMPARE(m_wishes->answered(-1), 4.5);
    }

    void theVolumeStaysBetweenSilentAndFull()
    {
        QCOMPARE(m_wishes->volume(), 1.0F);
        m_wishes->setVolume(0.4F);
        m_wishes->setFilm(QString("a"), {});
        QCOMPARE(m_wishes->volume(), 0.4F);
        m_wishes->setVolume(3);
        QCOMPARE(m_wishes->volume(), 1.0F);
        m_wishes->setVolume(-1);
        QCOMPARE(m_wishes->volume(), 0.0F);
    }

    void finishedIsSaidOnce()
    {
        QVERIFY(!m_wishes->finished());
        m_wishes->finish();
        QVERIFY(m_wishes->finished());
    }
};

REGISTER_CORE_TEST(PlaybackRequestsTest)
#include "tst_playback_requests.moc"
