#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/CanvasText.h"
#include "tests/canvas/GoldenPicture.h"

#include <QtTest>

#include <QPushButton>

using namespace CanvasText;

namespace
{

/// A canvas that is not on the screen while its window is not.
ImageCanvas *addCanvas(QWidget &window)
{
    auto *canvas = new ImageCanvas(&window);
    canvas->resize(PAGE);
    canvas->imageCaptured(page());
    canvas->setMouseMode(CanvasModes::Text);
    return canvas;
}

/// Types as the window system delivers it: to the window, which hands it to what has the focus.
void typeAt(QWidget &window, const QString &text)
{
    for (const QChar letter : text)
        QTest::keyClick(window.windowHandle(), letter.toLatin1());
}

void select(QTextEdit &editor, int from, int to)
{
    QTextCursor cursor = editor.textCursor();
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    editor.setTextCursor(cursor);
}

} // namespace

/// The editor of a text: its focus, its keys, its formats and what ends it.
class CanvasTextTest : public QObject
{
    Q_OBJECT

private slots:
    void aClickOpensAnEmptyEditorWithTheFocus()
    {
        const auto canvas = textCanvas();
        QVERIFY(QTest::qWaitForWindowActive(canvas.get()));
        QVERIFY(editorOf(*canvas).isHidden());
        CanvasMouse::press(*canvas, {50, 60});
        QVERIFY(editorOf(*canvas).isHidden());
        CanvasMouse::release(*canvas, {50, 60});
        QVERIFY(editorOf(*canvas).isVisible());
        QVERIFY(editorOf(*canvas).hasFocus());
        QCOMPARE(editorOf(*canvas).geometry(), QRect(50, 60, 300, 235));
        QCOMPARE(editorOf(*canvas).toPlainText(), QString());
        QCOMPARE(editorOf(*canvas).currentFont().family(), QString("Arial"));
        QCOMPARE(editorOf(*canvas).currentFont().pointSize(), 18);
    }

    void theEditorKeepsAMarginToTheCanvasEdge_data()
    {
        QTest::addColumn<QPoint>("click");
        QTest::addColumn<QSize>("size");
        QTest::newRow("a hundred from the right") << QPoint(1180, 100) << QSize(95, 300);
        QTest::newRow("a hundred from the bottom") << QPoint(100, 620) << QSize(300, 95);
        QTest::newRow("in the open") << QPoint(0, 0) << QSize(300, 300);
        QTest::newRow("in the last pixels") << QPoint(1277, 718) << QSize(1, 1);
    }

    void theEditorKeepsAMarginToTheCanvasEdge()
    {
        QFETCH(QPoint, click);
        QFETCH(QSize, size);
        const auto canvas = textCanvas({1280, 720});
        CanvasMouse::click(*canvas, click);
        QVERIFY(!editorOf(*canvas).isHidden());
        QCOMPARE(editorOf(*canvas).size(), size);
        QCOMPARE(editorOf(*canvas).pos(), click);
        type(*canvas, "x");
        CanvasMouse::click(*canvas, {10, 10});
        QVERIFY(editorOf(*canvas).isHidden());
    }

    void aReleaseBesideTheCanvasOpensNoEditor_data()
    {
        QTest::addColumn<QPoint>("release");
        QTest::newRow("left") << QPoint(-1, 60);
        QTest::newRow("above") << QPoint(50, -400);
        QTest::newRow("right") << QPoint(400, 60);
        QTest::newRow("below") << QPoint(50, 300);
    }

    void aReleaseBesideTheCanvasOpensNoEditor()
    {
        QFETCH(QPoint, release);
        const auto canvas = textCanvas();
        CanvasMouse::drag(*canvas, {{50, 60}, release});
        QVERIFY(editorOf(*canvas).isHidden());
        QCOMPARE(canvas->focusWidget(), nullptr);
        // The next click is a click again.
        CanvasMouse::click(*canvas, {50, 60});
        QVERIFY(editorOf(*canvas).isVisible());
        // Whatever ends a drag also commits it, as before.
        CanvasMouse::drag(*canvas, {{10, 10}, release});
        QVERIFY(editorOf(*canvas).isHidden());
    }

    void anOpenEditorStaysInACanvasThatShrinks()
    {
        const auto canvas = textCanvas({1280, 720});
        CanvasMouse::click(*canvas, {1100, 600});
        const QSize before = editorOf(*canvas).size();
        canvas->resize(800, 500);
        QVERIFY(canvas->rect().contains(editorOf(*canvas).geometry()));
        QCOMPARE(editorOf(*canvas).size(), before);
        canvas->resize(100, 50);
        QCOMPARE(editorOf(*canvas).pos(), QPoint(0, 0));
    }

    void theKeysGoBackToTheWindow_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("click") << 0;
        QTest::newRow("Escape") << 1;
        QTest::newRow("other tool") << 2;
    }

    void theKeysGoBackToTheWindow()
    {
        QFETCH(int, end);
        QWidget window;
        auto *button = new QPushButton(&window);
        ImageCanvas *canvas = addCanvas(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        CanvasMouse::click(*canvas, {50, 60});
        QTRY_VERIFY(editorOf(*canvas).hasFocus());
        typeAt(window, "Hello");
        if (end == 0)
            CanvasMouse::click(*canvas, {10, 10});
        else if (end == 1)
            QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
        else
            canvas->setMouseMode(CanvasModes::Line);
        QVERIFY(editorOf(*canvas).isHidden());
        QVERIFY(inkOf(shown(*canvas)).isValid());
        QCOMPARE(window.focusWidget(), nullptr);
        QVERIFY(!button->hasFocus());
        typeAt(window, " lost");
        QCOMPARE(editorOf(*canvas).toPlainText(), QString("Hello"));
    }

    void aSecondClickCommitsAndOpensNoOtherEditor()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {50, 60});
        type(*canvas, "Hello");
        QCOMPARE(inkOf(shown(*canvas)), QRect());
        CanvasMouse::click(*canvas, {10, 10});
        QVERIFY(editorOf(*canvas).isHidden());
        const QRect ink = inkOf(shown(*canvas));
        QVERIFY(QRect(50, 60, 90, 40).contains(ink));
        // The text stays in the editor until it opens again.
        QCOMPARE(editorOf(*canvas).toPlainText(), QString("Hello"));
        QCOMPARE(editorOf(*canvas).textCursor().position(), 0);
        CanvasMouse::click(*canvas, {200, 200});
        QVERIFY(!editorOf(*canvas).isHidden());
        QCOMPARE(editorOf(*canvas).toPlainText(), QString());
    }

    void changingTheToolCommitsFirst()
    {
        for (int mode = CanvasModes::Hand; mode < CanvasModes::Text; ++mode) {
            const auto canvas = textCanvas();
            CanvasMouse::click(*canvas, {50, 60});
            type(*canvas, "Hello");
            canvas->setMouseMode(static_cast<CanvasModes::MouseMode>(mode));
            QVERIFY(editorOf(*canvas).isHidden());
            QVERIFY(inkOf(shown(*canvas)).isValid());
            QCOMPARE(canvas->mouseMode(), static_cast<CanvasModes::MouseMode>(mode));
        }
    }

    void choosingTheTextToolAgainKeepsTheEditorOpen()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {50, 60});
        canvas->setMouseMode(CanvasModes::Text);
        QVERIFY(!editorOf(*canvas).isHidden());
    }

    void theColourChangesTheSelectionOrWhatIsTypedNext()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {10, 10});
        type(*canvas, "abc");
        canvas->setTextColor(Qt::red);
        type(*canvas, "def");
        QTextEdit &editor = editorOf(*canvas);
        QCOMPARE(formatAt(editor, 1).foreground().color(), QColor(Qt::black));
        QCOMPARE(formatAt(editor, 4).foreground().color(), QColor(Qt::red));
        select(editor, 0, 2);
        canvas->setTextColor(Qt::blue);
        QCOMPARE(formatAt(editor, 0).foreground().color(), QColor(Qt::blue));
        QCOMPARE(formatAt(editor, 1).foreground().color(), QColor(Qt::blue));
        QCOMPARE(formatAt(editor, 2).foreground().color(), QColor(Qt::black));
        QCOMPARE(formatAt(editor, 5).foreground().color(), QColor(Qt::red));
        QCOMPARE(editor.textCursor().selectedText(), QString("ab"));
        QCOMPARE(canvas->textColor(), QColor(Qt::blue));
    }

    void faceAndSizeChangeWhatIsTypedNext()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {10, 10});
        type(*canvas, "ab");
        canvas->setFontFace("Liberation Serif");
        canvas->setFontSize(30);
        type(*canvas, "cd");
        QTextEdit &editor = editorOf(*canvas);
        QCOMPARE(formatAt(editor, 0).font().pointSize(), 18);
        QCOMPARE(formatAt(editor, 3).font().pointSize(), 30);
        QCOMPARE(formatAt(editor, 3).font().family(), QString("Liberation Serif"));
        QVERIFY(!formatAt(editor, 3).font().italic());
        QCOMPARE(formatAt(editor, 3).font().weight(), int(QFont::Normal));
        canvas->endTextEditing();
        COMPARE_GOLDEN(shown(*canvas), "text-mixed");
    }

    void formatsChosenBeforeTheClickHold()
    {
        const auto canvas = textCanvas();
        canvas->setTextColor(Qt::red);
        canvas->setFontSize(40);
        CanvasMouse::click(*canvas, {10, 10});
        type(*canvas, "a");
        QCOMPARE(formatAt(editorOf(*canvas), 0).foreground().color(), QColor(Qt::red));
        QCOMPARE(formatAt(editorOf(*canvas), 0).font().pointSize(), 40);
    }

    void sizesBelowOneAreIgnoredAndHugeOnesBounded()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {10, 10});
        for (const int size : {0, -1, INT_MIN}) {
            canvas->setFontSize(size);
            QCOMPARE(canvas->fontSize(), 18);
        }
        canvas->setFontSize(1000000);
        QCOMPARE(canvas->fontSize(), 1000000);
        type(*canvas, "W");
        QCOMPARE(formatAt(editorOf(*canvas), 0).font().pointSize(), 1000);
        canvas->endTextEditing();
        QVERIFY(editorOf(*canvas).isHidden());
    }

    void typingStaysInTheEditor()
    {
        QWidget window;
        ImageCanvas *canvas = addCanvas(window);
        CanvasMouse::click(*canvas, {20, 20});
        type(*canvas, "a b");
        QTest::keyClick(&editorOf(*canvas), Qt::Key_Return);
        type(*canvas, "c");
        QTest::keyClick(&editorOf(*canvas), Qt::Key_Backspace);
        type(*canvas, "d");
        QCOMPARE(editorOf(*canvas).toPlainText(), QString("a b\nd"));
    }

    void pressesOnTheEditorDoNotReachTheCanvas()
    {
        const auto canvas = textCanvas();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        CanvasMouse::click(*canvas, {50, 60});
        PressCounter counter;
        canvas->installEventFilter(&counter);
        QWidget *viewport = editorOf(*canvas).viewport();
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
            CanvasMouse::press(*viewport, {5, 5}, button);
            CanvasMouse::move(*viewport, {15, 5}, button);
            CanvasMouse::release(*viewport, {15, 5}, button);
            CanvasMouse::press(editorOf(*canvas), {5, 5}, button);
            CanvasMouse::release(editorOf(*canvas), {5, 5}, button);
        }
        QCOMPARE(counter.presses, 0);
        QVERIFY(!editorOf(*canvas).isHidden());
    }

    void aCanvasThatIsNotOnTheScreenCommitsToo()
    {
        QWidget window;
        ImageCanvas *canvas = addCanvas(window);
        CanvasMouse::click(*canvas, {50, 60});
        type(*canvas, "Hello");
        canvas->hide();
        canvas->setMouseMode(CanvasModes::Line);
        QVERIFY(inkOf(shown(*canvas)).isValid());
    }

    void theEditorReappearsWithItsCanvas()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {50, 60});
        type(*canvas, "Hello");
        canvas->hide();
        canvas->show();
        QVERIFY(editorOf(*canvas).isVisible());
        QCOMPARE(editorOf(*canvas).toPlainText(), QString("Hello"));
        QCOMPARE(inkOf(shown(*canvas)), QRect());
    }

    void whatHappensWhileTheEditorIsOpenLeavesItOpen_data()
    {
        QTest::addColumn<int>("event");
        QTest::newRow("frame of another size") << 0;
        QTest::newRow("rotation") << 1;
        QTest::newRow("freeze") << 2;
        QTest::newRow("clear") << 3;
        QTest::newRow("empty picture") << 4;
        QTest::newRow("snapshot") << 5;
        QTest::newRow("canvas resized") << 6;
    }

    void whatHappensWhileTheEditorIsOpenLeavesItOpen()
    {
        QFETCH(int, event);
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {50, 60});
        type(*canvas, "Hello");
        disturb(*canvas, event);
        QVERIFY(!editorOf(*canvas).isHidden());
        QCOMPARE(editorOf(*canvas).toPlainText(), QString("Hello"));
        QCOMPARE(inkOf(canvas->currentImage()).isValid() && event != 1, false);
        canvas->endTextEditing();
        QVERIFY(editorOf(*canvas).isHidden());
        if (event != 4)
            QVERIFY(inkOf(shown(*canvas)).isValid());
        canvas->imageCaptured(page());
        QCOMPARE(canvas->currentImage().size(), PAGE);
    }

    void endingWithoutAnEditorDoesNothing()
    {
        const auto canvas = textCanvas();
        canvas->endTextEditing();
        canvas->setTextFormat();
        QCOMPARE(inkOf(shown(*canvas)), QRect());
    }

private:
    struct PressCounter : QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::MouseButtonPress ||
                event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseMove)
                ++presses;
            return false;
        }
        int presses = 0;
    };

    static void disturb(ImageCanvas &canvas, int event)
    {
        unsigned char pixel = 0;
        switch (event) {
        case 0:
            canvas.imageCaptured(page({640, 480}));
            break;
        case 1:
            canvas.rotate();
            break;
        case 2:
            canvas.frozen = true;
            canvas.imageCaptured(page());
            break;
        case 3:
            canvas.clearPainting();
            break;
        case 4:
            canvas.imageCaptured(&pixel, 0, 0, false, false);
            break;
        case 5: {
            QTemporaryDir folder;
            canvas.snapshotFolder = folder.path();
            canvas.snapshot();
            canvas.imageCaptured(page());
            break;
        }
        default:
            canvas.resize(90, 500);
        }
    }
};

REGISTER_TEST(CanvasTextTest)
#include "tst_canvas_text.moc"
