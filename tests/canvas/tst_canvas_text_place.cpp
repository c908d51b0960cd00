#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/CanvasText.h"
#include "tests/canvas/GoldenPicture.h"

#include <QtTest>

#include <QInputMethodEvent>
#include <QTextBlock>

using namespace CanvasText;

namespace
{

/// What an input method sends: the text while it is composed, and then its commit.
void compose(QTextEdit &editor, const QString &preedit, const QString &commit)
{
    QInputMethodEvent composing(preedit, {});
    QCoreApplication::sendEvent(&editor, &composing);
    QInputMethodEvent committing;
    committing.setCommitString(commit);
    QCoreApplication::sendEvent(&editor, &committing);
}

/// The size of the word where it has all the space that it needs.
QSize inkOfHello(QSize widget, QSize picture)
{
    const auto canvas = textCanvas(widget, picture);
    CanvasMouse::click(*canvas, {50, 50});
    type(*canvas, "Hello");
    canvas->endTextEditing();
    return inkOf(shown(*canvas)).size();
}

} // namespace

/// Where a text stands in the picture, and which way its letters run.
class CanvasTextPlaceTest : public QObject
{
    Q_OBJECT

private slots:
    void textStandsWhereItWasTyped_data()
    {
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<int>("view");
        QTest::newRow("same-size") << PAGE << 0;
        QTest::newRow("smaller-canvas") << QSize(200, 150) << 0;
        QTest::newRow("larger-canvas") << QSize(800, 600) << 0;
        QTest::newRow("wider-canvas") << QSize(800, 300) << 0;
        QTest::newRow("zoomed-panned") << PAGE << 1;
        QTest::newRow("turned") << PAGE << 2;
    }

    void textStandsWhereItWasTyped()
    {
        QFETCH(QSize, widget);
        QFETCH(int, view);
        const auto canvas = textCanvas(widget);
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
        const auto canvas = textCanvas({300, 300}, {300, 300});
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
        const auto canvas = textCanvas();
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
        const auto canvas = textCanvas({300, 300}, {300, 300});
        CanvasMouse::click(*canvas, {150, 2});
        type(*canvas, "Hello");
        canvas->rotate();
        canvas->endTextEditing();
        QCOMPARE(inkOf(shown(*canvas)).size(), inkOfHello({300, 300}, {300, 300}));
    }

    void anOpenTextStaysOnASmallerPicture()
    {
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {390, 290});
        editorOf(*canvas).resize(300, 300);
        type(*canvas, "Hello");
        canvas->imageCaptured(page({200, 150}));
        canvas->endTextEditing();
        QCOMPARE(inkOf(shown(*canvas)).size(), inkOfHello(PAGE, {200, 150}));
    }

    void inputMethodsWriteChineseAndJapanese()
    {
        const auto canvas = textCanvas();
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
        const auto canvas = textCanvas();
        CanvasMouse::click(*canvas, {20, 20});
        QTextEdit &editor = editorOf(*canvas);
        compose(editor, {}, QString::fromUtf8("שלום עולם"));
        QCOMPARE(editor.document()->firstBlock().textDirection(), Qt::RightToLeft);
        canvas->endTextEditing();
        const QRect ink = inkOf(shown(*canvas));
        QVERIFY(ink.left() > 150 && ink.right() > 290);
    }
};

REGISTER_TEST(CanvasTextPlaceTest)
#include "tst_canvas_text_place.moc"
