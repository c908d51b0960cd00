#include "canvas/ImageCanvas.h"
#include "mainwindow/presentation/PresentationView.h"
#include "tests/canvas/LargeAllocations.h"

#include <QtTest>

#include <algorithm>
#include <vector>

using namespace LargeAllocations;

/// A frame that the class sees as well takes no more memory than one that it does not.
class SteadyPresentationTest : public QObject
{
    Q_OBJECT

private slots:
    void allocatesNothingLargeAndFaultsNoPage_data()
    {
        QTest::addColumn<QSize>("screenSize");
        QTest::addColumn<bool>("held");
        QTest::newRow("smaller") << QSize(1024, 768) << false;
        QTest::newRow("pixel for pixel") << QSize(1920, 1080) << false;
        QTest::newRow("larger") << QSize(3840, 2160) << false;
        QTest::newRow("held") << QSize(1920, 1080) << true;
    }

    void allocatesNothingLargeAndFaultsNoPage()
    {
        QFETCH(QSize, screenSize);
        QFETCH(bool, held);
        ImageCanvas canvas;
        canvas.resize(1000, 670);
        PresentationView view(&canvas);
        view.resize(screenSize);
        view.setCanvas(&canvas);
        std::vector<uchar> frame(std::size_t{1920} * 1080 * 3, uchar{100});
        QImage canvasScreen(canvas.size(), QImage::Format_RGB32);
        QImage viewScreen(screenSize, QImage::Format_RGB32);
        const auto showOne = [&](uchar value) {
            std::fill(frame.begin(), frame.end(), value);
            canvas.imageCaptured(frame.data(), 1920, 1080, false, false);
            canvas.render(&canvasScreen, QPoint(), QRegion(), QWidget::RenderFlags());
            view.render(&viewScreen, QPoint(), QRegion(), QWidget::RenderFlags());
        };
        for (int i = 0; i < 10; ++i)
            showOne(static_cast<uchar>(i));
        view.setHeld(held);
        for (int i = 0; i < 10; ++i)
            showOne(static_cast<uchar>(i));

        const int allocationsBefore = count();
        const long faultsBefore = pageFaults();
        for (int i = 100; i < 120; ++i)
            showOne(static_cast<uchar>(i));
        const long faults = pageFaults() - faultsBefore;
        QCOMPARE(count() - allocationsBefore, 0);
        QVERIFY2(faults < 10, qPrintable(QString::number(faults)));
        const QColor seen = viewScreen.pixelColor(screenSize.width() / 2, screenSize.height() / 2);
        QCOMPARE(seen.red(), held ? 9 : 119);
    }
};

QTEST_MAIN(SteadyPresentationTest)
#include "tst_steady_presentation.moc"
