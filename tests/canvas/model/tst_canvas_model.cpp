#include "canvas/model/CanvasModel.h"
#include "canvas/model/PictureSettings.h"
#include "canvas/model/ShotSaver.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextDocument>

#include <thread>
#include <vector>

namespace
{

constexpr QSize FRAME(64, 48);

QImage plain(const QColor &color, QSize size = FRAME)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(color);
    return picture;
}

/// A model and the settings that it reads.
struct Canvas {
    PictureSettings settings;
    CanvasModel model{settings};

    [[nodiscard]] QImage picture() const { return frameImage(model.shown().picture); }
    void show(const QImage &image) { (void)model.take(image); }
    void drag(CanvasModes::MouseMode mode, QPoint from, QPoint to)
    {
        model.press(mode, from, FRAME);
        model.move(mode, to, FRAME, {Qt::red, 3, false, Qt::black});
    }
};

} // namespace

/// The canvas without its widget.
class CanvasModelTest : public QObject
{
    Q_OBJECT

private slots:
    void aFrameBecomesThePicture()
    {
        Canvas canvas;
        QVERIFY(canvas.picture().isNull());
        QCOMPARE(canvas.model.pictureSize(), QSize(0, 0));
        canvas.show(plain(Qt::red));
        QCOMPARE(canvas.picture(), plain(Qt::red));
        QCOMPARE(canvas.model.pictureSize(), FRAME);
        QCOMPARE(canvas.model.viewShape().frameSize(), FRAME);
    }

    void theCallersBufferBecomesWhatIsShown()
    {
        Canvas canvas;
        canvas.settings.effectMode = CanvasModes::EffectNegative;
        std::vector<uchar> pixels(std::size_t{64} * 48 * 3, 10);
        (void)canvas.model.take(pixels.data(), FRAME, false, false);
        QCOMPARE(pixels, std::vector<uchar>(std::size_t{64} * 48 * 3, 245));
    }

    void aFrozenPictureStays()
    {
        Canvas canvas;
        canvas.settings.frozen = true;
        // There is no picture yet that could be kept.
        canvas.show(plain(Qt::red));
        canvas.show(plain(Qt::blue));
        QCOMPARE(canvas.picture(), plain(Qt::red));
        canvas.settings.frozen = false;
        canvas.show(plain(Qt::blue));
        QCOMPARE(canvas.picture(), plain(Qt::blue));
    }

    void aRefreshMakesAPictureOnlyWhenSomethingHasChanged()
    {
        Canvas canvas;
        canvas.show(plain(Qt::white));
        const auto serialAfter = [&canvas](const std::function<void()> &change) {
            change();
            (void)canvas.model.refresh();
            return canvas.model.shown().serial;
        };
        const std::uint64_t first = serialAfter([] {});
        QCOMPARE(serialAfter([] {}), first);
        QCOMPARE(serialAfter([&] { canvas.settings.maskMode = CanvasModes::MaskTop; }), first + 1);
        QCOMPARE(serialAfter([&] { canvas.model.zoomIn(); }), first + 2);
        QCOMPARE(serialAfter([&] {
                     canvas.drag(CanvasModes::Line, {4, 30}, {60, 30});
                 }),
                 first + 3);
        QCOMPARE(serialAfter([&] { canvas.model.release(); }), first + 3);
        QCOMPARE(serialAfter([&] { canvas.model.turn(true); }), first + 4);
    }

    void aDragDrawsOnThePicture()
    {
        Canvas canvas;
        canvas.show(plain(Qt::white));
        QVERIFY(!canvas.model.release());
        canvas.drag(CanvasModes::Line, {4, 20}, {60, 20});
        QVERIFY(canvas.model.release());
        (void)canvas.model.refresh();
        QCOMPARE(canvas.picture().pixelColor(30, 20), QColor(Qt::red));
        canvas.model.clearDrawing();
        (void)canvas.model.refresh();
        QCOMPARE(canvas.picture(), plain(Qt::white));
    }

    void aClipIsAPartOfThePicture()
    {
        Canvas canvas;
        canvas.show(plain(Qt::green));
        canvas.model.press(CanvasModes::Clip, {20, 20}, FRAME * 2);
        canvas.model.move(CanvasModes::Clip, {80, 60}, FRAME * 2, {});
        QCOMPARE(canvas.model.clipRectangle(), QRect(QPoint(10, 10), QPoint(40, 30)));
        QCOMPARE(canvas.model.clippingRect(FRAME * 2), QRectF(20, 20, 62, 42));
        const std::optional<QRect> selection = canvas.model.release();
        QVERIFY(selection);
        QCOMPARE(canvas.model.part(*selection), plain(Qt::green, {31, 21}));
        QVERIFY(canvas.model.part({100, 100, 5, 5}).isNull());
        QVERIFY(canvas.model.part(QRect()).isNull());
        QVERIFY(canvas.model.part(QRect(QPoint(20, 20), QPoint(10, 10))).isNull());
    }

    void aWrittenTextBecomesDrawing()
    {
        Canvas canvas;
        canvas.show(plain(Qt::white));
        QTextDocument document("M");
        document.setTextWidth(60);
        canvas.model.placeText({5, 5}, FRAME);
        canvas.model.commitText(document, FRAME);
        (void)canvas.model.refresh();
        QVERIFY(canvas.picture() != plain(Qt::white));
    }

    void aShotIsClaimedOnce()
    {
        QTemporaryDir folder;
        Canvas canvas;
        canvas.model.arm(OutputFolder::of(folder.path()), {});
        const CanvasModel::Shot shot = canvas.model.take(plain(Qt::red));
        QVERIFY(shot.picture);
        // Both threads have seen that it is due while its folder was asked.
        const CanvasModel::Shot again = canvas.model.refresh();
        QVERIFY(again.picture);
        QVERIFY(ShotSaver::save(canvas.model, shot).taken);
        QVERIFY(!ShotSaver::save(canvas.model, again).taken);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
        QVERIFY(!canvas.model.refresh().picture);
    }

    void aShotForAnotherFolderIsNotTaken()
    {
        QTemporaryDir first;
        QTemporaryDir second;
        Canvas canvas;
        canvas.model.arm(OutputFolder::of(first.path()), {});
        const CanvasModel::Shot shot = canvas.model.take(plain(Qt::red));
        canvas.model.arm(OutputFolder::of(second.path()), {});
        QVERIFY(!ShotSaver::save(canvas.model, shot).taken);
        QVERIFY(QDir(first.path()).isEmpty());
        QVERIFY(canvas.model.refresh().picture);
    }

    void aShotWaitsForItsFolder()
    {
        QTemporaryDir folder;
        Canvas canvas;
        canvas.model.arm(OutputFolder::of(folder.filePath("late")), {});
        QVERIFY(!ShotSaver::save(canvas.model, canvas.model.take(plain(Qt::red))).taken);
        QVERIFY(QDir(folder.path()).mkdir("late"));
        const ShotSaver::Outcome outcome = ShotSaver::save(canvas.model, canvas.model.refresh());
        QVERIFY(outcome.taken);
        QVERIFY(outcome.reason.isNull());
    }

    void aShotThatCannotBeWrittenIsTakenAndSaysWhy()
    {
        QTemporaryDir folder;
        Canvas canvas;
        canvas.model.arm(OutputFolder::of(folder.path()), {});
        const CanvasModel::Shot shot = canvas.model.take(plain(Qt::red));
        // Folders of the names that the file may have.
        const QDateTime now = QDateTime::currentDateTime();
        for (int second = 0; second < 60; ++second)
            QVERIFY(QDir(folder.path())
                        .mkpath(now.addSecs(second).toString("yyyy-MM-dd_hh-mm-ss.jpg") + "/x"));
        const ShotSaver::Outcome outcome = ShotSaver::save(canvas.model, shot);
        QVERIFY(outcome.taken);
        QVERIFY(!outcome.reason.isEmpty());
        QVERIFY(outcome.failedPath.startsWith(folder.path()));
    }

    void theShapeOfTheViewIsReadWhileAFrameIsWorkedOn()
    {
        Canvas canvas;
        canvas.show(plain(Qt::white));
        canvas.model.turn(true);
        QCOMPARE(canvas.model.viewShape().rotation(), 1);
        QCOMPARE(canvas.model.viewShape().scale(), 0.75);
        QCOMPARE(canvas.model.viewShape().rotatedSize(), QSize(48, 64));
        std::atomic<bool> stop{false};
        std::thread frames([&] {
            std::vector<uchar> pixels(std::size_t{64} * 48 * 3);
            while (!stop)
                (void)canvas.model.take(pixels.data(), FRAME, false, false);
        });
        for (int i = 0; i < 1000; ++i) {
            canvas.model.turn(true);
            QCOMPARE(canvas.model.viewShape().rotation(), (i + 2) % 4);
        }
        stop = true;
        frames.join();
    }

    void stepsAreTakenBackWhileFramesOfChangingSizesArrive()
    {
        Canvas canvas;
        std::atomic<bool> stop{false};
        std::thread frames([&] {
            std::vector<uchar> pixels(std::size_t{64} * 48 * 3);
            const std::vector<QSize> sizes{{64, 48}, {48, 64}, {31, 17}, {1, 1}, {0, 0}};
            for (std::size_t i = 0; !stop; ++i)
                (void)canvas.model.take(pixels.data(), sizes[i / 9 % sizes.size()], false, false);
        });
        QRandomGenerator random(11);
        const auto anywhere = [&random] {
            return QPoint(random.bounded(-9, 80), random.bounded(-9, 80));
        };
        for (int i = 0; i < 20000; ++i) {
            canvas.drag(static_cast<CanvasModes::MouseMode>(random.bounded(9)), anywhere(),
                        anywhere());
            const int next = random.bounded(8);
            if (next < 3)
                (void)canvas.model.undo();
            if (next != 0)
                (void)canvas.model.release();
            if (next == 4)
                (void)canvas.model.redo();
            if (next == 5)
                canvas.model.turn(i % 2 == 0);
            if (next == 6)
                canvas.model.clearDrawing();
            canvas.model.packHistory();
        }
        stop = true;
        frames.join();
        // All sizes have been shown: what can be undone now comes back as it was. The last step is
        // one that nothing has taken back.
        canvas.show(plain(Qt::white));
        canvas.drag(CanvasModes::Line, {5, 5}, {40, 30});
        (void)canvas.model.release();
        canvas.show(plain(Qt::white));
        const QImage before = canvas.picture();
        int steps = 0;
        for (; canvas.model.canUndo(); ++steps)
            QVERIFY(canvas.model.undo());
        QVERIFY(steps > 0);
        for (; steps > 0; --steps)
            QVERIFY(canvas.model.redo());
        canvas.show(plain(Qt::white));
        QCOMPARE(canvas.picture(), before);
    }

    void anEmptyFrameLeavesNothing()
    {
        Canvas canvas;
        canvas.show(plain(Qt::red));
        canvas.show(QImage());
        QVERIFY(canvas.picture().isNull());
        QCOMPARE(canvas.model.viewShape().frameSize(), QSize(0, 0));
        canvas.drag(CanvasModes::Line, {1, 1}, {9, 9});
        QVERIFY(canvas.model.release());
        canvas.show(plain(Qt::blue));
        QCOMPARE(canvas.picture(), plain(Qt::blue));
    }
};

REGISTER_TEST(CanvasModelTest)
#include "tst_canvas_model.moc"
