#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QPainter>
#include <QScreen>

#include <thread>

using namespace WindowProbe;

namespace
{

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

/// How pictures come into the window for the class.
class PresentationPictureTest : public PresentationProbe
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
};

REGISTER_TEST(PresentationPictureTest)

#include "tst_presentation_picture.moc"
