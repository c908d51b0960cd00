#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/CanvasText.h"
#include "tests/canvas/TypedText.h"

#include <QtTest>

#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>

#include <time.h>

using namespace CanvasText;

namespace
{

/// Seconds of the processor that this thread has had.
double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// The least that the work takes of this thread's processor, in seconds.
template <typename Work>
double leastTimeOf(const Work &work)
{
    double least = 1e9;
    for (int i = 0; i < 3; ++i) {
        const double before = processorTime();
        work();
        least = std::min(least, processorTime() - before);
    }
    return least;
}

void verifyAlike(double ofMany, double ofAFew)
{
    QVERIFY2(
        ofMany < 4.0 * ofAFew,
        qPrintable(
            QString("%1 ms, %2 ms of a short text").arg(ofMany * 1000.0).arg(ofAFew * 1000.0)));
}

QTextEdit &openEditor(ImageCanvas &canvas)
{
    CanvasMouse::press(canvas, {50, 60});
    CanvasMouse::release(canvas, {50, 60});
    return editorOf(canvas);
}

void paste(QTextEdit &editor, const QString &html)
{
    auto *data = new QMimeData;
    data->setHtml(html);
    QGuiApplication::clipboard()->setMimeData(data);
    editor.paste();
}

QString lines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QString("line %1 of a text\n").arg(i);
    return text;
}

/// How many pixels beside white letters are too bright for them to be read, away from the editor's
/// edge.
int tooBright(const QImage &shown, const QTextEdit &editor, int *looked)
{
    const QImage letters = TypedText::letters(editor);
    const QRect place = editor.viewport()->rect().adjusted(4, 4, -4, -4);
    int found = 0;
    for (const QPoint &pixel : TypedText::pixelsAround(letters)) {
        if (!place.contains(pixel))
            continue;
        ++*looked;
        // White on this gray has a contrast of 4.5.
        found += qGray(shown.pixel(pixel)) > 118 ? 1 : 0;
    }
    return found;
}

} // namespace

/// What is pasted into a text: long ones, and such with formats of their own.
class PastedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void aKeyTakesNoLongerForALongText_data()
    {
        QTest::addColumn<QString>("end");
        QTest::newRow("lines") << QString("\n");
        QTest::newRow("one paragraph") << QString(" ");
    }

    void aKeyTakesNoLongerForALongText()
    {
        QFETCH(QString, end);
        const auto timeOfAKey = [&end](int sentences) {
            const auto canvas = textCanvas();
            QTextEdit &editor = openEditor(*canvas);
            editor.insertPlainText((QString("a sentence of a text") + end).repeated(sentences));
            canvas->grab();
            return leastTimeOf([&] {
                QTest::keyClick(&editor, Qt::Key_X);
                canvas->grab();
            });
        };
        verifyAlike(timeOfAKey(1000), timeOfAKey(30));
    }

    void theWindowForTheClassTakesNoLongerForALongText()
    {
        const auto timeOfAPainting = [](int sentences) {
            const auto canvas = textCanvas();
            openEditor(*canvas).insertPlainText(lines(sentences));
            QImage screen(PAGE, QImage::Format_RGB32);
            QPainter painter(&screen);
            return leastTimeOf([&] { canvas->paintTypedText(&painter); });
        };
        verifyAlike(timeOfAPainting(10000), timeOfAPainting(30));
    }

    void everyLineCanBeReadWhereverALongTextIsScrolled()
    {
        const auto canvas = textCanvas();
        canvas->imageCaptured(page());
        canvas->setTextColor(Qt::white);
        QTextEdit &editor = openEditor(*canvas);
        editor.insertPlainText(lines(40));
        editor.clearFocus();
        QScrollBar *bar = editor.verticalScrollBar();
        QVERIFY(bar->maximum() > 400);
        for (const int place : {0, 7, 20, 333, bar->maximum() - 5, bar->maximum()}) {
            bar->setValue(place);
            const QImage shown = canvas->grab(editor.geometry()).toImage();
            int looked = 0;
            QCOMPARE(tooBright(shown, editor, &looked), 0);
            QVERIFY(looked > 1000);
        }
    }

    void theLettersOfAPastedTableCanBeRead()
    {
        const auto canvas = textCanvas();
        canvas->setTextColor(Qt::white);
        QTextEdit &editor = openEditor(*canvas);
        paste(editor, "<table border=0 cellpadding=12 style=\"color: "
                      "#ffffff\"><tr><td>one</td><td>two</td></tr>"
                      "<tr><td>three</td><td>four</td></tr></table>");
        editor.clearFocus();
        const QImage shown = canvas->grab(editor.geometry()).toImage();
        int looked = 0;
        QCOMPARE(tooBright(shown, editor, &looked), 0);
        QVERIFY(looked > 100);
    }

    void whatIsPastedWithoutAColourHasTheInkOfTheTool()
    {
        // On a dark desktop such a text was white while it was open and black in the drawing.
        QPalette dark(0x202326, 0x202326);
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
        const auto canvas = textCanvas();
        canvas->setTextColor(Qt::red);
        QTextEdit &editor = openEditor(*canvas);
        QTest::keyClicks(&editor, "ab");
        paste(editor, "<b>bold</b> and <span style=\"color: #0000ff\">blue</span><p>more</p>");
        QCOMPARE(editor.toPlainText(), QString("abbold and blue\nmore"));
        const auto formatAt = [&editor](int position) {
            QTextCursor cursor(editor.document());
            cursor.setPosition(position + 1);
            return cursor.charFormat();
        };
        for (const int red : {0, 2, 7, 16, 19})
            QCOMPARE(formatAt(red).foreground().color(), QColor(Qt::red));
        QCOMPARE(formatAt(12).foreground().color(), QColor(Qt::blue));
        QVERIFY(formatAt(2).fontWeight() > QFont::Normal);
        // What was pasted goes in one step.
        editor.undo();
        QCOMPARE(editor.toPlainText(), QString("ab"));
    }

    void whatIsPastedFirstHasTheInkOfTheTool()
    {
        const auto canvas = textCanvas();
        canvas->setTextColor(Qt::red);
        QTextEdit &editor = openEditor(*canvas);
        paste(editor, QString("<p>a sentence of a text</p>").repeated(2000));
        QTextCursor cursor(editor.document());
        for (const int place : {1, 20, 40000, editor.document()->characterCount() - 1}) {
            cursor.setPosition(place);
            QCOMPARE(cursor.charFormat().foreground().color(), QColor(Qt::red));
        }
    }

    void whatIsPastedOverAMarkedTextHasTheInkOfTheTool()
    {
        const auto canvas = textCanvas();
        canvas->setTextColor(Qt::red);
        QTextEdit &editor = openEditor(*canvas);
        QTest::keyClicks(&editor, "abcd");
        QTextCursor cursor = editor.textCursor();
        // From behind: the caret stands before what is marked.
        cursor.setPosition(3);
        cursor.setPosition(1, QTextCursor::KeepAnchor);
        editor.setTextCursor(cursor);
        paste(editor, "<i>x</i>");
        QCOMPARE(editor.toPlainText(), QString("axd"));
        cursor.setPosition(2);
        QCOMPARE(cursor.charFormat().foreground().color(), QColor(Qt::red));
        // And what is typed next.
        QTest::keyClick(&editor, Qt::Key_Y);
        cursor.setPosition(3);
        QCOMPARE(cursor.charFormat().foreground().color(), QColor(Qt::red));
    }
};

REGISTER_TEST(PastedTextTest)
#include "tst_pasted_text.moc"
