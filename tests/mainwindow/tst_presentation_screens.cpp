#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/Outputs.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QFile>
#include <QProcess>
#include <QScreen>

using namespace Outputs;
using namespace WindowProbe;

namespace
{

constexpr QSize CLASS_SCREEN(1024, 768);

/// What the class sees: that part of the root window.
QImage onScreen(const QScreen &screen)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, screen.geometry().x(), screen.geometry().y(), screen.size().width(),
                     screen.size().height())
        .toImage()
        .convertToFormat(QImage::Format_RGB888);
}

} // namespace

/// The window for the class on screens that are plugged and pulled under it.
class PresentationScreensTest : public PresentationProbe
{
    Q_OBJECT

private slots:
    void initTestCase() { nameTheProgram(); }

    void init()
    {
        usualSettings();
        plug("DUMMY1", "1024x768", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_window->button(Command::Present)->click();
        QTRY_COMPARE(view()->geometry(), QRect(QPoint(1280, 0), CLASS_SCREEN));
    }

    void cleanup()
    {
        m_window.reset();
        QFile::remove(Preferences::fileName());
        for (const char *output : {"DUMMY1", "DUMMY2"})
            pull(output);
    }

    void itFillsTheOtherScreenWithThePictureAlone()
    {
        QVERIFY(view()->isFullScreen());
        for (int mode = 0; mode < Modes::COUNT; ++mode) {
            enter(*m_window, mode);
            QImage picture(CLASS_SCREEN, QImage::Format_RGB888);
            picture.fill(QColor(40 * mode, 90, 200 - 40 * mode));
            picture.setPixelColor(700, 500, Qt::white);
            m_window->currentCanvas()->imageCaptured(picture);
            QTRY_COMPARE(onScreen(*view()->screen()), picture);
            // Neither pop-ups nor indications come there.
            m_window->button(Command::Snapshot)->click();
            m_window->button(Command::About)->click();
            QVERIFY(QTest::qWaitForWindowExposed(m_window->currentToolWindow()));
            QCOMPARE(onScreen(*view()->screen()), picture);
        }
    }

    void theMainWindowKeepsTheFocus() { QTRY_VERIFY(m_window->isActiveWindow()); }

    void aPulledScreenTakesItAlongAndBringsItBack()
    {
        const QRect place = m_window->geometry();
        pull("DUMMY1");
        QTRY_VERIFY_WITH_TIMEOUT(!view()->isVisible(), 1000);
        QCOMPARE(m_window->geometry(), place);
        QVERIFY(m_window->button(Command::Present)->isChecked());
        xrandr({"--output", "DUMMY1", "--mode", "1024x768", "--right-of", "DUMMY0"});
        QTRY_VERIFY_WITH_TIMEOUT(view()->isVisible() && view()->x() == 1280, 2000);
        QTRY_VERIFY(view()->isFullScreen());
        QCOMPARE(m_window->geometry(), place);
    }

    void closedWhileItsScreenIsAwayItStaysClosed()
    {
        pull("DUMMY1");
        QTRY_VERIFY(!view()->isVisible());
        m_window->button(Command::Present)->click();
        QVERIFY(!view());
        xrandr({"--output", "DUMMY1", "--mode", "1024x768", "--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
        QVERIFY(!view());
    }

    void anotherResolutionIsFilledToo()
    {
        plug("DUMMY1", "800x600", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(view()->geometry(), QRect(1280, 0, 800, 600));
    }

    void theMainWindowOverItSendsItToTheOther()
    {
        m_window->move(1300, 10);
        QTRY_COMPARE(view()->geometry(), QRect(0, 0, 1280, 1024));
    }

    void theChosenScreenIsTakenAndRemembered()
    {
        plug("DUMMY2", "1024x768", {"--below", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 3);
        m_window->presentation()->setScreen("DUMMY2");
        QTRY_COMPARE(view()->geometry(), QRect(QPoint(0, 1024), CLASS_SCREEN));
        m_window->button(Command::Present)->click();
        m_window->button(Command::Present)->click();
        QTRY_COMPARE(view()->geometry(), QRect(QPoint(0, 1024), CLASS_SCREEN));
        QCOMPARE(Presentation::screen(), QString("DUMMY2"));
    }
};

REGISTER_TEST(PresentationScreensTest)

#include "tst_presentation_screens.moc"
