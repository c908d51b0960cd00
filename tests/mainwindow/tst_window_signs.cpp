#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasMessage.h"
#include "mainwindow/EmptyScreen.h"
#include "mainwindow/RecordingSign.h"
#include "sources/FilmSource.h"

#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/canvas/CanvasPointers.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QScreen>
#include <QSlider>

using namespace WindowProbe;

namespace
{

/// All sliders of the two bars are shown when their mode is entered.
void openSliders(const MainWindow &window)
{
    enter(window, 1);
    window.button(Command::FilmVolume)->click();
    enter(window, 2);
    for (const Command command : {Command::Thumbnails, Command::SlideshowInterval})
        window.button(command)->click();
}

QRect placeOf(const QWidget &widget)
{
    return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

/// How many bright pixels a canvas shows within its edge and beside that place.
int brightPixelsBeside(ImageCanvas *canvas, const QRect &place)
{
    const QImage shown = canvas->grab().toImage();
    const QRect inner = shown.rect().adjusted(4, 4, -4, -4);
    int count = 0;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        for (int x = inner.left(); x <= inner.right(); ++x)
            count += !place.contains(x, y) && qGray(shown.pixel(x, y)) > 100;
    }
    return count;
}

/// Around what is bright within a canvas's edge.
QRect brightPlace(ImageCanvas *canvas)
{
    const QImage shown = canvas->grab().toImage();
    const QRect inner = shown.rect().adjusted(4, 4, -4, -4);
    QRect place;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        for (int x = inner.left(); x <= inner.right(); ++x) {
            if (qGray(shown.pixel(x, y)) > 100)
                place |= QRect(x, y, 1, 1);
        }
    }
    return place;
}

bool isControl(const QWidget *widget)
{
    return widget->isVisible() &&
           (qobject_cast<const ImageButton *>(widget) || qobject_cast<const QComboBox *>(widget) ||
            qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QSlider *>(widget) ||
            qobject_cast<const HorizontalSlider *>(widget));
}

QWidgetList controlsOf(const QWidget &window)
{
    QWidgetList controls;
    for (QWidget *each : window.findChildren<QWidget *>()) {
        if (isControl(each) && each->window() == &window)
            controls << each;
    }
    return controls;
}

/// Shows the tip of every control of a window and returns how many there are, or -1 when one of
/// them covers a control.
int checkTips(const QWidget &window)
{
    int tips = 0;
    const QWidgetList controls = controlsOf(window);
    for (QWidget *control : controls) {
        const auto *button = qobject_cast<const ImageButton *>(control);
        if ((button ? button->tip() : control->toolTip()).isEmpty())
            continue;
        ++tips;
        const QPoint middle = control->rect().center();
        QHelpEvent event(QEvent::ToolTip, middle, control->mapToGlobal(middle));
        QCoreApplication::sendEvent(control, &event);
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto tip = std::find_if(all.begin(), all.end(), [](const QWidget *each) {
            return each->isVisible() && each->inherits("QTipLabel");
        });
        if (tip == all.end()) {
            qWarning("no tip at %s", qPrintable(control->accessibleName()));
            return -1;
        }
        for (const QWidget *other : controls) {
            if (!placeOf(*other).intersects((*tip)->geometry()))
                continue;
            qWarning("the tip of %s covers %s", qPrintable(control->accessibleName()),
                     qPrintable(other->accessibleName()));
            return -1;
        }
        (*tip)->hide();
    }
    return tips;
}

} // namespace

/// What the window says beside its pictures: what to do while there is none, and that a recording
/// runs; and that a press on the picture closes what lies over it.
class WindowSignsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { usualSettings(); }
    void anEmptyModeSaysWhatToDo_data();
    void anEmptyModeSaysWhatToDo();
    void theEmptyScreenFollowsItsCanvas();
    void aStrokeEndsTheEmptyScreen();
    void aMessageStandsAloneOnTheEmptyScreen_data();
    void aMessageStandsAloneOnTheEmptyScreen();
    void aFilmThatCannotBeOpenedLeavesTheEmptyScreen();
    void nothingOfItIsInThePicture();
    void aRecordingIsSeenOnTheTabAndInTheTitle();
    void aPressOnTheCanvasClosesThePopUp();
    void aPenAndAFingerCloseThePopUpToo();
    void everySliderHasATip();
    void aTipCoversNoNeighbour();
};

void WindowSignsTest::anEmptyModeSaysWhatToDo_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("line");
    QTest::newRow("film") << 1 << "Open a film";
    QTest::newRow("photograph") << 2 << "Open a picture of a folder";
}

void WindowSignsTest::anEmptyModeSaysWhatToDo()
{
    QFETCH(int, mode);
    QFETCH(QString, line);
    MainWindow window;
    window.show();
    enter(window, mode);
    auto *screen = window.currentCanvas()->findChild<EmptyScreen *>();
    QVERIFY(screen->isVisible());
    QCOMPARE(screen->accessibleName(), line);
    QVERIFY(screen->testAttribute(Qt::WA_TransparentForMouseEvents));
    // A pictogram stands where the start picture has its lamp, on black.
    const QImage shown = window.currentCanvas()->grab().toImage();
    const QImage start = QImage(":/icons/Background/MAIN_WINDOWS.png");
    const QColor arm = start.pixelColor(440, 300);
    const double scale = window.currentCanvas()->width() / 1280.0;
    const int top = (shown.height() - qRound(720 * scale)) / 2;
    QVERIFY(shown.pixelColor(qRound(440 * scale), top + qRound(300 * scale)) != arm);

    QImage picture(640, 360, QImage::Format_RGB888);
    picture.fill(Qt::green);
    window.currentCanvas()->imageCaptured(picture);
    QTRY_VERIFY(!screen->isVisible());
    QCOMPARE(window.currentCanvas()->grab().toImage().pixelColor(shown.rect().center()),
             QColor(Qt::green));
}

void WindowSignsTest::theEmptyScreenFollowsItsCanvas()
{
    MainWindow window;
    window.show();
    enter(window, 1);
    ImageCanvas *canvas = window.currentCanvas();
    int width = 0;
    for (const QSize &size : {QSize(1000, 800), QSize(1500, 1100), QSize(1000, 800)}) {
        window.resize(size);
        QCoreApplication::processEvents();
        const QRect sign = brightPlace(canvas);
        QVERIFY(std::abs(2 * sign.center().x() - canvas->width()) <= 4);
        QVERIFY(canvas->rect().contains(sign));
        // Pictogram and letters grow with the canvas, and shrink again.
        QVERIFY(sign.width() != width);
        width = sign.width();
    }
}

void WindowSignsTest::aStrokeEndsTheEmptyScreen()
{
    MainWindow window;
    window.show();
    enter(window, 1);
    ImageCanvas *canvas = window.currentCanvas();
    auto *screen = canvas->findChild<EmptyScreen *>();
    QVERIFY(screen->isVisible());
    canvas->setMouseMode(ImageCanvas::Line);
    QTest::mousePress(canvas, Qt::LeftButton, {}, {100, 100});
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, {100, 100});
    QTRY_VERIFY(!screen->isVisible());
}

void WindowSignsTest::aMessageStandsAloneOnTheEmptyScreen_data()
{
    anEmptyModeSaysWhatToDo_data();
}

void WindowSignsTest::aMessageStandsAloneOnTheEmptyScreen()
{
    QFETCH(int, mode);
    MainWindow window;
    window.show();
    enter(window, mode);
    ImageCanvas *canvas = window.currentCanvas();
    auto *message = canvas->findChild<CanvasMessage *>();
    const int bright = brightPixelsBeside(canvas, {});
    QVERIFY(bright > 0);
    message->pass("It is damaged.");
    QCOMPARE(brightPixelsBeside(canvas, message->geometry()), 0);
    message->pass({});
    QCOMPARE(brightPixelsBeside(canvas, {}), bright);
}

void WindowSignsTest::aFilmThatCannotBeOpenedLeavesTheEmptyScreen()
{
    MainWindow window;
    window.show();
    enter(window, 1);
    ImageCanvas *canvas = window.currentCanvas();
    auto *screen = canvas->findChild<EmptyScreen *>();
    auto *message = canvas->findChild<CanvasMessage *>();
    QImage picture(640, 360, QImage::Format_RGB888);
    picture.fill(Qt::green);
    canvas->imageCaptured(picture);
    QTRY_VERIFY(!screen->isVisible());

    window.findChild<FilmSource *>()->setFile("/nonexistent/film.mp4");
    QTRY_VERIFY_WITH_TIMEOUT(message->isVisible(), TIMEOUT_MS);
    QVERIFY(screen->isVisible());
    QCOMPARE(brightPixelsBeside(canvas, message->geometry()), 0);
    message->pass({});
    QVERIFY(brightPixelsBeside(canvas, {}) > 0);

    canvas->imageCaptured(picture);
    QTRY_VERIFY(!screen->isVisible());
}

void WindowSignsTest::nothingOfItIsInThePicture()
{
    MainWindow window;
    window.show();
    enter(window, 1);
    const QImage start =
        QImage(":/icons/Background/MAIN_WINDOWS.png").convertToFormat(QImage::Format_RGB888);
    QCOMPARE(window.currentCanvas()->currentImage(), start);
}

void WindowSignsTest::aRecordingIsSeenOnTheTabAndInTheTitle()
{
    QWidget window;
    window.setWindowTitle("Lesson");
    ImageButton tab("ICON_LIVE_RECORDING", &window, 0, 0);
    tab.setFixedSize(105, 20);
    RecordingSign sign(&tab);
    window.show();
    QVERIFY(!sign.isVisible());
    sign.start();
    QVERIFY(sign.isVisible());
    QCOMPARE(window.windowTitle(), QString::fromUtf8("\u25CF 00:00:00 \u2013 Lesson"));
    QTRY_COMPARE(window.windowTitle(), QString::fromUtf8("\u25CF 00:00:01 \u2013 Lesson"));
    const QPoint middle = sign.geometry().center();
    const QColor dot = tab.grab().toImage().pixelColor(middle);
    QVERIFY(dot.red() > 180 && dot.green() < 80);
    sign.setPaused(true);
    const QString held = window.windowTitle();
    QVERIFY2(held.startsWith(QString::fromUtf8("\u2016 00:00:0")), qPrintable(held));
    QVERIFY(tab.grab().toImage().pixelColor(middle) == QColor(Qt::white));
    QVERIFY(!QTest::qWaitFor([&] { return window.windowTitle() != held; }, 1300));
    sign.setPaused(false);
    QTRY_VERIFY(window.windowTitle() > held);
    sign.stop();
    QVERIFY(!sign.isVisible());
    QCOMPARE(window.windowTitle(), QString("Lesson"));
}

void WindowSignsTest::aPressOnTheCanvasClosesThePopUp()
{
    MainWindow window;
    window.show();
    window.lineHold();
    QVERIFY(window.currentToolWindow() != nullptr);
    ImageCanvas *canvas = window.currentCanvas();
    canvas->penColor = Qt::red;
    QTest::mousePress(canvas, Qt::LeftButton, {}, {300, 300});
    QVERIFY(window.currentToolWindow() == nullptr);
    // The press draws as ever.
    QTest::mouseMove(canvas, {400, 300});
    QMouseEvent move(QEvent::MouseMove, QPointF(400, 300), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &move);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, {400, 300});
    canvas->autoRefresh();
    const QImage start =
        QImage(":/icons/Background/MAIN_WINDOWS.png").convertToFormat(QImage::Format_RGB888);
    QVERIFY(canvas->currentImage() != start);
}

void WindowSignsTest::aPenAndAFingerCloseThePopUpToo()
{
    MainWindow window;
    window.show();
    window.lineHold();
    QVERIFY(window.currentToolWindow() != nullptr);
    CanvasPointers::pen(*window.currentCanvas(), QEvent::TabletPress, {300, 300});
    QVERIFY(window.currentToolWindow() == nullptr);
    CanvasPointers::pen(*window.currentCanvas(), QEvent::TabletRelease, {300, 300});
    window.lineHold();
    QVERIFY(window.currentToolWindow() != nullptr);
    CanvasPointers::Hand(*window.currentCanvas()).press(0, {300, 300}, 5000);
    QVERIFY(window.currentToolWindow() == nullptr);
}

void WindowSignsTest::everySliderHasATip()
{
    MainWindow window;
    window.show();
    openSliders(window);
    int sliders = 0;
    for (const QWidget *each : window.findChildren<QWidget *>()) {
        if (!qobject_cast<const QSlider *>(each) && !qobject_cast<const HorizontalSlider *>(each))
            continue;
        ++sliders;
        QVERIFY2(!each->accessibleName().isEmpty(), each->metaObject()->className());
        QCOMPARE(each->toolTip(), each->accessibleName());
    }
    QCOMPARE(sliders, 4);
}

void WindowSignsTest::aTipCoversNoNeighbour()
{
    MainWindow window;
    window.show();
    // A bar then stands at the very edge, as in a window that fills the screen.
    window.move(0, window.screen()->geometry().bottom() + 1 - window.height());
    openSliders(window);
    int tips = 0;
    for (int mode = 0; mode < modes().size(); ++mode) {
        enter(window, mode);
        if (mode == 1)
            window.button(Command::FilmVolume)->click();
        if (mode == 2)
            openSliders(window);
        tips += checkTips(window);
    }
    QVERIFY2(tips > 100, qPrintable(QString::number(tips)));
    enter(window, 0);
    for (const Command command :
         {Command::Rectangle, Command::Text, Command::Mask, Command::Effect}) {
        emit window.button(command)->hold();
        QVERIFY(checkTips(*window.currentToolWindow()) > 3);
    }
    window.settings();
    QVERIFY(checkTips(*window.currentToolWindow()) > 2);
    window.more();
    QVERIFY(checkTips(*window.currentToolWindow()) > 0);
}

REGISTER_TEST(WindowSignsTest)
#include "tst_window_signs.moc"
