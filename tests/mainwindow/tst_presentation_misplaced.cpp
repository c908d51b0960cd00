#include "mainwindow/presentation/Presentation.h"

#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/Outputs.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QFile>
#include <QScreen>

namespace
{

constexpr QRect MISPLACED_AT(0, 0, 1280, 1024);
constexpr QRect WANTED_AT(1280, 0, 1024, 768);
/// The program looks twice within that time.
constexpr int LOOKS_MS = 1500;

/// What the window manager has written.
QString managerFile()
{
    return qEnvironmentVariable("HOME") + "/wm-runs";
}

QList<QByteArray> placesGiven()
{
    QFile log(managerFile());
    return log.open(QIODevice::ReadOnly) ? log.readAll().trimmed().split('\n')
                                         : QList<QByteArray>();
}

} // namespace

/// The window for the class under a window manager that puts it on the main window's screen.
class PresentationMisplacedTest : public PresentationProbe
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        nameTheProgram();
        Outputs::plug("DUMMY1", "1024x768", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
        showWindow();
    }
    void cleanupTestCase()
    {
        m_window.reset();
        QFile::remove(Preferences::fileName());
    }

    void init() { QFile::resize(managerFile(), 0); }
    void cleanup()
    {
        if (view())
            m_window->button(Command::Present)->click();
        QFile::remove(managerFile() + ".stubborn");
    }

    void itIsPutRightOnce()
    {
        m_window->button(Command::Present)->click();
        QTRY_COMPARE(placesGiven(), (QList<QByteArray>{"wrong", "right"}));
        QTRY_COMPARE(view()->geometry(), WANTED_AT);
        QTRY_VERIFY(view()->isFullScreen());
        // The teacher goes on in the main window.
        QTRY_VERIFY(m_window->isActiveWindow());
        QTest::qWait(LOOKS_MS);
        QCOMPARE(placesGiven().size(), 2);
    }

    void withAStubbornOneItDoesNotFight()
    {
        QFile stubborn(managerFile() + ".stubborn");
        QVERIFY(stubborn.open(QIODevice::WriteOnly));
        m_window->button(Command::Present)->click();
        QTRY_COMPARE(placesGiven(), (QList<QByteArray>{"wrong", "wrong"}));
        QTest::qWait(LOOKS_MS);
        QCOMPARE(placesGiven().size(), 2);
        QCOMPARE(view()->geometry(), MISPLACED_AT);
    }
};

REGISTER_TEST(PresentationMisplacedTest)

#include "tst_presentation_misplaced.moc"
