#include "mainwindow/pages/FingerScroll.h"
#include "tests/TestProgram.h"

#include <QLabel>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <vector>

namespace
{

constexpr QPoint ON_LINK(20, 108);

/// A page with a link, which tells what the mouse does to it.
class LinkedPage : public QLabel
{
public:
    LinkedPage()
        : QLabel("<a href='there'>A link that is long enough for a finger</a>")
    {
        setFixedSize(300, 2000);
        setAlignment(Qt::AlignLeft | Qt::AlignTop);
        setContentsMargins(0, 100, 0, 0);
        setMouseTracking(true);
    }

    std::vector<QPoint> released;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        released.push_back(event->pos());
        QLabel::mouseReleaseEvent(event);
    }
};

} // namespace

/// A finger on a page that is longer than its window, as the toolkit hands it to widgets: as a
/// mouse of its own making.
class FingerScrollTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_area.reset(); }
    void aTapFollowsALink();
    void aLinkThatWasPulledIsNotFollowed();
    void afterTheFingerThePageRests();
    void aMousePullsNothing();

private:
    void send(QEvent::Type type, QPoint point, Qt::MouseButtons buttons,
              Qt::MouseEventSource source = Qt::MouseEventSynthesizedByQt);
    void pull(int up, Qt::MouseEventSource source = Qt::MouseEventSynthesizedByQt);
    [[nodiscard]] int top() const { return m_area->verticalScrollBar()->value(); }

    std::unique_ptr<QScrollArea> m_area;
    LinkedPage *m_page = nullptr;
};

void FingerScrollTest::init()
{
    m_area = std::make_unique<QScrollArea>();
    m_page = new LinkedPage;
    m_area->setWidget(m_page);
    m_area->resize(340, 300);
    new FingerScroll(m_area.get());
    m_area->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
}

/// `point` is one of the screen, in which the area stands still, counted from its corner.
void FingerScrollTest::send(QEvent::Type type, QPoint point, Qt::MouseButtons buttons,
                            Qt::MouseEventSource source)
{
    const QPoint global = m_area->viewport()->mapToGlobal(point);
    const QPoint local = m_page->mapFromGlobal(global);
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, local, local, global, button, buttons, Qt::NoModifier, source);
    QCoreApplication::sendEvent(m_page, &event);
}

void FingerScrollTest::pull(int up, Qt::MouseEventSource source)
{
    send(QEvent::MouseButtonPress, ON_LINK, Qt::LeftButton, source);
    send(QEvent::MouseMove, ON_LINK - QPoint(0, up), Qt::LeftButton, source);
}

void FingerScrollTest::aTapFollowsALink()
{
    QSignalSpy followed(m_page, &QLabel::linkActivated);
    send(QEvent::MouseButtonPress, ON_LINK, Qt::LeftButton);
    send(QEvent::MouseMove, ON_LINK + QPoint(3, 3), Qt::LeftButton);
    send(QEvent::MouseButtonRelease, ON_LINK + QPoint(3, 3), Qt::NoButton);
    QCOMPARE(followed.count(), 1);
    QCOMPARE(m_page->released, std::vector<QPoint>{ON_LINK + QPoint(3, 3)});
}

void FingerScrollTest::aLinkThatWasPulledIsNotFollowed()
{
    QSignalSpy followed(m_page, &QLabel::linkActivated);
    // The page goes with the finger, so that the link stays under it.
    pull(60);
    QCOMPARE(top(), 60);
    send(QEvent::MouseButtonRelease, ON_LINK - QPoint(0, 60), Qt::NoButton);
    QCOMPARE(followed.count(), 0);
    // The link is let go nevertheless, elsewhere.
    QCOMPARE(m_page->released.size(), std::size_t{1});
    QVERIFY(!m_page->rect().contains(m_page->released.front()));
}

void FingerScrollTest::afterTheFingerThePageRests()
{
    pull(60);
    send(QEvent::MouseButtonRelease, ON_LINK - QPoint(0, 60), Qt::NoButton);
    // A mouse that passes.
    send(QEvent::MouseMove, ON_LINK - QPoint(0, 90), Qt::NoButton, Qt::MouseEventNotSynthesized);
    QCOMPARE(top(), 60);
}

void FingerScrollTest::aMousePullsNothing()
{
    pull(60, Qt::MouseEventNotSynthesized);
    QCOMPARE(top(), 0);
    send(QEvent::MouseButtonRelease, ON_LINK, Qt::NoButton, Qt::MouseEventNotSynthesized);
    QCOMPARE(m_page->released, std::vector<QPoint>{ON_LINK});
}

REGISTER_TEST(FingerScrollTest)
#include "tst_finger_scroll.moc"
