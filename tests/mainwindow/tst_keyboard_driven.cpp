#include "tests/mainwindow/DrivenWindow.h"

#include "sources/PhotographSource.h"

#include "tests/TestProgram.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <qpa/qwindowsysteminterface.h>

using namespace DrivenWindow;
using namespace WindowProbe;

namespace
{

/// Counts the repeats of a held page key and notes its release, on the way to their first receiver.
class KeyCounter : public QObject
{
public:
    int repeats = 0;
    bool released = false;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!watched->isWindowType())
            return false;
        const bool press = event->type() == QEvent::KeyPress;
        if (!press && event->type() != QEvent::KeyRelease)
            return false;
        const bool repeat = static_cast<QKeyEvent *>(event)->isAutoRepeat();
        repeats += press && repeat ? 1 : 0;
        released = released || (!press && !repeat);
        return false;
    }
};

/// What the toolkit concludes by itself when a pop-up is gone before it got the focus.
void loseTheActiveWindow()
{
    QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::SynchronousDelivery>(
        nullptr, Qt::ActiveWindowFocusReason);
}

} // namespace

/// What only a real keyboard, its repeats and a window manager show.
class KeyboardDrivenTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init();
    void cleanup() { m_window.reset(); }
    void aDragInFullScreenLeavesEscapeAlive();
    void thePanelKeepsItsWidthAcrossFullScreen();
    void theAboutPopUpStandsByItsButtonAfterAResize();
    void aPopUpThatIsGoneBeforeItGetsTheFocusTakesItFromNobody();
    void aHeldPageKeyStopsWhenItIsLetGo();

private:
    std::unique_ptr<MainWindow> m_window;
    QTemporaryDir m_folder;
};

void KeyboardDrivenTest::init()
{
    usualSettings();
    m_window = open();
    QVERIFY(m_window);
}

void KeyboardDrivenTest::aDragInFullScreenLeavesEscapeAlive()
{
    Pointer::key("F11");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isFullScreen() && m_window->height() == 1080, TIMEOUT_MS);
    Pointer::drag({900, 5}, {901, 5});
    QCOMPARE(m_window->geometry(), QRect(0, 0, 1920, 1080));
    Pointer::key("Escape");
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(938, 768), TIMEOUT_MS);
    QVERIFY(!m_window->isFullScreen());
}

void KeyboardDrivenTest::thePanelKeepsItsWidthAcrossFullScreen()
{
    ImageButton *side = button(*m_window, "Side panel");
    const int right = m_window->geometry().right();
    const int top = m_window->geometry().top();
    for (const bool open : {false, true, false, true}) {
        Pointer::key("F11");
        QTRY_VERIFY_WITH_TIMEOUT(m_window->isFullScreen() && m_window->height() == 1080,
                                 TIMEOUT_MS);
        QVERIFY(clicked(side));
        QCOMPARE(m_window->width(), 1920);
        Pointer::key("F11");
        const QRect expected(QPoint(right + 1 - (open ? 938 : 800), top), QPoint(right, top + 767));
        QTRY_COMPARE_WITH_TIMEOUT(m_window->geometry(), expected, TIMEOUT_MS);
    }
    // Outside of it a step is still a step.
    QVERIFY(clicked(side));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->width(), 800, TIMEOUT_MS);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->geometry().right(), right, TIMEOUT_MS);
}

void KeyboardDrivenTest::theAboutPopUpStandsByItsButtonAfterAResize()
{
    ImageButton *about = button(*m_window, "About");
    m_window->move(300, 40);
    QVERIFY(clicked(about));
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(popup);
    for (const int height : {800, 860, 780}) {
        m_window->resize(938, height);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->height(), height, TIMEOUT_MS);
        const QPoint beside = about->mapToGlobal(QPoint(about->width() + 3, 0));
        QTRY_COMPARE_WITH_TIMEOUT(popup->pos(), beside, TIMEOUT_MS);
    }
}

void KeyboardDrivenTest::aPopUpThatIsGoneBeforeItGetsTheFocusTakesItFromNobody()
{
    QVERIFY(clicked(button(*m_window, "More")));
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(popup);
    QTRY_VERIFY_WITH_TIMEOUT(popup->windowHandle()->isExposed(), TIMEOUT_MS);
    delete popup;
    loseTheActiveWindow();
    QVERIFY(!QApplication::activeWindow());
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeWindow() == m_window.get(), TIMEOUT_MS);
    Pointer::key("F11");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isFullScreen(), TIMEOUT_MS);
}

void KeyboardDrivenTest::aHeldPageKeyStopsWhenItIsLetGo()
{
    // Photographs of 24 megapixels take longer to read than the time between two repeats, and of so
    // many only the next ones have been read ahead.
    QImage image(6000, 4000, QImage::Format_RGB32);
    for (int i = 0; i < 10; ++i) {
        image.fill(QColor(20 * i, 90, 200));
        QVERIFY(image.save(m_folder.filePath(QString("%1.jpg").arg(i))));
    }
    QVERIFY(enterMode(*m_window, 2));
    auto *source = m_window->findChild<PhotographSource *>();
    QVERIFY(source->setDirectory(QDir(m_folder.path()), "0.jpg"));
    QSignalSpy steps(source, SIGNAL(photographChanged(int)));
    KeyCounter presses;
    qApp->installEventFilter(&presses);
    Pointer::keyDown("Next");
    QTRY_VERIFY_WITH_TIMEOUT(steps.count() >= 6, TIMEOUT_MS);
    Pointer::keyUp("Next");
    QTRY_VERIFY_WITH_TIMEOUT(presses.released, TIMEOUT_MS);
    QVERIFY2(steps.count() < presses.repeats,
             qPrintable(QString("%1 of %2").arg(steps.count()).arg(presses.repeats)));
}

REGISTER_TEST(KeyboardDrivenTest)
#include "tst_keyboard_driven.moc"
