#include "canvas/TextEditor.h"
#include "tests/TestProgram.h"

#include <QPainter>
#include <QtTest>

#include <private/qguiapplication_p.h>
#include <private/qhighdpiscaling_p.h>

/// A screen of few lines, whose pixels are larger than the layout's units.
class CanvasSmallRatioTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setRatio(0.75); }
    void cleanupTestCase() { setRatio(1.0); }
    void theHaloLiesAroundTheLetters()
    {
        QWidget window;
        TextEditor editor(&window);
        // Only a window that has been shown knows such a ratio.
        window.resize(400, 200);
        window.show();
        QCOMPARE(editor.devicePixelRatioF(), 0.75);
        editor.resize(400, 200);
        QFont font("Arial");
        font.setPixelSize(40);
        editor.setFont(font);
        editor.setTextColor(Qt::black);
        editor.insertPlainText("Abcdefgh");

        QImage shown(300, 150, QImage::Format_RGB32);
        shown.fill(Qt::black);
        QPainter painter(&shown);
        // As windows are painted there, whose own painters leave out such a ratio.
        painter.scale(0.75, 0.75);
        editor.viewport()->render(&painter, {}, {}, {});
        painter.end();
        QRect halo;
        // Within the editor's outline.
        for (int y = 3; y < shown.height() - 3; ++y) {
            for (int x = 3; x < shown.width() - 3; ++x) {
                if (qGray(shown.pixel(x, y)) > 200)
                    halo |= QRect(x, y, 1, 1);
            }
        }
        const QRect letters = editor.cursorRect();
        QVERIFY2(std::abs(halo.right() - letters.left() * 0.75) < 8,
                 qPrintable(QString("%1 %2").arg(halo.right()).arg(letters.left())));
        QVERIFY(halo.bottom() < letters.bottom() * 0.75 + 4);
    }

private:
    /// As the program does on such a screen.
    static void setRatio(double ratio)
    {
        QHighDpiScaling::setGlobalFactor(ratio);
        QGuiApplicationPrivate::resetCachedDevicePixelRatio();
    }
};

REGISTER_TEST(CanvasSmallRatioTest)
#include "tst_canvas_small_ratio.moc"
