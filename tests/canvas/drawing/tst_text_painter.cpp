#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/TextAnchor.h"
#include "canvas/drawing/TextPainter.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTextDocument>

namespace
{

constexpr QSize FULL_HD(1920, 1080);

struct Page {
    explicit Page(const QString &text)
    {
        document.setPlainText(text);
        document.setTextWidth(300);
        layer.reset(FULL_HD);
    }
    void paint(QSize transformedSize, QSize canvasSize)
    {
        TextPainter::paint(document, layer, anchor, transformedSize, canvasSize);
    }
    [[nodiscard]] QRegion touched() const
    {
        QRegion region;
        layer.forEachTouched(layer.rect(), [&region](const QRect &part) { region += part; });
        return region;
    }

    QTextDocument document;
    TextAnchor anchor;
    AnnotationLayer layer;
};

} // namespace

class TextPainterTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyTextLeavesTheLayerUnchangedButUsed()
    {
        Page page{QString()};
        page.paint(FULL_HD, FULL_HD);
        QVERIFY(page.layer.isUsed());
        QVERIFY(page.layer.image().isNull());
    }

    void aTextTouchesOnlyTheTilesOfItsLetters()
    {
        Page page("Hi");
        page.anchor.place({500, 500});
        page.paint(FULL_HD, FULL_HD);
        QCOMPARE(page.touched(), QRegion(448, 448, 128, 128) & page.touched());
        QVERIFY(!page.touched().isEmpty());
    }

    void lettersGrowAsTheViewIsLargerThanTheCanvas()
    {
        Page small("Hi");
        small.anchor.place({100, 100});
        small.paint(FULL_HD, FULL_HD);
        Page large("Hi");
        large.anchor.place({100, 100});
        large.paint(FULL_HD, FULL_HD / 16);
        QVERIFY(large.touched().boundingRect().height() >
                2 * small.touched().boundingRect().height());
    }

    void aCanvasWithoutPixelsSkipsTheDrawing_data()
    {
        QTest::addColumn<QSize>("canvas");
        QTest::newRow("nothing") << QSize(0, 0);
        QTest::newRow("no width") << QSize(0, 50);
        QTest::newRow("no height") << QSize(50, 0);
    }

    void aCanvasWithoutPixelsSkipsTheDrawing()
    {
        QFETCH(QSize, canvas);
        Page page("Hi");
        page.paint(FULL_HD, canvas);
        QVERIFY(page.layer.image().isNull());
        QVERIFY(page.layer.isUsed());
    }
};

REGISTER_TEST(TextPainterTest)
#include "tst_text_painter.moc"
