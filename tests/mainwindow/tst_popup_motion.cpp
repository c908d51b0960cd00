#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/mainwindow/ScreenWatch.h"
#include "tests/mainwindow/WindowProbe.h"
#include "widgets/ImageButton.h"

#include <QElapsedTimer>
#include <QScreen>
#include <QtTest>

using namespace WindowProbe;

Q_DECLARE_METATYPE(Command)

namespace
{

/// The first pixel of that area that is neither as before nor as after.
QString strayPixel(const QImage &picture, const QImage &before, const QImage &after,
                   const QRect &area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto line = [y](const QImage &image) {
            return reinterpret_cast<const QRgb *>(image.constScanLine(y));
        };
        const QRgb *seen = line(picture), *earlier = line(before), *later = line(after);
        for (int x = area.left(); x <= area.right(); ++x) {
            // The bits of a screen pixel that are no colour mean nothing.
            if (((seen[x] ^ earlier[x]) & RGB_MASK) && ((seen[x] ^ later[x]) & RGB_MASK))
                return QString("%1 at %2, %3").arg(QColor(seen[x]).name()).arg(x).arg(y);
        }
    }
    return {};
}

} // namespace

/// What the display server shows while a pop-up comes and goes.
class PopupMotionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        usualSettings();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        enter(*m_window, Modes::DrawingBoard);
        // That there is no camera is said after a while, and would change what is on the screen.
        QTRY_VERIFY_WITH_TIMEOUT(m_window->button(Command::More)->isMarked(), TIMEOUT_MS);
    }
    void cleanupTestCase() { m_window.reset(); }

    void aPopUpComesAndGoesAtOnce_data()
    {
        QTest::addColumn<Command>("command");
        QTest::newRow("line") << Command::Line;
        QTest::newRow("text") << Command::Text;
        QTest::newRow("mask") << Command::Mask;
        QTest::newRow("fill") << Command::FillBackground;
        QTest::newRow("more") << Command::More;
        QTest::newRow("about") << Command::About;
    }

    void aPopUpComesAndGoesAtOnce()
    {
        QFETCH(Command, command);
        const QRect screen = m_window->screen()->geometry();
        const QImage before = settled([] { return true; });
        ScreenWatch coming(screen);
        QTRY_VERIFY(coming.taken() > 0);
        open(command);
        ToolWindow *popup = m_window->currentToolWindow();
        QVERIFY(popup);
        const QImage own = popup->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QImage after = settled([&] { return shown().copy(popup->geometry()) == own; });
        QVERIFY2(after.copy(popup->geometry()) == own, "it is never painted");
        QVERIFY(coming.taken() > 1);
        const QVector<QImage> pictures = coming.end();
        check(pictures, before, after, popup->geometry());
        for (const QImage &picture : pictures) {
            const QImage part = picture.copy(popup->geometry());
            QVERIFY2(part == before.copy(popup->geometry()) || part == own, "it is half painted");
        }
        ScreenWatch going(screen);
        QTRY_VERIFY(going.taken() > 0);
        const QRect place = popup->geometry();
        popup->close();
        const QImage gone = settled([&] { return shown().copy(place) != own; });
        // What was behind it may come back in parts, as two programs paint it.
        check(going.end(), after, gone, place);
    }

private:
    void open(Command command)
    {
        if (command == Command::More || command == Command::About)
            m_window->button(command)->click();
        else
            emit m_window->button(command)->hold();
    }

    QImage shown() const
    {
        return m_window->screen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    }

    /// The screen when that holds and nothing has changed for a while: what other programs show
    /// there may come late.
    template <class Condition>
    QImage settled(const Condition &holds) const
    {
        constexpr qint64 STILL_MS = 200;
        QImage last;
        QElapsedTimer still;
        (void)QTest::qWaitFor(
            [&] {
                const QImage now = shown();
                if (now != last)
                    still.start();
                last = now;
                return still.elapsed() >= STILL_MS && holds();
            },
            10000);
        return last;
    }

    /// The window manager paints the frame of the window when it likes.
    void check(const QVector<QImage> &pictures, const QImage &before, const QImage &after,
               const QRect &popup)
    {
        const QRect screen(QPoint(0, 0), before.size());
        for (const QImage &picture : pictures) {
            for (const QRect &own : {m_window->geometry() & screen, popup & screen}) {
                const QString stray = strayPixel(picture, before, after, own);
                QVERIFY2(stray.isEmpty(), qPrintable(stray));
            }
        }
    }

    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(PopupMotionTest)
#include "tst_popup_motion.moc"
