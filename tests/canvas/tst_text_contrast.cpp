#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/canvas/TypedText.h"

#include <QTextCursor>
#include <QTextEdit>

#include <cmath>

namespace
{

double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QPalette desktop(const QColor &ground, const QColor &ink)
{
    QPalette palette(ground, ground);
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, ink);
    palette.setColor(QPalette::WindowText, ink);
    return palette;
}

void fill(ImageCanvas &canvas, const QColor &color)
{
    QImage picture(640, 480, QImage::Format_RGB888);
    picture.fill(color);
    canvas.imageCaptured(picture);
}

} // namespace

/// The text that is being typed onto the picture, under the palettes that desktops have.
class TextContrastTest : public QObject
{
    Q_OBJECT

private slots:
    void theTextBeingTypedCanBeRead_data();
    void theTextBeingTypedCanBeRead();
    void eachInkOfALineCanBeRead();
    void whatAnInputMethodComposesCanBeRead_data();
    void whatAnInputMethodComposesCanBeRead();
    void theCaretIsSeenOnEveryPicture_data();
    void theCaretIsSeenOnEveryPicture();
    void cleanup() { QApplication::setPalette(QPalette()); }
};

void TextContrastTest::theTextBeingTypedCanBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<QColor>("ink");
    const QPalette palettes[] = {desktop(Qt::white, Qt::black), desktop(0x202326, Qt::white),
                                 desktop(Qt::black, Qt::yellow), desktop(0x7F7F7F, Qt::white)};
    const char *names[] = {"light", "dark", "yellow on black", "grey"};
    for (int i = 0; i < 4; ++i) {
        for (const Qt::GlobalColor ink : {Qt::black, Qt::white, Qt::yellow, Qt::red, Qt::blue})
            QTest::addRow("%s, %s", qPrintable(QColor(ink).name()), names[i])
                << palettes[i] << QColor(ink);
    }
}

void TextContrastTest::theTextBeingTypedCanBeRead()
{
    QFETCH(QPalette, palette);
    QFETCH(QColor, ink);
    QApplication::setPalette(palette);
    ImageCanvas canvas;
    canvas.resize(640, 480);
    canvas.show();
    QVERIFY(QTest::qWaitForWindowExposed(&canvas));
    canvas.setTextColor(ink);
    canvas.setMouseMode(ImageCanvas::Text);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, {100, 100});
    auto *editor = canvas.findChild<QTextEdit *>();
    QVERIFY(editor && editor->isVisible());
    QTest::keyClicks(editor, "Math");
    // The caret would lie over what is looked at.
    editor->clearFocus();
    const QVector<QPoint> around = TypedText::pixelsAround(TypedText::letters(*editor));
    QVERIFY(around.size() > 100);
    // Nothing is worse than a picture in the colour of the ink.
    for (const QColor &ground : {ink, QColor(Qt::white), QColor(Qt::black), QColor(Qt::gray)}) {
        fill(canvas, ground);
        const QImage shown = canvas.grab(editor->geometry()).toImage();
        for (const QPoint &pixel : around)
            QVERIFY2(contrast(shown.pixelColor(pixel), ink) >= 4.5,
                     qPrintable(
                         QString("%1 %2 on %3").arg(pixel.x()).arg(pixel.y()).arg(ground.name())));
        // The picture is seen right beside.
        QCOMPARE(shown.pixelColor(200, 20), ground);
    }
}

void TextContrastTest::eachInkOfALineCanBeRead()
{
    ImageCanvas canvas;
    canvas.resize(640, 480);
    canvas.show();
    fill(canvas, Qt::gray);
    canvas.setMouseMode(ImageCanvas::Text);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, {100, 100});
    auto *editor = canvas.findChild<QTextEdit *>();
    canvas.setTextColor(Qt::white);
    QTest::keyClicks(editor, "M");
    canvas.setTextColor(Qt::black);
    QTest::keyClicks(editor, "   M");
    editor->clearFocus();
    const QImage letters = TypedText::letters(*editor);
    const QImage shown = canvas.grab(editor->geometry()).toImage();
    int whites = 0;
    int blacks = 0;
    for (const QPoint &pixel : TypedText::pixelsAround(letters)) {
        const QColor color = shown.pixelColor(pixel);
        whites += color == QColor(Qt::white) ? 1 : 0;
        blacks += color == QColor(Qt::black) ? 1 : 0;
    }
    QVERIFY2(whites > 30 && blacks > 30, qPrintable(QString("%1 %2").arg(whites).arg(blacks)));
}

void TextContrastTest::whatAnInputMethodComposesCanBeRead_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("alone") << ""
                           << "";
    QTest::newRow("behind a text") << "Math "
                                   << "";
    QTest::newRow("within a text") << "Ma"
                                   << "th";
}

void TextContrastTest::whatAnInputMethodComposesCanBeRead()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    ImageCanvas canvas;
    canvas.resize(640, 480);
    canvas.show();
    QApplication::setActiveWindow(&canvas);
    QVERIFY(QTest::qWaitForWindowActive(&canvas));
    fill(canvas, Qt::white);
    canvas.setTextColor(Qt::white);
    canvas.setMouseMode(ImageCanvas::Text);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, {100, 100});
    auto *editor = canvas.findChild<QTextEdit *>();
    QTest::keyClicks(editor, before + after);
    for (int i = 0; i < after.size(); ++i)
        QTest::keyClick(editor, Qt::Key_Left);
    // The text is painted once before the input method begins.
    canvas.grab();
    // Two letters that are composed, and two more in the next moment.
    for (const QString composed : {"WM", "WMWM"}) {
        QInputMethodEvent composing(composed, {});
        QCoreApplication::sendEvent(editor, &composing);
        ImageCanvas written;
        written.resize(640, 480);
        written.show();
        fill(written, Qt::white);
        written.setTextColor(Qt::white);
        written.setMouseMode(ImageCanvas::Text);
        QTest::mouseClick(&written, Qt::LeftButton, {}, {100, 100});
        auto *whole = written.findChild<QTextEdit *>();
        whole->insertPlainText(before + composed + after);
        whole->clearFocus();
        int unread = 0;
        int looked = 0;
        const QRect caret = editor->cursorRect().adjusted(-2, -2, 2, 2);
        const QImage shown = canvas.grab(editor->geometry()).toImage();
        for (const QPoint &pixel : TypedText::pixelsAround(TypedText::letters(*whole))) {
            if (caret.contains(pixel))
                continue;
            ++looked;
            unread += contrast(shown.pixelColor(pixel), Qt::white) >= 4.5 ? 0 : 1;
        }
        QVERIFY(looked > 50);
        QVERIFY2(unread == 0, qPrintable(QString("%1 of %2").arg(unread).arg(looked)));
    }
}

void TextContrastTest::theCaretIsSeenOnEveryPicture_data()
{
    QTest::addColumn<QColor>("ground");
    for (const Qt::GlobalColor ground : {Qt::black, Qt::white, Qt::gray, Qt::darkGray})
        QTest::addRow("%s", qPrintable(QColor(ground).name())) << QColor(ground);
    QTest::newRow("halfway") << QColor(0x7F7F7F);
}

void TextContrastTest::theCaretIsSeenOnEveryPicture()
{
    QFETCH(QColor, ground);
    ImageCanvas canvas;
    canvas.resize(640, 480);
    canvas.show();
    QApplication::setActiveWindow(&canvas);
    QVERIFY(QTest::qWaitForWindowActive(&canvas));
    fill(canvas, ground);
    canvas.setMouseMode(ImageCanvas::Text);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, {100, 100});
    auto *editor = canvas.findChild<QTextEdit *>();
    QTRY_VERIFY(editor->hasFocus());
    const QRect caret = editor->cursorRect();
    const QImage shown = canvas.grab(editor->geometry()).toImage();
    double best = 1.0;
    for (int x = caret.left(); x <= caret.right(); ++x)
        best = std::max(best, contrast(shown.pixelColor(x, caret.center().y()), ground));
    QVERIFY2(best >= 4.5, qPrintable(QString::number(best)));
}

REGISTER_TEST(TextContrastTest)
#include "tst_text_contrast.moc"
