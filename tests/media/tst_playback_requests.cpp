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

    PlaybackRequests *m_requests = nullptr;

private slots:
    void init() { m_requests = new PlaybackRequests; }
    void cleanup() { delete std::exchange(m_requests, nullptr); }

    void filmsAreNumberedFromOne()
    {
        QVERIFY(!m_requests->otherFilm(0));
        QCOMPARE(m_requests->setFilm(QString("a"), {}), quint64(1));
        QCOMPARE(m_requests->setFilm(std::nullopt, {}), quint64(2));
        QVERIFY(!m_requests->otherFilm(2));
        const auto film = m_requests->otherFilm(1);
        QVERIFY(film && film->number == 2 && film->openedAs == 2 && !film->path);
    }

    void anotherFilmBeginsPausedAtItsStart()
    {
        const quint64 first = m_requests->setFilm(QString("a"), {});
        m_requests->play(0);
        m_requests->seek(7, {});
        const quint64 second = m_requests->setFilm(QString("b"), {});
        QVERIFY(!m_requests->takeMotion(first, false));
        const auto motion = m_requests->takeMotion(second, false);
        QVERIFY(motion && !motion->playing && !motion->again);
        QCOMPARE(m_requests->place().value_or(-1), 0.0);
    }

    void playBeginsAgainOnce()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->play(0);
        QVERIFY(m_requests->takeMotion(film, false)->again);
        QVERIFY(!m_requests->takeMotion(film, false)->again);
        QVERIFY(m_requests->takeMotion(film, false)->playing);
    }

    void playAtTheLastPositionWaitsForTheEnd()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        QVERIFY(m_requests->setLength(film, 20));
        m_requests->play(20);
        // The player looks before it knows of the end.
        QVERIFY(m_requests->takeMotion(film, false)->again);
        // The end turns out a moment later than the file says.
        QVERIFY(m_requests->setLength(film, 20.02));
        QVERIFY(!m_requests->ended(film));
        QVERIFY(!m_requests->atEnd());
        QVERIFY(m_requests->takeMotion(film, true)->again);
        QVERIFY(!m_requests->takeMotion(film, true)->again);
        QVERIFY(m_requests->ended(film));
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
        const quint64 film = m_requests->setFilm(QString("a"), {});
        QVERIFY(m_requests->setLength(film, 20));
        m_requests->play(20);
        by(*m_requests, film);
        QVERIFY(m_requests->ended(film));
        QVERIFY(!m_requests->takeMotion(film, true)->again);
    }

    void anEndIsOneUntilSomethingIsAskedFor()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        QVERIFY(!m_requests->atEnd());
        QVERIFY(m_requests->ended(film));
        QVERIFY(m_requests->atEnd());
        m_requests->pause();
        QVERIFY(m_requests->atEnd());
        m_requests->play(0);
        QVERIFY(!m_requests->atEnd());
        QVERIFY(m_requests->ended(film));
        m_requests->seek(1, {});
        QVERIFY(!m_requests->atEnd());
        // A file that does not answer is given up: nothing more will come.
        (void)m_requests->renew(film);
        QVERIFY(m_requests->atEnd());
        m_requests->setFilm(QString("b"), {});
        QVERIFY(!m_requests->atEnd());
    }

    void pauseAndSeekTakeBackBeginningAgain()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->play(0);
        m_requests->seek(1, {});
        const auto sought = m_requests->takeMotion(film, false);
        QVERIFY(sought->playing && !sought->again);
        m_requests->play(0);
        m_requests->pause();
        const auto paused = m_requests->takeMotion(film, false);
        QVERIFY(!paused->playing && !paused->again);
    }

    void aRenewedFilmKeepsWhatWasAskedFor()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->play(0);
        m_requests->setPlace(film, std::nullopt);
        QCOMPARE(m_requests->answered(12), 12.0);
        m_requests->seek(7, {});
        const PlaybackRequests::Film again = m_requests->renew();
        QCOMPARE(again.number, film + 1);
        // Its callers still know it by the number that they were given.
        QCOMPARE(again.openedAs, film);
        QCOMPARE(again.path, std::optional<QString>("a"));
        QCOMPARE(again.resumeAt, 7.0);
        // An engine that still works on the film under its old number is ignored.
        QVERIFY(!m_requests->takeMotion(film, false));
        QVERIFY(!m_requests->setLength(film, 9));
        QVERIFY(!m_requests->ended(film));
        QVERIFY(m_requests->takeSeeks(film).empty());
        QVERIFY(m_requests->takeSeeksBefore(film).empty());
        QCOMPARE(placesOf(m_requests->takeSeeks(again.number)), QVector<double>{7});
        QVERIFY(m_requests->takeMotion(again.number, false)->playing);
        QVERIFY(m_requests->renew(film).path.has_value()); // that one is not the newest
        QVERIFY(!m_requests->renew(film + 2).path);
        QCOMPARE(m_requests->otherFilm(0)->number, film + 3);
    }

    void aFilmThatPlayedGoesOnWhereItWas()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->setPlace(film, std::nullopt);
        QCOMPARE(m_requests->answered(12), 12.0);
        QCOMPARE(m_requests->renew().resumeAt, 12.0);
        m_requests->setFilm(QString("b"), {});
        QCOMPARE(m_requests->otherFilm(0)->resumeAt, 0.0);
    }

    void aSeekStaysWithinTheFilm()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->seek(100, {});
        QVERIFY(m_requests->setLength(film, 20));
        m_requests->seek(30, {});
        m_requests->seek(-3, {});
        m_requests->seek(std::nan(""), {});
        m_requests->seek(std::numeric_limits<double>::infinity(), {});
        m_requests->seek(12, {});
        QCOMPARE(m_requests->place().value_or(-1), 12.0);
        QCOMPARE(placesOf(m_requests->takeSeeks(film)), (QVector<double>{100, 20, 0, 0, 0, 12}));
        QVERIFY(m_requests->takeSeeks(film).empty());
    }

    void aLengthOfAnEarlierFilmLimitsNothing()
    {
        const quint64 first = m_requests->setFilm(QString("a"), {});
        QVERIFY(m_requests->setLength(first, 20));
        const quint64 second = m_requests->setFilm(QString("b"), {});
        QVERIFY(!m_requests->setLength(first, 5));
        m_requests->seek(30, {});
        QCOMPARE(placesOf(m_requests->takeSeeks(second)), QVector<double>{30});
    }

    void seeksAreTakenByTheirFilm()
    {
        const quint64 first = m_requests->setFilm(QString("a"), {});
        m_requests->seek(1, {});
        m_requests->seek(2, {});
        const quint64 second = m_requests->setFilm(QString("b"), {});
        m_requests->seek(3, {});
        QCOMPARE(placesOf(m_requests->takeSeeksBefore(second)), (QVector<double>{1, 2}));
        QVERIFY(m_requests->takeSeeks(first).empty());
        QCOMPARE(placesOf(m_requests->takeSeeks(second)), QVector<double>{3});
    }

    void anEndCountsUnlessSomethingNewerIsWanted()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->play(0);
        QVERIFY(m_requests->ended(film));
        const auto motion = m_requests->takeMotion(film, false);
        QVERIFY(motion->playing && !motion->again);
        m_requests->seek(1, {});
        QVERIFY(!m_requests->ended(film));
        (void)m_requests->takeSeeks(film);
        QVERIFY(m_requests->ended(film));
        m_requests->setFilm(QString("b"), {});
        QVERIFY(!m_requests->ended(film));
    }

    void theNewestRequestSaysWhereTheFilmIs()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->seek(5, {});
        m_requests->setPlace(film, 1);
        QCOMPARE(m_requests->place().value_or(-1), 5.0);
        (void)m_requests->takeSeeks(film);
        m_requests->setPlace(film, std::nullopt);
        QVERIFY(!m_requests->place());
        m_requests->setPlace(film + 1, 9);
        QVERIFY(!m_requests->place());
    }

    void withoutAnAnswerTheLastPlaceStands()
    {
        const quint64 film = m_requests->setFilm(QString("a"), {});
        m_requests->setPlace(film, 4);
        QVERIFY(m_requests->place().has_value());
        m_requests->setPlace(film, std::nullopt);
        QVERIFY(!m_requests->place());
        QCOMPARE(m_requests->answered(-1), 4.0);
        QCOMPARE(m_requests->answered(4.5), 4.5);
        QCOMPARE(m_requests->answered(-1), 4.5);
    }

    void theVolumeStaysBetweenSilentAndFull()
    {
        QCOMPARE(m_requests->volume(), 1.0F);
        m_requests->setVolume(0.4F);
        m_requests->setFilm(QString("a"), {});
        QCOMPARE(m_requests->volume(), 0.4F);
        m_requests->setVolume(3);
        QCOMPARE(m_requests->volume(), 1.0F);
        m_requests->setVolume(-1);
        QCOMPARE(m_requests->volume(), 0.0F);
    }

    void finishedIsSaidOnce()
    {
        QVERIFY(!m_requests->finished());
        m_requests->finish();
        QVERIFY(m_requests->finished());
    }
};

REGISTER_CORE_TEST(PlaybackRequestsTest)
#include "tst_playback_requests.moc"
