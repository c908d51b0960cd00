#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "canvas/picture/Frame.h"
#include "canvas/picture/ScreenScaler.h"
#include "canvas/picture/ViewGeometry.h"
#include "settings/Preferences.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/ReferencePipeline.h"
#include "tests/mainwindow/Outputs.h"
#include "tests/mainwindow/PresentationProbe.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QProcess>
#include <QScreen>

#include <algorithm>
#include <cstring>

using namespace Outputs;
using namespace WindowProbe;

namespace
{

constexpr QSize CLASS_SCREEN(1024, 768);
constexpr int SERVER_OUTPUTS = 16;

QString output(int number)
{
    return QString("DUMMY%1").arg(number);
}

/// Every pixel of a colour of its own.
QImage map(QSize size)
{
    QImage picture(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixelColor(x, y, QColor(x % 256, y % 256, x / 256 * 16 + y / 256));
    }
    return picture;
}

/// The picture as large as it fits, in the middle of black, mixed by the screen's rule.
QImage asFilling(const QImage &picture, QSize screenSize)
{
    const std::unique_ptr<Frame> frame = Frame::create(picture.size(), picture.format());
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    const ViewGeometry::Fit fit = ViewGeometry::fit(picture.size(), screenSize);
    QImage scaled(fit.size, QImage::Format_RGB32);
    ScreenScaler().scale(
        frame->rows(), {scaled.bits(), scaled.width(), scaled.height(), scaled.bytesPerLine(), 4});
    QImage screen(screenSize, QImage::Format_RGB888);
    screen.fill(Qt::black);
    QPainter(&screen).drawImage(fit.margin, scaled);
    return screen;
}

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
        QStringList off{"--output", "DUMMY0", "--mode", "1280x1024", "--pos", "0x0"};
        for (int i = 1; i < SERVER_OUTPUTS; ++i)
            off << "--output" << output(i) << "--off";
        xrandr(off);
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

    void itShowsWhatASnapshotWould_data()
    {
        QTest::addColumn<QList<QByteArray>>("slotNames");
        QTest::newRow("drawn on") << QList<QByteArray>();
        QTest::newRow("masked") << QList<QByteArray>{"nextMask"};
        QTest::newRow("negative") << QList<QByteArray>{"nextEffect", "nextEffect"};
        QTest::newRow("upside down") << QList<QByteArray>{"rotate", "rotate"};
        QTest::newRow("frozen") << QList<QByteArray>{"freeze"};
        QTest::newRow("turned round, masked, black and white")
            << QList<QByteArray>{"rotate", "rotate", "nextMask", "nextEffect"};
    }

    void itShowsWhatASnapshotWould()
    {
        QFETCH(QList<QByteArray>, slotNames);
        ImageCanvas *canvas = m_window->currentCanvas();
        canvas->imageCaptured(map(CLASS_SCREEN));
        m_window->presentation()->setShowsPointer(false);
        const QPoint middle = canvas->rect().center();
        CanvasMouse::drag(*canvas, {middle, middle + QPoint(30, 50), middle + QPoint(60, 40)});
        for (const QByteArray &each : slotNames)
            QVERIFY(QMetaObject::invokeMethod(m_window.get(), each));
        canvas->autoRefresh();
        const QImage snapshot = canvas->currentImage().convertToFormat(QImage::Format_RGB888);
        QCOMPARE(snapshot.size(), CLASS_SCREEN);
        QVERIFY(snapshot != map(CLASS_SCREEN));
        QTRY_COMPARE(onScreen(*view()->screen()), snapshot);
        canvas->zoomIn();
        QVERIFY(canvas->zoomScale() > canvas->minimumScale());
        canvas->autoRefresh();
        QTRY_COMPARE(onScreen(*view()->screen()),
                     canvas->currentImage().convertToFormat(QImage::Format_RGB888));
    }

    void aPortraitScreenIsFilled()
    {
        QProcess::execute("xrandr", {"--newmode", "768x1024", "80", "768", "800", "900", "1000",
                                     "1024", "1030", "1040", "1060"});
        plug("DUMMY1", "768x1024", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(view()->geometry(), QRect(1280, 0, 768, 1024));
        m_window->currentCanvas()->imageCaptured(map({768, 1024}));
        QTRY_COMPARE(onScreen(*view()->screen()), map({768, 1024}));
    }

    void aScreenOfAnySizeIsFilled_data()
    {
        QTest::addColumn<QSize>("screenSize");
        QTest::addColumn<QSize>("pictureSize");
        QTest::newRow("smallest") << QSize(640, 480) << QSize(640, 480);
        QTest::newRow("smallest, averaged") << QSize(640, 480) << QSize(1600, 1200);
        QTest::newRow("largest") << QSize(3840, 2160) << QSize(3840, 2160);
        QTest::newRow("largest, doubled") << QSize(3840, 2160) << QSize(1920, 1080);
        QTest::newRow("largest, with bars") << QSize(3840, 2160) << QSize(1280, 1024);
    }

    void aScreenOfAnySizeIsFilled()
    {
        QFETCH(QSize, screenSize);
        QFETCH(QSize, pictureSize);
        QProcess::execute("xrandr", {"--newmode", "3840x2160", "80", "3840", "3850", "3900", "4000",
                                     "2160", "2165", "2170", "2200"});
        plug("DUMMY1", QString("%1x%2").arg(screenSize.width()).arg(screenSize.height()),
             {"--right-of", "DUMMY0"});
        QTRY_COMPARE(view()->geometry(), QRect(QPoint(1280, 0), screenSize));
        const QImage picture = ReferencePipeline::noise(pictureSize, QImage::Format_RGB888, 7);
        for (int i = 0; i < 2; ++i) {
            // The second one finds the bars black already.
            const QImage next = i == 0 ? picture.mirrored() : picture;
            m_window->currentCanvas()->imageCaptured(next);
            QTRY_COMPARE(onScreen(*view()->screen()), asFilling(next, screenSize));
        }
    }

    void ofSixteenScreensTheChosenOneIsTaken()
    {
        constexpr int COLUMNS = 8;
        QStringList grid;
        for (int i = 1; i < SERVER_OUTPUTS; ++i) {
            QProcess::execute("xrandr", {"--addmode", output(i), "640x480"});
            grid << "--output" << output(i) << "--mode"
                 << "640x480"
                 << "--pos"
                 << QString("%1x%2")
                        .arg((i - 1) % COLUMNS * 640)
                        .arg(1024 + (i - 1) / COLUMNS * 480);
        }
        xrandr(grid);
        QTRY_COMPARE(QGuiApplication::screens().size(), SERVER_OUTPUTS);
        QTRY_COMPARE(view()->geometry(), QRect(0, 1024, 640, 480));
        m_window->presentation()->setScreen(output(15));
        QTRY_COMPARE(view()->geometry(), QRect(6 * 640, 1024 + 480, 640, 480));
    }

    void allScreensMayBeOffForAMoment()
    {
        xrandr({"--output", "DUMMY0", "--off", "--output", "DUMMY1", "--off"});
        // The toolkit never has less than one.
        QTRY_COMPARE(QGuiApplication::screens().size(), 1);
        plug("DUMMY0", "1280x1024", {"--pos", "0x0"});
        plug("DUMMY1", "1024x768", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(view()->geometry(), QRect(QPoint(1280, 0), CLASS_SCREEN));
        QTRY_VERIFY(view()->isVisible() && view()->isFullScreen());
        // The window manager has placed the main window anew on the first screen that came.
        QTRY_VERIFY(QRect(0, 0, 1280, 1024).contains(m_window->geometry().center()));
    }

    void theMainWindowKeepsTheFocus() { QTRY_VERIFY(m_window->isActiveWindow()); }

    void aPulledScreenTakesItAlongAndBringsItBack()
    {
        const QRect place = m_window->geometry();
        // On a machine that has time for it: of several rounds the quickest counts.
        qint64 awayMs = TIMEOUT_MS;
        qint64 backMs = TIMEOUT_MS;
        for (int round = 0; round < 5 && (awayMs >= 1000 || backMs >= 2000); ++round) {
            QElapsedTimer timer;
            pull("DUMMY1");
            timer.start();
            QTRY_VERIFY_WITH_TIMEOUT(!view()->isVisible(), TIMEOUT_MS);
            awayMs = std::min(awayMs, timer.elapsed());
            QCOMPARE(m_window->geometry(), place);
            QVERIFY(m_window->button(Command::Present)->isChecked());
            xrandr({"--output", "DUMMY1", "--mode", "1024x768", "--right-of", "DUMMY0"});
            timer.start();
            QTRY_VERIFY_WITH_TIMEOUT(view()->isVisible() && view()->x() == 1280, TIMEOUT_MS);
            backMs = std::min(backMs, timer.elapsed());
            QTRY_VERIFY(view()->isFullScreen());
            QCOMPARE(m_window->geometry(), place);
        }
        QVERIFY2(awayMs < 1000, qPrintable(QString::number(awayMs)));
        QVERIFY2(backMs < 2000, qPrintable(QString::number(backMs)));
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
