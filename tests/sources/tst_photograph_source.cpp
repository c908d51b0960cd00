#include "tests/TestProgram.h"
#include "tests/sources/PhotographTest.h"

#include <QSignalSpy>

class PhotographSourceTest : public PhotographTest
{
    Q_OBJECT

private slots:
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
        // Many intervals, in which no step may be made.
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
        // Many intervals of the show that was stopped.
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
        // Many intervals of the show that was ended.
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
        // Many of the intervals that were in use before.
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
};

REGISTER_TEST(PhotographSourceTest)
#include "tst_photograph_source.moc"
