#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QFileInfo>
#include <QHoverEvent>
#include <QPainter>
#include <QScreen>
#include <QTextEdit>

#include <thread>

using namespace WindowProbe;

namespace
{

constexpr QSize PICTURE(320, 240);

QImage pattern(int seed)
{
    QImage image(PICTURE, QImage::Format_RGB888);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb((x * 7 + seed) % 256, (y * 5 + 3 * seed) % 256, x * y % 256));
    }
    return image;
}

/// What the window's pixels become.
QImage shown(QWidget &view)
{
    QImage pixels(view.size(), QImage::Format_RGB32);
    pixels.fill(Qt::magenta);
    view.render(&pixels);
    return pixels.convertToFormat(QImage::Format_RGB888);
}

/// What is painted, in its order.
struct PaintOrder : QObject {
    PaintOrder() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted << watched;
        return false;
    }
    QList<QObject *> painted;
};

} // namespace

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

    void itShowsEveryModesPictureAndNothingElse()
    {
        open();
        // The mouse that draws is a pointer over the picture.
        presentation().setShowsPointer(false);
        view()->resize(PICTURE);
        for (int mode = 0; mode < Modes::COUNT; ++mode) {
            enter(*m_window, mode);
            ImageCanvas *canvas = m_window->currentCanvas();
            canvas->imageCaptured(pattern(mode));
            canvas->setMouseMode(ImageCanvas::Line);
            canvas->penColor = Qt::red;
            CanvasMouse::drag(*canvas, {QPoint(canvas->width() / 3, canvas->height() / 3),
                                        QPoint(canvas->width() / 2, canvas->height() / 2)});
            canvas->autoRefresh();
            m_window->button(Command::Effect)->click();
            QCOMPARE(shown(*view()), canvas->currentImage());
            QVERIFY(canvas->currentImage() != pattern(mode));
            canvas->rotate();
            canvas->autoRefresh();
            view()->resize(canvas->currentImage().size());
            QCOMPARE(shown(*view()), canvas->currentImage());
            view()->resize(PICTURE);
        }
    }

    void framesOfAnotherThreadAreShown()
    {
        open();
        view()->resize(PICTURE);
        ImageCanvas *canvas = m_window->currentCanvas();
        std::thread camera([canvas] {
            for (int i = 0; i < 50; ++i)
                canvas->imageCaptured(pattern(i));
        });
        camera.join();
        QTRY_COMPARE(shown(*view()), pattern(49));
    }

    void whereItsPixelsCannotBeReachedItShowsTheSame()
    {
        open();
        presentation().setShowsPointer(false);
        m_window->currentCanvas()->imageCaptured(pattern(8));
        const QImage expected = shown(*view());
        // Pixels of three bytes, which no scaler writes.
        QImage packed(view()->size(), QImage::Format_RGB888);
        packed.fill(Qt::magenta);
        view()->render(&packed);
        QCOMPARE(packed, expected);
        QCOMPARE(expected.pixelColor(1, 1), QColor(Qt::black));
    }

    void aPartThatIsPaintedAloneIsThatOfTheWhole()
    {
        open();
        view()->resize(801, 601);
        m_window->currentCanvas()->imageCaptured(pattern(9));
        const QImage whole = shown(*view());
        for (const QRect &part : {QRect(0, 0, 801, 1), QRect(333, 77, 51, 40), QRect(1, 1, 1, 600),
                                  QRect(700, 500, 101, 101)}) {
            QImage pixels(view()->size(), QImage::Format_RGB32);
            pixels.fill(Qt::magenta);
            QImage expected = pixels;
            QPainter(&expected).drawImage(part.topLeft(), whole, part);
            view()->render(&pixels, part.topLeft(), part);
            QCOMPARE(pixels, expected);
        }
    }

    void aNarrowerPictureLeavesNothingOfTheOneBefore()
    {
        open();
        presentation().setShowsPointer(false);
        view()->resize(PICTURE);
        const auto onScreen = [this](QPoint point) {
            const QImage screen = view()->screen()->grabWindow(view()->winId()).toImage();
            return screen.pixelColor(point);
        };
        const QPoint left(10, PICTURE.height() / 2), middle(PICTURE.width() / 2, left.y());
        QImage picture(PICTURE, QImage::Format_RGB888);
        picture.fill(Qt::white);
        m_window->currentCanvas()->imageCaptured(picture);
        QTRY_COMPARE(onScreen(left), QColor(Qt::white));
        picture = picture.copy(0, 0, 120, PICTURE.height());
        picture.fill(Qt::yellow);
        m_window->currentCanvas()->imageCaptured(picture);
        QTRY_COMPARE(onScreen(middle), QColor(Qt::yellow));
        QCOMPARE(onScreen(left), QColor(Qt::black));
    }

    void theTeachersCanvasIsPaintedFirst()
    {
        open();
        QVERIFY(QTest::qWaitForWindowExposed(view()));
        ImageCanvas *canvas = m_window->currentCanvas();
        // No timer comes between, such as that of the standing picture. What an event posts in turn
        // is sent the next time.
        const auto paintAll = [] {
            for (int i = 0; i < 3; ++i)
                QCoreApplication::sendPostedEvents();
        };
        paintAll();
        PaintOrder order;
        // As a camera's frames come.
        std::thread([canvas] { canvas->imageCaptured(pattern(7)); }).join();
        paintAll();
        QVERIFY(order.painted.contains(view()) && order.painted.contains(canvas));
        QVERIFY(order.painted.indexOf(canvas) < order.painted.indexOf(view()));
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
    void open()
    {
        m_window->button(Command::Present)->click();
        QVERIFY(view() && view()->isVisible());
    }

    Presentation &presentation() { return *m_window->presentation(); }

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
