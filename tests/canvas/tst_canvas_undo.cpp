#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/canvas/DrawnCanvas.h"

#include <QtTest>

#include <QTemporaryDir>
#include <QTextEdit>

#include <memory>
#include <thread>

using namespace DrawnCanvas;

namespace
{

std::unique_ptr<ImageCanvas> lineCanvas()
{
    auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Line);
    return canvas;
}

} // namespace

class CanvasUndoTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsTakenBackAndDoneAgain()
    {
        const auto canvas = lineCanvas();
        QSignalSpy changed(canvas.get(), SIGNAL(historyChanged()));
        QVERIFY(!canvas->canUndo());
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        QVERIFY(canvas->canUndo());
        QVERIFY(!canvas->canRedo());
        QCOMPARE(changed.count(), 1);
        const QImage drawn = shown(*canvas);
        QVERIFY(drawn != paper());
        canvas->undo();
        QVERIFY(!canvas->canUndo());
        QVERIFY(canvas->canRedo());
        QCOMPARE(changed.count(), 2);
        QCOMPARE(shown(*canvas), paper());
        canvas->redo();
        QCOMPARE(changed.count(), 3);
        QCOMPARE(shown(*canvas), drawn);
        // A second step changes nothing about what can be done.
        CanvasMouse::drag(*canvas, {{10, 90}, {150, 90}});
        QCOMPARE(changed.count(), 3);
    }

    void aSlotIsReachedByItsName()
    {
        const auto canvas = lineCanvas();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        QVERIFY(QMetaObject::invokeMethod(canvas.get(), "undo"));
        QCOMPARE(shown(*canvas), paper());
        QVERIFY(QMetaObject::invokeMethod(canvas.get(), "redo"));
        QVERIFY(shown(*canvas) != paper());
    }

    void aStandingPictureShowsItByItself()
    {
        // Not on the screen and not refreshed: nothing but undo itself asks for a new picture.
        const auto canvas = lineCanvas();
        QElapsedTimer sinceFrame;
        sinceFrame.start();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        QVERIFY(shown(*canvas) != paper());
        // A source in motion shows it with its next frame.
        QTRY_VERIFY(sinceFrame.elapsed() > 40);
        canvas->undo();
        QTRY_COMPARE(canvas->currentImage(), paper());
    }

    void undoDuringADragEndsIt()
    {
        const auto canvas = lineCanvas();
        CanvasMouse::press(*canvas, {10, 60});
        QVERIFY(!canvas->canUndo());
        CanvasMouse::move(*canvas, QPoint(150, 60));
        QVERIFY(canvas->canUndo());
        canvas->undo();
        QVERIFY(!canvas->canUndo());
        QVERIFY(!canvas->canRedo());
        CanvasMouse::move(*canvas, QPoint(150, 90));
        CanvasMouse::release(*canvas, {150, 90});
        QCOMPARE(shown(*canvas), paper());
    }

    void inAnOpenTextItIsTheTexts()
    {
        const auto canvas = lineCanvas();
        canvas->show();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        const QImage drawn = shown(*canvas);
        canvas->setMouseMode(CanvasModes::Text);
        CanvasMouse::click(*canvas, {20, 20});
        QSignalSpy changed(canvas.get(), SIGNAL(historyChanged()));
        QVERIFY(!canvas->canUndo());
        QTextEdit &editor = *canvas->findChild<QTextEdit *>();
        QTest::keyClicks(&editor, "abc");
        QVERIFY(canvas->canUndo());
        QCOMPARE(changed.count(), 1);
        canvas->undo();
        QCOMPARE(editor.toPlainText(), QString());
        QCOMPARE(shown(*canvas), drawn);
        QVERIFY(canvas->canRedo());
        canvas->redo();
        QCOMPARE(editor.toPlainText(), QString("abc"));
        canvas->endTextEditing();
        QVERIFY(shown(*canvas) != drawn);
        canvas->undo();
        QCOMPARE(shown(*canvas), drawn);
    }

    void eraseAllIsTakenBack()
    {
        const auto canvas = lineCanvas();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        const QImage drawn = shown(*canvas);
        canvas->clearPainting();
        QCOMPARE(shown(*canvas), paper());
        canvas->undo();
        QCOMPARE(shown(*canvas), drawn);
    }

    void aFrameOfAnotherSizeIsAStepThatIsToldOnTheGuiThread()
    {
        const auto canvas = lineCanvas();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        canvas->undo();
        canvas->redo();
        CanvasMouse::drag(*canvas, {{10, 90}, {150, 90}});
        canvas->undo();
        QVERIFY(canvas->canRedo());
        QThread *told = nullptr;
        connect(
            canvas.get(), &ImageCanvas::historyChanged, canvas.get(),
            [&told] { told = QThread::currentThread(); }, Qt::DirectConnection);
        std::thread camera([&] { canvas->imageCaptured(paper({320, 240})); });
        camera.join();
        QTRY_COMPARE(told, thread());
        QVERIFY(!canvas->canRedo());
        QCOMPARE(shown(*canvas), paper({320, 240}));
        canvas->undo();
        QCOMPARE(shown(*canvas).pixelColor(160, 120), QColor(Qt::red));
    }

    void itWorksAtEveryZoomAndAfterTurns()
    {
        const auto canvas = lineCanvas();
        canvas->zoomIn();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        canvas->zoomReset();
        const QImage one = shown(*canvas);
        canvas->zoomIn();
        canvas->zoomIn();
        CanvasMouse::drag(*canvas, {{20, 20}, {80, 110}});
        canvas->rotate();
        canvas->undo();
        canvas->rotateRev();
        canvas->zoomReset();
        QCOMPARE(shown(*canvas), one);
    }

    void theSnapshotShowsIt()
    {
        QTemporaryDir folder;
        const auto canvas = lineCanvas();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        canvas->undo();
        canvas->snapshotFolder = folder.path();
        canvas->snapshot();
        canvas->autoRefresh();
        const QStringList files = QDir(folder.path()).entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QCOMPARE(QImage(folder.filePath(files.first())).pixelColor(80, 60), QColor(Qt::white));
    }

    void everySizeOfPictureMayBeUndone_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("empty") << QSize(0, 0);
        QTest::newRow("one pixel") << QSize(1, 1);
        QTest::newRow("63 megapixels") << QSize(9168, 6872);
    }

    void everySizeOfPictureMayBeUndone()
    {
        QFETCH(QSize, size);
        const auto canvas = lineCanvas();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        canvas->imageCaptured(size.isEmpty() ? QImage() : paper(size));
        canvas->undo();
        canvas->undo();
        canvas->redo();
        canvas->redo();
        CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
        for (int i = 0; i < 1000; ++i)
            canvas->undo();
        QVERIFY(!canvas->canUndo());
        canvas->imageCaptured(paper());
        QCOMPARE(shown(*canvas), paper());
        while (canvas->canRedo())
            canvas->redo();
        canvas->imageCaptured(paper());
    }
};

REGISTER_TEST(CanvasUndoTest)
#include "tst_canvas_undo.moc"
