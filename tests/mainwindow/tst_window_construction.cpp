#include "tests/TestProgram.h"
#include "tests/mainwindow/WindowParts.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/Panel.h"
#include "widgets/Slider.h"

#include <algorithm>

using namespace WindowProbe;

/// How the window stands once it is built.
class WindowConstructionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void startsInLiveModeWithTheSidePanelOpen();
    void hasEverySlotOfTheTables();
    void everyButtonHasANameAndTheTipsStand();
    void canvasesHaveTheirIndications();
    void everyWidgetStandsWhereTheLayoutSays();
    void settingsOutOfRangeAreHarmless();
};

void WindowConstructionTest::startsInLiveModeWithTheSidePanelOpen()
{
    const MainWindow window;
    QCOMPARE(window.size(), QSize(938, 768));
    QCOMPARE(window.minimumSize(), QSize(800, 768));
    QCOMPARE(window.currentMode(), 0);
    QCOMPARE(window.currentCanvas(), stack(window)->widget(0));
    QCOMPARE(stack(window)->count(), 4);
    QCOMPARE(window.currentCanvas()->mouseMode(), ImageCanvas::Freehand);
    QVERIFY(window.button(Command::Freehand)->isChecked());
    QVERIFY(!window.findChild<Panel *>()->isHidden());
    QVERIFY(window.button(Command::Hand)->isHidden());
    QVERIFY(!window.button(Command::Hand)->isEnabled());
    QVERIFY(window.button(Command::FillBackground)->isHidden());
    QVERIFY(!window.button(Command::FillBackground)->isCheckable());
    QVERIFY(!window.button(Command::Snapshot)->isCheckable());
    QVERIFY(!window.recording());
    QVERIFY(!window.currentToolWindow());
    QCOMPARE(shownParts(window), (QStringList{"live box", "record time"}));
    auto *board = qobject_cast<ImageCanvas *>(stack(window)->widget(3));
    QCOMPARE(board->currentImage().size(), QSize(1280, 720));
    QCOMPARE(board->currentImage().pixel(5, 5), 0xFFFFFFFF);
    // The window keeps the frame by which it is closed and resized.
    QVERIFY(!(window.windowFlags() & Qt::FramelessWindowHint));
}

void WindowConstructionTest::hasEverySlotOfTheTables()
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QStringList names{"switchMode()",
                      "expand()",
                      "macro()",
                      "rotateRev()",
                      "About()",
                      "zoomInStart()",
                      "zoomInStop()",
                      "zoomOutStart()",
                      "zoomOutStop()",
                      "photographPlayDone()",
                      "filmTick()",
                      "photographPlayIntervalChanged(int)",
                      "photographIdChange(int)"};
    for (const Commands::Row &row : Commands::rows()) {
        for (const char *coded : {row.clickSlot, row.holdSlot, row.startSlot, row.stopSlot}) {
            if (coded)
                names << coded + 1;
        }
    }
    for (const QString &name : qAsConst(names))
        QVERIFY2(meta.indexOfSlot(qPrintable(name)) >= 0, qPrintable(name));
    QVERIFY(meta.indexOfSignal("modeChanged()") >= 0);
}

void WindowConstructionTest::everyButtonHasANameAndTheTipsStand()
{
    const MainWindow window;
    const auto buttons = window.findChildren<QAbstractButton *>();
    // One for each row with a skin, the titles of the panel's groups, and the second record button.
    const auto inTable =
        std::count_if(Commands::rows().begin(), Commands::rows().end(),
                      [](const Commands::Row &row) { return row.skin != nullptr; });
    QCOMPARE(buttons.size(), int(inTable) + Commands::PANEL_GROUP_COUNT + 1);
    for (const QAbstractButton *each : buttons) {
        QVERIFY2(!each->accessibleName().isEmpty() || !each->text().isEmpty(),
                 qPrintable(QString("%1,%2").arg(each->x()).arg(each->y())));
        // A caption needs no tip.
        QVERIFY2(!each->toolTip().isEmpty() || !each->text().isEmpty(),
                 qPrintable(each->accessibleName()));
    }
    for (const Commands::Row &row : Commands::rows()) {
        if (Commands::inPanel(row.group))
            QCOMPARE(window.button(row.command)->toolTip(), QString(row.text));
    }
}

void WindowConstructionTest::canvasesHaveTheirIndications()
{
    const MainWindow window;
    QCOMPARE(window.osdProcessors().size(), 4);
    QSet<OSDProcessor *> processors;
    for (int i = 0; i < 4; ++i) {
        auto *canvas = qobject_cast<ImageCanvas *>(stack(window)->widget(i));
        OSDProcessor *processor = window.osdProcessors().value(canvas);
        QVERIFY(processor);
        QCOMPARE(processor->parent(), &window);
        processors << processor;
    }
    QCOMPARE(processors.size(), 4);
}

void WindowConstructionTest::everyWidgetStandsWhereTheLayoutSays()
{
    MainWindow window;
    window.show();
    for (const QSize size : {QSize(938, 768), QSize(1100, 900), QSize(1919, 1055)}) {
        window.resize(size);
        QCoreApplication::processEvents();
        const int w = size.width();
        const int h = size.height();
        QCOMPARE(button(window, "About")->pos(), QPoint(34, h - 55));
        QCOMPARE(button(window, "Side panel")->pos(), QPoint(4, 50));
        QCOMPARE(button(window, "Live")->pos(), QPoint(178, 5));
        QCOMPARE(button(window, "Drawing Board")->pos(), QPoint(499, 5));
        QCOMPARE(stack(window)->geometry(), QRect(174, 25, w - 193, h - 100));
        const QWidget *filmBar = button(window, "Play")->parentWidget();
        QCOMPARE(filmBar->geometry(), QRect((w - 138 - 310) / 2 + 138, h - 60, 310, 37));
        const auto sliders = window.findChildren<Slider *>();
        QCOMPARE(sliders[0]->geometry(), QRect(filmBar->x() + 310, h - 60 + 37 - 120, 30, 120));
        const QWidget *photographBar = button(window, "Slideshow")->parentWidget();
        QCOMPARE(photographBar->geometry(), QRect((w - 138 - 270) / 2 + 138, h - 60, 270, 37));
        QCOMPARE(sliders[1]->geometry(), QRect(photographBar->x() + 280, h - 50, 160, 20));
        for (const HorizontalSlider *strip : window.findChildren<HorizontalSlider *>())
            QCOMPARE(strip->geometry(), QRect(174, h - 75, w - 191, 10));
        QCOMPARE(window.thumbnailWidget()->geometry(), QRect(0, h - 167, w - 193, 60));
        QCOMPARE(window.findChild<Panel *>()->height(), h - 100);
    }
}

void WindowConstructionTest::settingsOutOfRangeAreHarmless()
{
    Config::setSnapshotMode(CanvasModes::SnapshotMode(1));
    Config::setResolutionIndex(99);
    Config::setRecordingResolutionIndex(-7);
    Config::setSnapshotInterval(~0ULL);
    const MainWindow window;
    QCOMPARE(window.liveSource()->resolution(), QSize(1920, 1080));
    QCOMPARE(window.liveSource()->recordingResolution(), QSize(1920, 1080));
}

REGISTER_TEST(WindowConstructionTest)
#include "tst_window_construction.moc"
