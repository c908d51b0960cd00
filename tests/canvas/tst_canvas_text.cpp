#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/GoldenPicture.h"

#include <QtTest>

#include <QInputMethodEvent>
#include <QPushButton>
#include <QTextBlock>
#include <QTextEdit>

#include <memory>

namespace
{

constexpr QSize FRAME(400, 300);

QImage paper(QSize size = FRAME)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(Qt::white);
    return picture;
}

std::unique_ptr<ImageCanvas> canvasOf(QSize widget = FRAME, QSize picture = FRAME)
{
    auto canvas = std::make_unique<ImageCanvas>();
    canvas->resize(widget);
    canvas->imageCaptured(paper(picture));
    canvas->setMouseMode(CanvasModes::Text);
    canvas->show();
    return canvas;
}

/// A canvas that is not on the screen while its window is not.
ImageCanvas *addCanvas(QWidget &window)
{
    auto *canvas = new ImageCanvas(&window);
    canvas->resize(FRAME);
    canvas->imageCaptured(paper());
    canvas->setMouseMode(CanvasModes::Text);
    return canvas;
}

QTextEdit &editorOf(ImageCanvas &canvas)
{
    return *canvas.findChild<QTextEdit *>();
}

void type(ImageCanvas &canvas, const QString &text)
{
    QTest::keyClicks(&editorOf(canvas), text);
}

/// Types as the window system delivers it: to the window, which hands it to what has the focus.
void typeAt(QWidget &window, const QString &text)
{
    for (const QChar letter : text)
        QTest::keyClick(window.windowHandle(), letter.toLatin1());
}

/// What an input method sends: the text while it is composed, and then its commit.
void compose(QTextEdit &editor, const QString &preedit, const QString &commit)
{
    QInputMethodEvent composing(preedit, {});
    QCoreApplication::sendEvent(&editor, &composing);
    QInputMethodEvent committing;
    committing.setCommitString(commit);
    QCoreApplication::sendEvent(&editor, &committing);
}

QImage shown(ImageCanvas &canvas)
{
    canvas.autoRefresh();
    return canvas.currentImage();
}

/// The smallest rectangle that holds every pixel that is not white.
QRect inkOf(const QImage &picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != 0xFFFFFFFFU)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// The format of each letter of the first line.
QTextCharFormat formatAt(QTextEdit &editor, int position)
{
    QTextCursor cursor(editor.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

void select(QTextEdit &editor, int from, int to)
{
    QTextCursor cursor = editor.textCursor();
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    editor.setTextCursor(cursor);
}

} // namespace

class CanvasTextTest : public QObject
{
    Q_OBJECT

private slots:
    void aClickOpensAnEmptyEditorWithTheFocus()
    {
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf({1280, 720});
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
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf({1280, 720});
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
        const auto canvas = canvasOf();
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
            const auto canvas = canvasOf();
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
        const auto canvas = canvasOf();
        CanvasMouse::click(*canvas, {50, 60});
        canvas->setMouseMode(CanvasModes::Text);
        QVERIFY(!editorOf(*canvas).isHidden());
    }

    void theColourChangesTheSelectionOrWhatIsTypedNext()
    {
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf();
        canvas->setTextColor(Qt::red);
        canvas->setFontSize(40);
        CanvasMouse::click(*canvas, {10, 10});
        type(*canvas, "a");
        QCOMPARE(formatAt(editorOf(*canvas), 0).foreground().color(), QColor(Qt::red));
        QCOMPARE(formatAt(editorOf(*canvas), 0).font().pointSize(), 40);
    }

    void sizesBelowOneAreIgnoredAndHugeOnesBounded()
    {
        const auto canvas = canvasOf();
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

    void textStandsWhereItWasTyped_data()
    {
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<int>("view");
        QTest::newRow("same-size") << FRAME << 0;
        QTest::newRow("smaller-canvas") << QSize(200, 150) << 0;
        QTest::newRow("larger-canvas") << QSize(800, 600) << 0;
        QTest::newRow("wider-canvas") << QSize(800, 300) << 0;
        QTest::newRow("zoomed-panned") << FRAME << 1;
        QTest::newRow("turned") << FRAME << 2;
    }

    void textStandsWhereItWasTyped()
    {
        QFETCH(QSize, widget);
        QFETCH(int, view);
        const auto canvas = canvasOf(widget);
        if (view == 1) {
            canvas->zoomIn();
            canvas->zoomIn();
            canvas->setViewport(300, 200);
        } else if (view == 2) {
            canvas->rotate();
        }
        const QPoint click(widget.width() / 2 - 30, widget.height() / 3);
        CanvasMouse::click(*canvas, click);
        canvas->setTextColor(Qt::red);
        type(*canvas, "Where?");
        canvas->endTextEditing();
        const QImage picture = shown(*canvas);
        COMPARE_GOLDEN(picture, QString("text-%1").arg(QTest::currentDataTag()));
        const QPoint anchor = canvas->transformMousePoint(click);
        QRect red;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) == QColor(Qt::red))
                    red |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY(red.left() >= anchor.x() && red.top() >= anchor.y());
        // Letters grow with the scale twice: once in the drawing and once more on the screen.
        const int growth = view == 1 ? 9 : 1;
        QVERIFY(red.left() - anchor.x() < 40 * growth && red.top() - anchor.y() < 60 * growth);
    }

    void committedTextTurnsWithThePicture()
    {
        const auto canvas = canvasOf({300, 300}, {300, 300});
        CanvasMouse::click(*canvas, {50, 60});
        type(*canvas, "Hello");
        canvas->endTextEditing();
        const QImage upright = shown(*canvas);
        canvas->rotate();
        QCOMPARE(shown(*canvas), upright.transformed(QTransform().rotate(90)));
        canvas->clearPainting();
        QCOMPARE(inkOf(shown(*canvas)), QRect());
    }

    void anOpenTextTurnsWithThePicture_data()
    {
        QTest::addColumn<int>("turns");
        QTest::addColumn<QRect>("place");
        // Where the letters may stand in the upright picture: they run upwards in a picture that
        // is turned clockwise, downwards in one that is turned the other way.
        QTest::newRow("clockwise") << 1 << QRect(250, 120, 40, 80);
        QTest::newRow("upside down") << 2 << QRect(170, 160, 81, 41);
        QTest::newRow("anticlockwise") << -1 << QRect(210, 200, 41, 80);
        QTest::newRow("all around") << 4 << QRect(250, 200, 80, 40);
    }

    void anOpenTextTurnsWithThePicture()
    {
        QFETCH(int, turns);
        QFETCH(QRect, place);
        const auto canvas = canvasOf();
        CanvasMouse::click(*canvas, {250, 200});
        type(*canvas, "Hello");
        for (int i = 0; i < std::abs(turns); ++i)
            turns > 0 ? canvas->rotate() : canvas->rotateRev();
        canvas->endTextEditing();
        while (canvas->rotation() != 0)
            canvas->rotate();
        const QRect ink = inkOf(shown(*canvas));
        QVERIFY(ink.isValid());
        QVERIFY(place.contains(ink));
    }

    void anOpenTextStaysOnTheTurnedPicture()
    {
        // Turned about the end of the last line, a text would begin at the very edge.
        const auto canvas = canvasOf({300, 300}, {300, 300});
        CanvasMouse::click(*canvas, {150, 2});
        type(*canvas, "Hello");
        canvas->rotate();
        canvas->endTextEditing();
        QCOMPARE(inkOf(shown(*canvas)).size(), inkOfHello({300, 300}, {300, 300}));
    }

    void anOpenTextStaysOnASmallerPicture()
    {
        const auto canvas = canvasOf();
        CanvasMouse::click(*canvas, {390, 290});
        editorOf(*canvas).resize(300, 300);
        type(*canvas, "Hello");
        canvas->imageCaptured(paper({200, 150}));
        canvas->endTextEditing();
        QCOMPARE(inkOf(shown(*canvas)).size(), inkOfHello(FRAME, {200, 150}));
    }

    void inputMethodsWriteChineseAndJapanese()
    {
        const auto canvas = canvasOf();
        CanvasMouse::click(*canvas, {20, 20});
        QTextEdit &editor = editorOf(*canvas);
        QVERIFY(editor.testAttribute(Qt::WA_InputMethodEnabled));
        compose(editor, QString::fromUtf8("にほ"), QString::fromUtf8("日本"));
        canvas->setTextColor(Qt::red);
        compose(editor, QString::fromUtf8("zhong wen"), QString::fromUtf8("中文"));
        QCOMPARE(editor.toPlainText(), QString::fromUtf8("日本中文"));
        QCOMPARE(formatAt(editor, 3).foreground().color(), QColor(Qt::red));
        canvas->endTextEditing();
        COMPARE_GOLDEN(shown(*canvas), "text-cjk");
    }

    void rightToLeftTextStandsAtTheRightOfTheEditor()
    {
        const auto canvas = canvasOf();
        CanvasMouse::click(*canvas, {20, 20});
        QTextEdit &editor = editorOf(*canvas);
        compose(editor, {}, QString::fromUtf8("שלום עולם"));
        QCOMPARE(editor.document()->firstBlock().textDirection(), Qt::RightToLeft);
        canvas->endTextEditing();
        const QRect ink = inkOf(shown(*canvas));
        QVERIFY(ink.left() > 150 && ink.right() > 290);
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
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf();
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
        const auto canvas = canvasOf();
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
        canvas->imageCaptured(paper());
        QCOMPARE(canvas->currentImage().size(), FRAME);
    }

    void endingWithoutAnEditorDoesNothing()
    {
        const auto canvas = canvasOf();
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

    /// The size of the word where it has all the space that it needs.
    static QSize inkOfHello(QSize widget, QSize picture)
    {
        const auto canvas = canvasOf(widget, picture);
        CanvasMouse::click(*canvas, {50, 50});
        type(*canvas, "Hello");
        canvas->endTextEditing();
        return inkOf(shown(*canvas)).size();
    }

    static void disturb(ImageCanvas &canvas, int event)
    {
        unsigned char pixel = 0;
        switch (event) {
        case 0:
            canvas.imageCaptured(paper({640, 480}));
            break;
        case 1:
            canvas.rotate();
            break;
        case 2:
            canvas.frozen = true;
            canvas.imageCaptured(paper());
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
            canvas.imageCaptured(paper());
            break;
        }
        default:
            canvas.resize(90, 500);
        }
    }
};

REGISTER_TEST(CanvasTextTest)
#include "tst_canvas_text.moc"
