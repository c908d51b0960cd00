#include "mainwindow/CanvasMessage.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <memory>

using namespace std::chrono_literals;

/// A sentence over the picture.
class CanvasMessageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_canvas.reset(); }
    void nothingIsShownAtFirst();
    void aPassingSentenceGoesByItself();
    void aNewerSentenceHasItsOwnTime();
    void theStandingSentenceComesBack();
    void itStandsInTheMiddleOfItsCanvas();
    void aLongSentenceIsBrokenIntoLines();
    void itsTextGrowsWithTheCanvas();
    void itIsWhiteOnDark();
    void theMouseGoesThrough();
    void aScreenReaderReadsIt();

private:
    std::unique_ptr<QWidget> m_canvas;
    CanvasMessage *m_message = nullptr;
};

void CanvasMessageTest::init()
{
    m_canvas = std::make_unique<QWidget>();
    m_canvas->resize(800, 600);
    m_canvas->show();
    m_message = new CanvasMessage(m_canvas.get());
}

void CanvasMessageTest::nothingIsShownAtFirst()
{
    QVERIFY(m_message->isHidden());
    QVERIFY(m_message->text().isEmpty());
}

void CanvasMessageTest::aPassingSentenceGoesByItself()
{
    m_message->pass("Nothing to see.", 300ms);
    QVERIFY(m_message->isVisible());
    QCOMPARE(m_message->text(), QString("Nothing to see."));
    QTRY_VERIFY(!m_message->isVisible());
    m_message->pass("Once more.", 1h);
    m_message->pass({});
    QVERIFY(!m_message->isVisible());
}

void CanvasMessageTest::aNewerSentenceHasItsOwnTime()
{
    m_message->pass("First.", 1ms);
    m_message->pass("Second.", 1h);
    // Long after the first one's time, to see that it does not end the second.
    QTest::qWait(100);
    QCOMPARE(m_message->text(), QString("Second."));
}

void CanvasMessageTest::theStandingSentenceComesBack()
{
    m_message->stand("Open a film");
    QCOMPARE(m_message->text(), QString("Open a film"));
    m_message->pass("This is none.", 300ms);
    QCOMPARE(m_message->text(), QString("This is none."));
    QTRY_COMPARE(m_message->text(), QString("Open a film"));
    QVERIFY(m_message->isVisible());
    m_message->stand({});
    QVERIFY(!m_message->isVisible());
}

void CanvasMessageTest::itStandsInTheMiddleOfItsCanvas()
{
    m_message->stand("Open a film");
    for (const QSize size : {QSize(800, 600), QSize(1900, 1000), QSize(500, 400)}) {
        m_canvas->resize(size);
        QTRY_VERIFY(
            (m_message->geometry().center() - m_canvas->rect().center()).manhattanLength() <= 2);
        QVERIFY(m_canvas->rect().contains(m_message->geometry()));
    }
}

void CanvasMessageTest::aLongSentenceIsBrokenIntoLines()
{
    m_message->stand("Short.");
    const int line = m_message->height();
    m_message->stand(QString("A long sentence that needs more than one line. ").repeated(3));
    QVERIFY(m_message->width() <= 640);
    QVERIFY(m_message->height() >= 2 * line - m_message->font().pixelSize());
    QVERIFY(m_canvas->rect().contains(m_message->geometry()));
}

void CanvasMessageTest::itsTextGrowsWithTheCanvas()
{
    m_message->stand("Open a film");
    const int before = m_message->font().pixelSize();
    QVERIFY(before >= 24);
    m_canvas->resize(1600, 1200);
    QTRY_COMPARE(m_message->font().pixelSize(), 2 * before);
}

void CanvasMessageTest::itIsWhiteOnDark()
{
    m_canvas->setStyleSheet("background: #c0c0c0");
    m_message->stand("Open a film");
    const QImage shown = m_canvas->grab().toImage();
    const QRect place = m_message->geometry();
    QVERIFY(qGray(shown.pixel(place.left() + 8, place.center().y())) < 80);
    int brightest = 0;
    for (int x = place.left(); x <= place.right(); ++x) {
        for (int y = place.top(); y <= place.bottom(); ++y)
            brightest = qMax(brightest, qGray(shown.pixel(x, y)));
    }
    QCOMPARE(brightest, 255);
}

void CanvasMessageTest::theMouseGoesThrough()
{
    m_message->stand("Open a film");
    QVERIFY(m_message->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(!m_canvas->childAt(m_message->geometry().center()));
    QCOMPARE(m_message->focusPolicy(), Qt::NoFocus);
}

void CanvasMessageTest::aScreenReaderReadsIt()
{
    m_message->pass("This is none.", 1h);
    QCOMPARE(m_message->accessibleName(), QString("This is none."));
}

REGISTER_TEST(CanvasMessageTest)
#include "tst_canvas_message.moc"
