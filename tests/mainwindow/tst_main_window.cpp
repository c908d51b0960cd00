#include "WindowProbe.h"

#include "app/Config.h"
#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/ModeRules.h"
#include "mainwindow/ThumbnailWidget.h"
#include "sources/LiveSource.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageWidget.h"
#include "widgets/Panel.h"
#include "widgets/Slider.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

using ButtonTable::PanelButton;
using namespace WindowProbe;

namespace
{

QList<PanelButton> poppingButtons()
{
    return {PanelButton::Line,   PanelButton::Rectangle, PanelButton::Freehand,
            PanelButton::Circle, PanelButton::Arrow,     PanelButton::Triangle,
            PanelButton::Eraser, PanelButton::Text,      PanelButton::FillBackground,
            PanelButton::Mask,   PanelButton::Effect};
}

/// Exactly these of the widgets that come and go with the modes are shown.
QStringList shownParts(const MainWindow &window)
{
    QStringList shown;
    const auto add = [&shown](const QWidget *widget, const QString &name) {
        if (!widget->isHidden())
            shown << name;
    };
    add(button(window, "Play")->parentWidget(), "film bar");
    add(window.findChildren<Slider *>()[0], "volume");
    add(button(window, "Slideshow")->parentWidget(), "photograph bar");
    add(window.findChildren<Slider *>()[1], "interval");
    add(window.findChildren<HorizontalSlider *>()[0], "position");
    add(window.findChildren<HorizontalSlider *>()[1], "scroll bar");
    add(window.thumbnailWidget(), "strip");
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text().contains('/'))
            add(label, "index");
        else if (label->text().contains("sec"))
            add(label, "interval label");
        else
            add(label, "record time");
    }
    for (const ImageButton *record : window.findChildren<ImageButton *>()) {
        if (record->accessibleName() == "Record video" && record->parentWidget()->width() == 60)
            add(record->parentWidget(), "live box");
    }
    shown.sort();
    return shown;
}

QString pictureFile(const QString &folder, const QString &name, QRgb color)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(color);
    const QString path = QDir(folder).filePath(name);
    if (!image.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// Answers the next file dialog with a path, as if it had been typed.
void chooseFile(QObject *context, const QString &path)
{
    whenAsked<QFileDialog>(context, [path](QFileDialog *dialog) {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startsInLiveModeWithTheSidePanelOpen();
    void hasEverySlotOfTheTables();
    void everyButtonHasANameAndTheTipsStand();
    void canvasesHaveTheirIndications();
    void modesShowTheirPartsAndButtons_data();
    void modesShowTheirPartsAndButtons();
    void theCurrentModesButtonChangesNothing();
    void panelFollowsTheCanvasOfTheMode();
    void sidePanelOpensAndCloses();
    void everyWidgetStandsWhereTheLayoutSays();
    void holdingOpensThePopUpAndItsTool_data();
    void holdingOpensThePopUpAndItsTool();
    void popUpsCloseByTheirRules();
    void onlyOnePopUpIsOpen();
    void maskButtonBringsTheMaskBack();
    void zoomStepsOnOtherCanvases();
    void rotateFreezeAndMacroReachTheirTargets();
    void snapshotWithoutAFolderSaysSo();
    void singleSnapshotIsWritten();
    void seriesBelongsToItsCanvas();
    void recordingWithoutAFolderSaysSo();
    void recordingShowsItselfAndUnfreezes();
    void recordingSurvivesAModeChange();
    void photographsAreChosenByOneOfThem();
    void cancelledDialogsChangeNothing();
    void aVanishedFilmIsIgnored();
    void slideshowButtonFollowsTheShow();
    void intervalPlacesReachTheSource();
    void longIndexesFitTheirLabel();
    void thousandPopUpsLeaveNothingBehind();
    void settingsOutOfRangeAreHarmless();
    void withoutAPrinterItSaysSo();
};

void TestMainWindow::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // No print server, whatever the machine has.
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock");
}

void TestMainWindow::init()
{
    Config::setSnapshotPath(QDir::tempPath());
    Config::setRecordPath(QDir::tempPath());
    Config::setSnapshotMode(CanvasModes::Single);
    Config::setSnapshotInterval(1);
    Config::setResolutionIndex(1);
    Config::setRecordingResolutionIndex(1);
}

void TestMainWindow::startsInLiveModeWithTheSidePanelOpen()
{
    const MainWindow window;
    QCOMPARE(window.size(), QSize(938, 768));
    QCOMPARE(window.minimumSize(), QSize(800, 768));
    QCOMPARE(window.currentMode(), 0);
    QCOMPARE(window.currentCanvas(), stack(window)->widget(0));
    QCOMPARE(stack(window)->count(), 4);
    QCOMPARE(window.currentCanvas()->mouseMode(), ImageCanvas::Freehand);
    QVERIFY(window.panelButton(PanelButton::Freehand)->isChecked());
    QVERIFY(!window.findChild<Panel *>()->isHidden());
    QVERIFY(window.panelButton(PanelButton::Hand)->isHidden());
    QVERIFY(!window.panelButton(PanelButton::Hand)->isEnabled());
    QVERIFY(window.panelButton(PanelButton::FillBackground)->isHidden());
    QVERIFY(!window.panelButton(PanelButton::FillBackground)->isCheckable());
    QVERIFY(!window.panelButton(PanelButton::Snapshot)->isCheckable());
    QVERIFY(!window.recording());
    QVERIFY(!window.currentToolWindow());
    QCOMPARE(shownParts(window), (QStringList{"live box", "record time"}));
    auto *board = qobject_cast<ImageCanvas *>(stack(window)->widget(3));
    QCOMPARE(board->currentImage().size(), QSize(1280, 720));
    QCOMPARE(board->currentImage().pixel(5, 5), 0xFFFFFFFF);
    // The window keeps the frame by which it is closed and resized.
    QVERIFY(!(window.windowFlags() & Qt::FramelessWindowHint));
}

void TestMainWindow::hasEverySlotOfTheTables()
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
    for (const auto &row : ButtonTable::panelRows()) {
        for (const char *coded : {row.clickSlot, row.holdSlot}) {
            if (coded)
                names << coded + 1;
        }
    }
    for (const auto &row : ButtonTable::filmBarRows())
        names << row.slot + 1;
    for (const auto &row : ButtonTable::photographBarRows())
        names << row.slot + 1;
    for (const QString &name : qAsConst(names))
        QVERIFY2(meta.indexOfSlot(qPrintable(name)) >= 0, qPrintable(name));
    QVERIFY(meta.indexOfSignal("modeChanged()") >= 0);
}

void TestMainWindow::everyButtonHasANameAndTheTipsStand()
{
    const MainWindow window;
    const auto buttons = window.findChildren<QAbstractButton *>();
    // 4 modes, About, side panel, 4 titles, 26 of the panel, 1 record, 7 and 6 of the bars.
    QCOMPARE(buttons.size(), 4 + 1 + 1 + 4 + 26 + 1 + 7 + 6);
    for (const QAbstractButton *each : buttons) {
        QVERIFY2(!each->accessibleName().isEmpty() || !each->text().isEmpty(),
                 qPrintable(QString("%1,%2").arg(each->x()).arg(each->y())));
    }
    for (const auto &row : ButtonTable::panelRows())
        QCOMPARE(window.panelButton(row.button)->toolTip(), QString(row.toolTip));
}

void TestMainWindow::canvasesHaveTheirIndications()
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

void TestMainWindow::modesShowTheirPartsAndButtons_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int from = 0; from < 4; ++from) {
        for (int to = 0; to < 4; ++to) {
            if (from != to)
                QTest::addRow("%d to %d", from, to) << from << to;
        }
    }
}

void TestMainWindow::modesShowTheirPartsAndButtons()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const QStringList parts[] = {
        {"live box", "record time"}, {"film bar", "position"}, {"index", "photograph bar"}, {}};
    MainWindow window;
    enter(window, from);
    // What the mode left may have shown goes with it.
    if (from == 1)
        button(window, "Volume")->click();
    if (from == 2) {
        button(window, "Thumbnails")->click();
        button(window, "Slideshow interval")->click();
        QCOMPARE(shownParts(window), (QStringList{"index", "interval", "interval label",
                                                  "photograph bar", "scroll bar", "strip"}));
    }
    QSignalSpy changed(&window, SIGNAL(modeChanged()));
    enter(window, to);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(window.currentMode(), to);
    QCOMPARE(stack(window)->currentIndex(), to);
    QCOMPARE(window.currentCanvas(), stack(window)->widget(to));
    QCOMPARE(shownParts(window), parts[to]);
    for (int i = 0; i < ButtonTable::PANEL_BUTTON_COUNT; ++i) {
        const bool expected = ModeRules::enabled(PanelButton(i), to);
        QCOMPARE(window.panelButton(PanelButton(i))->isEnabled(), expected);
        QCOMPARE(!window.panelButton(PanelButton(i))->isHidden(), expected);
    }
    enter(window, from);
    QCOMPARE(shownParts(window), parts[from]);
    for (const char *name : {"Volume", "Thumbnails", "Slideshow interval", "Slideshow"})
        QVERIFY(!button(window, name)->isChecked());
}

void TestMainWindow::theCurrentModesButtonChangesNothing()
{
    MainWindow window;
    QSignalSpy changed(&window, SIGNAL(modeChanged()));
    window.lineHold();
    enter(window, 0);
    QCOMPARE(changed.count(), 0);
    QVERIFY(window.currentToolWindow());
    QVERIFY(window.panelButton(PanelButton::Hand)->isHidden());
}

void TestMainWindow::panelFollowsTheCanvasOfTheMode()
{
    MainWindow window;
    window.panelButton(PanelButton::Arrow)->click();
    window.currentCanvas()->maskMode = ImageCanvas::MaskTop;
    window.currentCanvas()->effectMode = ImageCanvas::EffectNegative;
    window.panelButton(PanelButton::Freeze)->click();
    QVERIFY(window.currentCanvas()->frozen);

    enter(window, 3);
    QVERIFY(window.panelButton(PanelButton::Hand)->isChecked());
    QVERIFY(!window.panelButton(PanelButton::Mask)->isChecked());
    QVERIFY(!window.panelButton(PanelButton::Freeze)->isChecked());
    const struct {
        ImageCanvas::MouseMode mode;
        PanelButton button;
    } tools[] = {{ImageCanvas::Hand, PanelButton::Hand},
                 {ImageCanvas::Text, PanelButton::Text},
                 {ImageCanvas::Clip, PanelButton::Clip},
                 {ImageCanvas::Eraser, PanelButton::Eraser}};
    for (const auto &tool : tools) {
        window.panelButton(tool.button)->click();
        QCOMPARE(window.currentCanvas()->mouseMode(), tool.mode);
        enter(window, 0);
        QVERIFY(window.panelButton(PanelButton::Arrow)->isChecked());
        QVERIFY(window.panelButton(PanelButton::Mask)->isChecked());
        QVERIFY(window.panelButton(PanelButton::Freeze)->isChecked());
        enter(window, 3);
        QVERIFY(window.panelButton(tool.button)->isChecked());
    }
    // A mode that no tool has checks nothing.
    window.currentCanvas()->setMouseMode(ImageCanvas::MouseMode(12));
    enter(window, 0);
    enter(window, 3);
    for (int i = 0; i < 12; ++i)
        QVERIFY(!window.panelButton(PanelButton(i))->isChecked());
    window.panelButton(PanelButton::Line)->click();
    window.panelButton(PanelButton::Circle)->click();
    QVERIFY(!window.panelButton(PanelButton::Line)->isChecked());
}

void TestMainWindow::sidePanelOpensAndCloses()
{
    MainWindow window;
    window.expand();
    QCOMPARE(window.size(), QSize(800, 768));
    QVERIFY(window.findChild<Panel *>()->isHidden());
    QCOMPARE(stack(window)->geometry(), QRect(36, 25, 745, 668));

    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.move(300, 10);
    const QPoint before = window.pos();
    button(window, "Side panel")->click();
    QCOMPARE(window.size(), QSize(938, 768));
    QCOMPARE(window.pos(), before - QPoint(138, 0));
    QCOMPARE(stack(window)->geometry(), QRect(174, 25, 745, 668));
    QCOMPARE(window.findChild<Panel *>()->pos(), QPoint(40, 30));

    window.lineHold();
    QPointer<ToolWindow> popup = window.currentToolWindow();
    button(window, "Side panel")->click();
    QVERIFY(!popup);
    QVERIFY(!window.currentToolWindow());
    QCOMPARE(window.pos(), before);

    // The minimum width takes a part of the step: the right edge stays all the same.
    window.expand();
    window.resize(820, 768);
    const int right = window.geometry().right();
    window.expand();
    QCOMPARE(window.width(), 800);
    QCOMPARE(window.geometry().right(), right);
}

void TestMainWindow::everyWidgetStandsWhereTheLayoutSays()
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

void TestMainWindow::holdingOpensThePopUpAndItsTool_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("mouseMode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QByteArray>("kind");
    const auto add = [](PanelButton panelButton, int mode, const char *title, const char *kind) {
        QTest::newRow(title) << int(panelButton) << mode << QString(title) << QByteArray(kind);
    };
    add(PanelButton::Line, 2, "Line", "ColorToolWindow");
    add(PanelButton::Rectangle, 4, "Rectangle", "ColorToolWindow");
    add(PanelButton::Freehand, 1, "Freehand", "ColorToolWindow");
    add(PanelButton::Circle, 5, "Circle", "ColorToolWindow");
    add(PanelButton::Arrow, 3, "Arrow", "ColorToolWindow");
    add(PanelButton::Triangle, 6, "Triangle", "ColorToolWindow");
    add(PanelButton::Eraser, 7, "Eraser", "ColorToolWindow");
    add(PanelButton::Text, 9, "Text", "TextToolWindow");
    add(PanelButton::FillBackground, 8, "Background Color", "FillBackgroundToolWindow");
    add(PanelButton::Mask, 8, "Effect", "MaskToolWindow");
    add(PanelButton::Effect, 8, "Color Effect", "EffectToolWindow");
}

void TestMainWindow::holdingOpensThePopUpAndItsTool()
{
    QFETCH(int, button);
    QFETCH(int, mouseMode);
    QFETCH(QString, title);
    QFETCH(QByteArray, kind);
    MainWindow window;
    enter(window, 3);
    window.currentCanvas()->setMouseMode(ImageCanvas::Clip);
    ImageButton *panelButton = window.panelButton(PanelButton(button));
    emit panelButton->hold();
    ToolWindow *popup = window.currentToolWindow();
    QVERIFY(popup);
    QCOMPARE(popup->metaObject()->className(), kind.constData());
    QCOMPARE(popup->findChild<QLabel *>()->text(), title);
    QCOMPARE(popup->toolButton(), panelButton);
    QVERIFY(popup->isVisible());
    QCOMPARE(int(window.currentCanvas()->mouseMode()), mouseMode);
}

void TestMainWindow::popUpsCloseByTheirRules()
{
    MainWindow window;
    // Held again it is replaced, clicked it stays, and any other tool closes it.
    window.lineHold();
    QPointer<ToolWindow> first = window.currentToolWindow();
    window.lineHold();
    QVERIFY(!first);
    QPointer<ToolWindow> popup = window.currentToolWindow();
    window.panelButton(PanelButton::Line)->click();
    QCOMPARE(window.currentToolWindow(), popup.data());
    // A window that its own button has closed still belongs to its tool.
    popup->close();
    window.panelButton(PanelButton::Line)->click();
    QCOMPARE(window.currentToolWindow(), popup.data());

    for (const auto &row : ButtonTable::panelRows()) {
        if (!row.clickSlot || row.button == PanelButton::Print ||
            row.button == PanelButton::Record || row.button == PanelButton::Settings)
            continue;
        enter(window, row.button == PanelButton::FillBackground ? 3 : 0);
        // The effect's pop-up is no clicked button's own.
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(popup);
        window.panelButton(row.button)->setEnabled(true);
        window.panelButton(row.button)->click();
        QVERIFY2(!popup, row.skin);
        QVERIFY(!window.currentToolWindow());
    }
    for (const char *slot :
         {"zoomInStart", "zoomInStop", "zoomOutStart", "zoomOutStop", "rotateRev", "macro",
          "filmPlay", "filmPause", "filmStop", "filmBackward", "filmForward", "filmVolume",
          "photographPrevious", "photographPlay", "photographNext", "photographPreview",
          "photographPlayInterval"}) {
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(QMetaObject::invokeMethod(&window, slot));
        QVERIFY2(!popup, slot);
    }
    for (const char *slot : {"filmTick", "photographPlayDone"}) {
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(QMetaObject::invokeMethod(&window, slot));
        QVERIFY2(popup, slot);
    }
}

void TestMainWindow::onlyOnePopUpIsOpen()
{
    MainWindow window;
    enter(window, 3);
    for (const PanelButton each : poppingButtons()) {
        emit window.panelButton(each)->hold();
        QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
    }
    window.About();
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
    enter(window, 0);
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 0);
    window.settings();
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
}

void TestMainWindow::maskButtonBringsTheMaskBack()
{
    MainWindow window;
    ImageButton *mask = window.panelButton(PanelButton::Mask);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskCircle);
    window.currentCanvas()->maskMode = ImageCanvas::MaskLeft;
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskNone);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskLeft);
    // No mask is nothing to remember, and one memory serves all canvases.
    window.currentCanvas()->maskMode = ImageCanvas::MaskNone;
    mask->click();
    enter(window, 3);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskLeft);
}

void TestMainWindow::zoomStepsOnOtherCanvases()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    ImageButton *in = window.panelButton(PanelButton::ZoomIn);
    ImageButton *out = window.panelButton(PanelButton::ZoomOut);
    QCOMPARE(window.currentCanvas()->zoomScale(), 1.0);
    QTest::mousePress(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    QTest::mouseRelease(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    QTest::mouseClick(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 3.0);
    QTest::mouseClick(out, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    window.panelButton(PanelButton::ZoomReset)->click();
    QCOMPARE(window.currentCanvas()->zoomScale(), 1.0);
}

void TestMainWindow::rotateFreezeAndMacroReachTheirTargets()
{
    MainWindow window;
    window.panelButton(PanelButton::Rotate)->click();
    QCOMPARE(window.currentCanvas()->rotation(), 1);
    QVERIFY(QMetaObject::invokeMethod(&window, "rotateRev"));
    QVERIFY(QMetaObject::invokeMethod(&window, "rotateRev"));
    QCOMPARE(window.currentCanvas()->rotation(), 3);
    QVERIFY(QMetaObject::invokeMethod(&window, "macro"));
    window.panelButton(PanelButton::Freeze)->click();
    QVERIFY(window.currentCanvas()->frozen);
    window.panelButton(PanelButton::Freeze)->click();
    QVERIFY(!window.currentCanvas()->frozen);
    // Without a camera the buttons that drive it do no harm.
    for (const PanelButton each : {PanelButton::AutoFocus, PanelButton::BrightnessDown,
                                   PanelButton::BrightnessUp, PanelButton::ZoomReset})
        window.panelButton(each)->click();
    window.zoomInStart();
    window.zoomOutStart();
    window.zoomOutStop();
    window.zoomInStop();
}

void TestMainWindow::snapshotWithoutAFolderSaysSo()
{
    MainWindow window;
    for (const QString &folder : {QString("/no/such/folder"), QString()}) {
        Config::setSnapshotPath(folder);
        QString title;
        QString message;
        whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
            title = box->windowTitle();
            message = box->text();
            QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            box->accept();
        });
        window.panelButton(PanelButton::Snapshot)->click();
        QCOMPARE(title, QString("Error"));
        QCOMPARE(message, QString("Please select a folder first."));
        QVERIFY(window.currentCanvas()->snapshotFolder.isEmpty());
    }
}

void TestMainWindow::singleSnapshotIsWritten()
{
    const QTemporaryDir folder;
    Config::setSnapshotPath(folder.path());
    MainWindow window;
    enter(window, 3);
    window.panelButton(PanelButton::Snapshot)->click();
    QVERIFY(!window.panelButton(PanelButton::Snapshot)->isCheckable());
    QTRY_COMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    QVERIFY(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.jpg$")
                .match(QDir(folder.path()).entryList(QDir::Files).first())
                .hasMatch());
}

void TestMainWindow::seriesBelongsToItsCanvas()
{
    const QTemporaryDir folder;
    Config::setSnapshotPath(folder.path());
    Config::setSnapshotMode(CanvasModes::Continuous);
    Config::setSnapshotInterval(3600);
    MainWindow window;
    ImageButton *button = window.panelButton(PanelButton::Snapshot);
    ImageCanvas *live = window.currentCanvas();
    button->click();
    QVERIFY(button->isCheckable());
    QVERIFY(button->isChecked());
    QVERIFY(live->seriesArmed());
    QCOMPARE(live->snapshotInterval, 3600ULL);
    QCOMPARE(live->seriesLimit, ~0ULL);

    enter(window, 3);
    QVERIFY(!button->isChecked());
    button->click();
    QVERIFY(window.currentCanvas()->seriesArmed());
    button->click();
    QVERIFY(!window.currentCanvas()->seriesArmed());
    QVERIFY(live->seriesArmed());

    enter(window, 0);
    QVERIFY(button->isChecked());
    button->click();
    QVERIFY(!live->seriesArmed());

    button->click();
    QVERIFY(live->seriesArmed());
    Config::setSnapshotMode(CanvasModes::Single);
    button->click();
    QVERIFY(!live->seriesArmed());
    QVERIFY(!button->isCheckable());
}

void TestMainWindow::recordingWithoutAFolderSaysSo()
{
    MainWindow window;
    Config::setRecordPath("/no/such/folder");
    const auto buttons = window.findChildren<ImageButton *>();
    for (ImageButton *record : buttons) {
        if (record->accessibleName() != "Record video")
            continue;
        QString message;
        whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
            message = box->text();
            box->accept();
        });
        record->click();
        QCOMPARE(message, QString("Please select a folder first."));
        QVERIFY(!record->isChecked());
        QVERIFY(!window.recording());
    }
}

void TestMainWindow::recordingShowsItselfAndUnfreezes()
{
    MainWindow window;
    QList<ImageButton *> records;
    for (ImageButton *each : window.findChildren<ImageButton *>()) {
        if (each->accessibleName() == "Record video")
            records << each;
    }
    QCOMPARE(records.size(), 2);
    window.panelButton(PanelButton::Freeze)->click();
    for (ImageButton *starter : qAsConst(records)) {
        for (ImageButton *stopper : qAsConst(records)) {
            starter->click();
            QVERIFY(window.recording());
            QVERIFY(records[0]->isChecked() && records[1]->isChecked());
            QVERIFY(!window.currentCanvas()->frozen);
            QVERIFY(!window.panelButton(PanelButton::Freeze)->isChecked());
            stopper->click();
            QVERIFY(!window.recording());
            QVERIFY(!records[0]->isChecked() && !records[1]->isChecked());
        }
    }
}

void TestMainWindow::recordingSurvivesAModeChange()
{
    MainWindow window;
    window.panelButton(PanelButton::Record)->click();
    enter(window, 1);
    QVERIFY(window.recording());
    // It fails while another mode is shown.
    QString title;
    QString text;
    whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
        title = box->windowTitle();
        text = box->text();
        box->accept();
    });
    emit window.liveSource()->recordFailed("The disk is full.");
    QCOMPARE(title, QString("Error"));
    QCOMPARE(text, QString("The disk is full."));
    QVERIFY(!window.recording());
    QVERIFY(!window.panelButton(PanelButton::Record)->isChecked());
    // Once more says nothing.
    emit window.liveSource()->recordFailed("The disk is full.");
}

void TestMainWindow::photographsAreChosenByOneOfThem()
{
    const QTemporaryDir folder;
    pictureFile(folder.path(), "a.png", 0xFFFF0000);
    const QString second = pictureFile(folder.path(), "b.png", 0xFF00FF00);
    pictureFile(folder.path(), "c.png", 0xFF0000FF);
    MainWindow window;
    enter(window, 2);
    chooseFile(&window, second);
    button(window, "Open folder of photographs")->click();
    QLabel *index = nullptr;
    for (QLabel *label : window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text().contains('/'))
            index = label;
    }
    QVERIFY(index);
    QCOMPARE(index->text(), QString("2/3"));
    QCOMPARE(window.currentCanvas()->currentImage().pixel(10, 10), 0xFF00FF00);
    button(window, "Next photograph")->click();
    QCOMPARE(index->text(), QString("3/3"));
    button(window, "Next photograph")->click();
    QCOMPARE(index->text(), QString("3/3"));
    for (int i = 0; i < 3; ++i)
        button(window, "Previous photograph")->click();
    QCOMPARE(index->text(), QString("1/3"));
    // Leaving and coming back returns to the one that was opened.
    enter(window, 0);
    enter(window, 2);
    QCOMPARE(index->text(), QString("2/3"));
}

void TestMainWindow::cancelledDialogsChangeNothing()
{
    MainWindow window;
    enter(window, 2);
    const QImage before = window.currentCanvas()->currentImage();
    whenAsked<QFileDialog>(&window, [](QFileDialog *dialog) { dialog->reject(); });
    button(window, "Open folder of photographs")->click();
    QCOMPARE(window.currentCanvas()->currentImage(), before);
    enter(window, 1);
    whenAsked<QFileDialog>(&window, [](QFileDialog *dialog) { dialog->reject(); });
    button(window, "Open film")->click();
    QCOMPARE(window.currentCanvas()->currentImage(), before);
}

void TestMainWindow::aVanishedFilmIsIgnored()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("film.mov");
    QFile film(path);
    QVERIFY(film.open(QIODevice::WriteOnly));
    film.close();
    MainWindow window;
    enter(window, 1);
    whenAsked<QFileDialog>(&window, [path](QFileDialog *dialog) {
        dialog->setDirectory(QFileInfo(path).path());
        dialog->selectFile(path);
        QFile::remove(path);
        // The dialog itself would refuse a file that has gone; it has gone a moment later.
        emit dialog->fileSelected(path);
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
    });
    button(window, "Open film")->click();
    button(window, "Play")->click();
    window.filmTick();
}

void TestMainWindow::slideshowButtonFollowsTheShow()
{
    const QTemporaryDir folder;
    const QString first = pictureFile(folder.path(), "a.png", 0xFFFF0000);
    pictureFile(folder.path(), "b.png", 0xFF00FF00);
    MainWindow window;
    enter(window, 2);
    ImageButton *show = button(window, "Slideshow");
    const auto open = [&] {
        chooseFile(&window, first);
        button(window, "Open folder of photographs")->click();
    };
    open();
    for (const char *name : {"Next photograph", "Previous photograph"}) {
        show->click();
        QVERIFY(show->isChecked());
        button(window, name)->click();
        QVERIFY2(!show->isChecked(), name);
    }
    show->click();
    open();
    QVERIFY(!show->isChecked());
    show->click();
    show->click();
    QVERIFY(!show->isChecked());
    show->click();
    enter(window, 0);
    enter(window, 2);
    QVERIFY(!show->isChecked());
    // A running show steps on.
    show->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.currentCanvas()->currentImage().pixel(10, 10), 0xFF00FF00,
                              10000);
}

void TestMainWindow::intervalPlacesReachTheSource()
{
    MainWindow window;
    Slider *interval = window.findChildren<Slider *>()[1];
    QCOMPARE(interval->minimum(), 0);
    QCOMPARE(interval->maximum(), 5);
    QCOMPARE(interval->value(), 0);
    QCOMPARE(interval->pageStep(), 1);
    QCOMPARE(interval->tickPosition(), QSlider::TicksBelow);
    const int seconds[] = {1, 2, 5, 10, 15, 30};
    for (int i = 0; i < 6; ++i)
        QCOMPARE(PHOTOGRAPH_PLAY_INTERVALS[std::size_t(i)], seconds[i]);
    for (const int place : {5, 3, 0})
        interval->setValue(place);
    window.photographPlayIntervalChanged(-1);
    window.photographPlayIntervalChanged(6);
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!label->text().contains("sec"))
            continue;
        QCOMPARE(label->text(), QString("1     2     5    10    15    30  sec."));
        QCOMPARE(label->size(), QSize(200, 10));
        QVERIFY(QFontMetrics(label->font()).height() <= 10);
        QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= 200);
        QVERIFY(label->testAttribute(Qt::WA_TransparentForMouseEvents));
    }
}

void TestMainWindow::longIndexesFitTheirLabel()
{
    const QTemporaryDir folder;
    const QString first = pictureFile(folder.path(), "0000.png", 0xFFFF0000);
    for (int i = 1; i < 1234; ++i)
        QVERIFY(QFile::link(first, folder.filePath(QString("%1.png").arg(i, 4, 10, QChar('0')))));
    MainWindow window;
    enter(window, 2);
    chooseFile(&window, folder.filePath("1199.png"));
    button(window, "Open folder of photographs")->click();
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!label->text().contains('/'))
            continue;
        QCOMPARE(label->text(), QString("1200/1234"));
        QCOMPARE(label->size(), QSize(70, 30));
        QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= 70);
        QVERIFY(label->font().pointSize() < 15);
        window.photographIdChange(0);
        QCOMPARE(label->text(), QString("1/1234"));
    }
}

void TestMainWindow::thousandPopUpsLeaveNothingBehind()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    const auto round = [&window] {
        for (const PanelButton each : poppingButtons())
            emit window.panelButton(each)->hold();
        window.settings();
        window.About();
        window.currentToolWindow()->close();
        QCoreApplication::processEvents();
    };
    const auto residentKilobytes = [] {
        QFile status("/proc/self/status");
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ')[1].toInt();
        }
        return 0;
    };
    for (int i = 0; i < 10; ++i)
        round();
    const int objects = window.findChildren<QObject *>().size();
    const int before = residentKilobytes();
    QVERIFY(before > 0);
    for (int i = 0; i < 1000 / 13 + 1; ++i)
        round();
    QCOMPARE(window.findChildren<QObject *>().size(), objects);
    const int growth = residentKilobytes() - before;
    QVERIFY2(growth < 4096, qPrintable(QString("%1 kB").arg(growth)));
}

void TestMainWindow::settingsOutOfRangeAreHarmless()
{
    Config::setSnapshotMode(CanvasModes::SnapshotMode(1));
    Config::setResolutionIndex(99);
    Config::setRecordingResolutionIndex(-7);
    Config::setSnapshotInterval(~0ULL);
    const MainWindow window;
    QCOMPARE(window.liveSource()->resolution(), QSize(1920, 1080));
    QCOMPARE(window.liveSource()->recordingResolution(), QSize(1920, 1080));
}

void TestMainWindow::withoutAPrinterItSaysSo()
{
    MainWindow window;
    QString title;
    QString message;
    whenAsked<QMessageBox>(&window, [&](QMessageBox *box) {
        title = box->windowTitle();
        message = box->text();
        box->accept();
    });
    window.panelButton(PanelButton::Print)->click();
    QCOMPARE(title, QString("Error"));
    QCOMPARE(message, QString("No printers found on this system."));
}

QTEST_MAIN(TestMainWindow)
#include "tst_main_window.moc"
