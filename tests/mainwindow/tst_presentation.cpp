#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QFileInfo>
#include <QHoverEvent>
#include <QTextEdit>

using namespace WindowProbe;

/// The window for the class, beside a main window without a second screen.
class PresentationTest : public PresentationProbe
{
    Q_OBJECT

private slots:
    void initTestCase() { nameTheProgram(); }

    void init() { showWindow(); }

    void cleanup()
    {
        m_window.reset();
        QFile::remove(Preferences::fileName());
    }

    void thereIsNoneUntilItIsAskedFor()
    {
        QVERIFY(!view());
        QVERIFY(m_window->button(Command::HoldPresentation)->isGray());
        QVERIFY(m_window->button(Command::BlankPresentation)->isGray());
        open();
        QCOMPARE(view()->size(), QSize(960, 540));
        QVERIFY(m_window->button(Command::Present)->isChecked());
        QVERIFY(!m_window->button(Command::HoldPresentation)->isGray());
        m_window->button(Command::Present)->click();
        QVERIFY(!view());
        QVERIFY(!QFileInfo::exists(Preferences::fileName()));
    }

    void keysOpenAndCloseIt_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("F5") << int(Qt::Key_F5);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }

    void keysOpenAndCloseIt()
    {
        QFETCH(int, key);
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QVERIFY(view());
        QTest::keyClick(m_window.get(), Qt::Key(key));
        QVERIFY(!view());
        // And in the window itself.
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTest::keyClick(view(), Qt::Key(key));
        QTRY_VERIFY(!view());
        QVERIFY(!m_window->button(Command::Present)->isChecked());
    }

    void escapeClosesWhatLiesOnTopFirst()
    {
        open();
        m_window->button(Command::About)->click();
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(view());
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(!view());
    }

    void itsCloseButtonClosesIt()
    {
        open();
        view()->close();
        QTRY_VERIFY(!view());
        QVERIFY(m_window->isVisible());
    }

    void heldItKeepsThePictureInEveryMode()
    {
        open();
        view()->resize(PICTURE);
        m_window->currentCanvas()->imageCaptured(pattern(1));
        QTest::keyClick(m_window.get(), Qt::Key_F5, Qt::ShiftModifier);
        QVERIFY(m_window->button(Command::HoldPresentation)->isChecked());
        m_window->currentCanvas()->imageCaptured(pattern(2));
        QCOMPARE(shown(*view()), pattern(1));
        enter(*m_window, 3);
        m_window->currentCanvas()->imageCaptured(pattern(3));
        QCOMPARE(shown(*view()), pattern(1));
        QTest::keyClick(m_window.get(), Qt::Key_F5, Qt::ShiftModifier);
        QCOMPARE(shown(*view()), pattern(3));
        QVERIFY(!m_window->button(Command::HoldPresentation)->isChecked());
    }

    void blankIsBlackThereAlone_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("B") << int(Qt::Key_B);
        QTest::newRow("period") << int(Qt::Key_Period);
    }

    void blankIsBlackThereAlone()
    {
        QFETCH(int, key);
        open();
        view()->resize(PICTURE);
        ImageCanvas *canvas = m_window->currentCanvas();
        canvas->imageCaptured(pattern(4));
        QTest::keyClick(m_window.get(), Qt::Key(key));
        QImage black(PICTURE, QImage::Format_RGB888);
        black.fill(Qt::black);
        QCOMPARE(shown(*view()), black);
        QCOMPARE(canvas->currentImage(), pattern(4));
        QVERIFY(m_window->button(Command::BlankPresentation)->isChecked());
        QTest::keyClick(m_window.get(), Qt::Key(key));
        QCOMPARE(shown(*view()), pattern(4));
    }

    void whatIsOnIsSeenOnTheNarrowestCard()
    {
        m_window->resize(800, 768);
        open();
        QVERIFY(m_window->button(Command::Present)->isVisible());
        QTest::keyClick(m_window.get(), Qt::Key_B);
        QVERIFY(m_window->button(Command::BlankPresentation)->isVisible());
        QVERIFY(m_window->button(Command::More)->isVisible());
        m_window->button(Command::Present)->click();
        QVERIFY(!m_window->button(Command::BlankPresentation)->isVisible());
        QVERIFY(m_window->button(Command::Undo)->isVisible());
    }

    void aTextIsSeenWhileItIsTyped()
    {
        open();
        ImageCanvas *canvas = m_window->currentCanvas();
        QImage white(PICTURE, QImage::Format_RGB888);
        white.fill(Qt::white);
        canvas->imageCaptured(white);
        view()->resize(canvas->picturePlace().size());
        m_window->button(Command::Text)->click();
        canvas->setTextColor(Qt::red);
        canvas->setFontSize(40);
        const QPoint corner = canvas->picturePlace().topLeft() + QPoint(60, 80);
        CanvasMouse::click(*canvas, corner);
        QVERIFY(redArea(shown(*view())).isEmpty());
        QTest::keyClicks(canvas->findChild<QTextEdit *>(), "Hg");
        const QRect typed = redArea(shown(*view()));
        QVERIFY(typed.width() > 20 && typed.height() > 20);
        QVERIFY2(QRect(60, 80, 120, 90).contains(typed),
                 qPrintable(QString("%1 %2").arg(typed.x()).arg(typed.y())));
        // At its place in another size, too.
        view()->resize(view()->size() / 2);
        const QRect smaller = redArea(shown(*view()));
        QVERIFY(std::abs(smaller.x() - typed.x() / 2) <= 2);
        QVERIFY(std::abs(smaller.y() - typed.y() / 2) <= 2);
        QVERIFY(std::abs(smaller.width() - typed.width() / 2) <= 2);
    }

    void aHeldTextStaysWhileTheTeacherWritesOn()
    {
        open();
        enter(*m_window, 3);
        m_window->button(Command::Text)->click();
        ImageCanvas *canvas = m_window->currentCanvas();
        CanvasMouse::click(*canvas, {200, 200});
        auto *editor = canvas->findChild<QTextEdit *>();
        QTest::keyClicks(editor, "one");
        m_window->button(Command::HoldPresentation)->click();
        const QImage held = shown(*view());
        QTest::keyClicks(editor, " and two");
        QCOMPARE(shown(*view()), held);
        m_window->button(Command::HoldPresentation)->click();
        QVERIFY(shown(*view()) != held);
    }

    void theRingFollowsThePointerOverThePicture()
    {
        open();
        ImageCanvas *canvas = m_window->currentCanvas();
        canvas->imageCaptured(pattern(5));
        const QImage without = shown(*view());
        const auto pointAt = [canvas](QPoint point, QEvent::Type type = QEvent::HoverMove) {
            QHoverEvent event(type, point, point);
            QCoreApplication::sendEvent(canvas, &event);
        };
        const QRect place = canvas->picturePlace();
        pointAt(place.center());
        const QImage with = shown(*view());
        QVERIFY(with != without);
        QPoint middle;
        int changed = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                if (with.pixel(x, y) == without.pixel(x, y))
                    continue;
                middle += QPoint(x, y);
                ++changed;
            }
        }
        middle /= changed;
        QVERIFY((middle - with.rect().center()).manhattanLength() <= 4);
        pointAt(place.center(), QEvent::HoverLeave);
        QCOMPARE(shown(*view()), without);
        pointAt(place.center());
        presentation().setShowsPointer(false);
        QCOMPARE(shown(*view()), without);
        presentation().setShowsPointer(true);
        QCOMPARE(shown(*view()), with);
    }

    void itGoesOnWhileTheMainWindowIsMinimised()
    {
        open();
        view()->resize(PICTURE);
        m_window->showMinimized();
        m_window->currentCanvas()->imageCaptured(pattern(6));
        QVERIFY(view()->isVisible());
        QCOMPARE(shown(*view()), pattern(6));
    }

    void keysPressedInItAreTheMainWindows()
    {
        open();
        QTest::keyClick(view(), Qt::Key_L);
        QVERIFY(m_window->button(Command::Line)->isChecked());
        QTest::keyClick(view(), Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(m_window->currentMode(), 2);
    }

    void whenTickedItOpensWithTheProgram()
    {
        presentation().setOpensAtStart(true);
        m_window = std::make_unique<MainWindow>();
        QVERIFY(!view());
        m_window->show();
        QTRY_VERIFY(view());
        QVERIFY(m_window->button(Command::Present)->isChecked());
        m_window->button(Command::Present)->click();
        QVERIFY(!view());
        m_window->hide();
        m_window->show();
        QCoreApplication::processEvents();
        QVERIFY(!view());
    }

    void theProgramEndsWithItOpen()
    {
        open();
        m_window.reset();
        QVERIFY(!view());
    }

private:
    static QRect redArea(const QImage &image)
    {
        QRect area;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.red() > 200 && color.green() < 100)
                    area |= QRect(x, y, 1, 1);
            }
        }
        return area;
    }
};

REGISTER_TEST(PresentationTest)

#include "tst_presentation.moc"
