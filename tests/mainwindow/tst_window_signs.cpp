#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/EmptyScreen.h"
#include "mainwindow/RecordingSign.h"

#include "tests/TestProgram.h"

#include <QPushButton>
#include <QScreen>

using namespace WindowProbe;

/// What the window says beside its pictures: what to do while there is none, and that a recording
/// runs; and that a press on the picture closes what lies over it.
class WindowSignsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { usualSettings(); }
    void anEmptyModeSaysWhatToDo_data();
    void anEmptyModeSaysWhatToDo();
    void aStrokeEndsTheEmptyScreen();
    void nothingOfItIsInThePicture();
    void aRecordingIsSeenOnTheTabAndInTheTitle();
    void aPressOnTheCanvasClosesThePopUp();
    void aTipCoversNoNeighbour_data();
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
    QPushButton tab(&window);
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

void WindowSignsTest::aTipCoversNoNeighbour_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("name");
    QTest::newRow("panel") << 0 << "Line";
    QTest::newRow("bar") << 1 << "Play";
}

void WindowSignsTest::aTipCoversNoNeighbour()
{
    QFETCH(int, mode);
    QFETCH(QString, name);
    MainWindow window;
    window.show();
    // A bar then stands at the very edge, as in a window that fills the screen.
    window.move(0, window.screen()->geometry().bottom() + 1 - window.height());
    enter(window, mode);
    ImageButton *tool = button(window, name);
    QHelpEvent event(QEvent::ToolTip, tool->rect().center(),
                     tool->mapToGlobal(tool->rect().center()));
    QCoreApplication::sendEvent(tool, &event);
    const auto isTip = [](const QWidget *widget) {
        return widget->isVisible() && widget->inherits("QTipLabel");
    };
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto tip = std::find_if(all.begin(), all.end(), isTip);
    QVERIFY(tip != all.end());
    const QWidget *holder = tool->parentWidget();
    const QRect covered(holder->mapToGlobal(QPoint(0, 0)), holder->size());
    QVERIFY(!(*tip)->geometry().intersects(covered));
    (*tip)->hide();
}

REGISTER_TEST(WindowSignsTest)
#include "tst_window_signs.moc"
