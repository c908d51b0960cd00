#include "app/Platform.h"
#include "canvas/ImageCanvas.h"
#include "tests/canvas/CanvasMouse.h"

#include <QtTest>

#include <QClipboard>
#include <QProcess>

#include <memory>

namespace
{

constexpr QSize COLOURED(320, 240);
const char READ_CLIPBOARD[] = "--read-clipboard";

/// Every pixel of a colour of its own.
QImage colourful()
{
    QImage picture(COLOURED, QImage::Format_RGB888);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixelColor(x, y, QColor(x % 256, y, x / 256 * 128));
    }
    return picture;
}

/// What another program finds in the clipboard.
QImage clipboardOfAnotherProgram()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("clip.png");
    QProcess reader;
    QSignalSpy changed(&reader, &QProcess::stateChanged);
    reader.start(QCoreApplication::applicationFilePath(), {READ_CLIPBOARD, path});
    // The clipboard's owner answers from its event loop.
    while (reader.state() != QProcess::NotRunning) {
        if (!changed.wait(30000))
            return {};
    }
    return QImage(path);
}

int saveClipboard(QApplication &application, const QString &path)
{
    QTimer::singleShot(0, [&application, &path] {
        const QImage image = QGuiApplication::clipboard()->image();
        application.exit(image.save(path) ? 0 : 1);
    });
    return QApplication::exec();
}

void xdotool(const QStringList &arguments)
{
    QCOMPARE(QProcess::execute("xdotool", arguments), 0);
}

} // namespace

/// Under a real X server: the clipboard that other programs see, and the server's own pointer.
class CanvasPointerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_canvas = std::make_unique<ImageCanvas>();
        m_canvas->resize(COLOURED);
        m_canvas->imageCaptured(colourful());
        m_canvas->setMouseMode(CanvasModes::Clip);
        QGuiApplication::clipboard()->clear();
    }

    void aClipReachesAnotherProgram()
    {
        QSignalSpy done(m_canvas.get(), SIGNAL(clipDone()));
        CanvasMouse::drag(*m_canvas, {{20, 30}, {200, 50}, {119, 79}});
        QCOMPARE(done.count(), 1);
        const QImage clip = clipboardOfAnotherProgram();
        QCOMPARE(clip.convertToFormat(QImage::Format_RGB888), colourful().copy(20, 30, 100, 50));
    }

    void aClipIsWhatIsShown()
    {
        m_canvas->effectMode = CanvasModes::EffectNegative;
        m_canvas->autoRefresh();
        CanvasMouse::drag(*m_canvas, {{20, 30}, {119, 79}});
        QCOMPARE(
            clipboardOfAnotherProgram().convertToFormat(QImage::Format_RGB888),
            m_canvas->currentImage().copy(20, 30, 100, 50).convertToFormat(QImage::Format_RGB888));
    }

    void aClipDraggedBeyondThePictureIsClampedToIt()
    {
        CanvasMouse::drag(*m_canvas, {{-60, -10}, {500, 900}});
        QCOMPARE(clipboardOfAnotherProgram().convertToFormat(QImage::Format_RGB888), colourful());
        CanvasMouse::drag(*m_canvas, {{300, 200}, {500, 900}});
        QCOMPARE(clipboardOfAnotherProgram().convertToFormat(QImage::Format_RGB888),
                 colourful().copy(300, 200, 20, 40));
    }

    void aClipWithoutADragCopiesNothing()
    {
        QSignalSpy done(m_canvas.get(), SIGNAL(clipDone()));
        CanvasMouse::click(*m_canvas, {50, 50});
        QCOMPARE(done.count(), 0);
        QVERIFY(QGuiApplication::clipboard()->image().isNull());
    }

    void aClipWhollyOutsideCopiesNothing()
    {
        QSignalSpy done(m_canvas.get(), SIGNAL(clipDone()));
        m_canvas->resize(640, 240);
        CanvasMouse::drag(*m_canvas, {{10, 20}, {100, 90}});
        CanvasMouse::drag(*m_canvas, {{500, 20}, {600, 90}});
        CanvasMouse::drag(*m_canvas, {{480, 20}, {600, 90}});
        QCOMPARE(done.count(), 0);
        QVERIFY(QGuiApplication::clipboard()->image().isNull());
        QCOMPARE(m_canvas->clipRectangle(), QRect());
    }

    void whoeverHearsOfTheClipMayAskTheCanvas()
    {
        QImage heard;
        connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, m_canvas.get(),
                [this, &heard] { heard = m_canvas->currentImage(); });
        CanvasMouse::drag(*m_canvas, {{20, 30}, {119, 79}});
        QTRY_VERIFY(!heard.isNull());
    }

    void everyPointOfAFastStrokeIsDrawn()
    {
        m_canvas->imageCaptured(whitePaper());
        m_canvas->setMouseMode(CanvasModes::Freehand);
        m_canvas->penColor = Qt::red;
        m_canvas->show();
        QVERIFY(QTest::qWaitForWindowActive(m_canvas.get()));
        const QPoint origin = m_canvas->mapToGlobal(QPoint(0, 0));
        pressAt(origin + QPoint(10, 100), "1");
        // This thread is away meanwhile, as when a file is loaded: the points queue up.
        for (int x = 20; x <= 300; x += 10)
            xdotool(moveTo(origin + QPoint(x, x / 10 % 2 == 0 ? 20 : 200)));
        xdotool({"mouseup", "1"});
        QTRY_VERIFY(isRed(300, 20));
        for (int x = 20; x <= 300; x += 10)
            QVERIFY2(isRed(x, x / 10 % 2 == 0 ? 20 : 200), qPrintable(QString::number(x)));
    }

    void thePointersRightButtonDrawsNothing()
    {
        m_canvas->imageCaptured(whitePaper());
        m_canvas->setMouseMode(CanvasModes::Line);
        m_canvas->penColor = Qt::red;
        m_canvas->show();
        QVERIFY(QTest::qWaitForWindowActive(m_canvas.get()));
        const QPoint origin = m_canvas->mapToGlobal(QPoint(0, 0));
        for (const int button : {3, 1}) {
            const QPoint from = origin + QPoint(10, button == 3 ? 50 : 90);
            pressAt(from, QString::number(button));
            xdotool(moveTo(from + QPoint(45, 0)));
            xdotool(moveTo(from + QPoint(90, 0)));
            xdotool({"mouseup", QString::number(button)});
        }
        QTRY_VERIFY(isRed(60, 90));
        QVERIFY(!isRed(60, 50));
    }

    void cleanup() { m_canvas.reset(); }

private:
    static QImage whitePaper()
    {
        QImage picture(COLOURED, QImage::Format_RGB888);
        picture.fill(Qt::white);
        return picture;
    }

    static QStringList moveTo(QPoint screenPoint)
    {
        return {"mousemove", QString::number(screenPoint.x()), QString::number(screenPoint.y())};
    }

    /// Returns once the canvas has the press: until the window manager has let it through, the
    /// server merges the moves that follow.
    void pressAt(QPoint screenPoint, const QString &button)
    {
        PressWatch watch(*m_canvas);
        xdotool(moveTo(screenPoint));
        xdotool({"mousedown", button});
        QTRY_VERIFY(watch.pressed);
    }

    struct PressWatch : QObject {
        explicit PressWatch(ImageCanvas &canvas) { canvas.installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            pressed = pressed || event->type() == QEvent::MouseButtonPress;
            return false;
        }
        bool pressed = false;
    };

    bool isRed(int x, int y)
    {
        m_canvas->autoRefresh();
        return m_canvas->currentImage().pixelColor(x, y) == QColor(Qt::red);
    }

    std::unique_ptr<ImageCanvas> m_canvas;
};

Q_DECLARE_METATYPE(QProcess::ProcessState)

int main(int argc, char *argv[])
{
    preparePlatform();
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == READ_CLIPBOARD)
        return saveClipboard(application, arguments.at(2));
    qRegisterMetaType<QProcess::ProcessState>("QProcess::ProcessState");
    CanvasPointerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_canvas_pointer.moc"
