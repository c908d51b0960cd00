#include "mainwindow/MainWindow.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/ModeRules.h"
#include "mainwindow/actions/PresenterKeys.h"
#include "resources/SkinImages.h"
#include "settings/Config.h"
#include "sources/FilmSource.h"
#include "sources/LiveSource.h"
#include "sources/PhotographSource.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"
#include "widgets/Panel.h"

#include <QApplication>
#include <QButtonGroup>
#include <QLabel>
#include <QStackedWidget>

using namespace ModeRules;
using ButtonTable::PanelButton;

namespace
{

constexpr QSize MINIMUM_SIZE(800, 768);
constexpr QSize LIVE_BOX_SIZE(60, 37);

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : aboutBackground(SkinImages::load(":/icons/Background/POP_BK_ABOUT_small.png"))
{
    if (parent)
        setParent(parent, windowFlags());
    setMinimumSize(MINIMUM_SIZE);
    resize(MINIMUM_SIZE);
    FormControls::dressToolTips();
    m_tools.storeCaptions();
    m_stack = new QStackedWidget(this);
    createModeButtons();
    createAboutButton();
    groupModeButtons();
    createSidePanelButton();
    createPanel();
    createLivePart();
    createLiveBox();
    createFilmPart();
    createPhotographPart();
    createDrawingBoard();
    start();
}

MainWindow::~MainWindow()
{
    if (m_capture.recording())
        m_liveSource->stopRecord();
    // Before any canvas; what still asks for the camera then finds none.
    LiveSource *live = m_liveSource;
    m_liveSource = nullptr;
    delete live;
    delete m_filmSource;
    delete m_photographSource;
}

void MainWindow::createModeButtons()
{
    const QFont font("Arial", 11);
    std::size_t mode = 0;
    for (const ButtonTable::ModeRow &row : ButtonTable::modeRows()) {
        auto *button = new ImageButton(row.skin, this, 0, 0);
        button->setFont(font);
        button->setTextColor(Qt::white);
        button->setText(tr(row.text));
        button->setAccessibleName(tr(row.text));
        button->setCheckable(true);
        button->setChecked(mode == Live);
        connect(button, SIGNAL(clicked()), this, SLOT(switchMode()));
        m_modeButtons[mode++] = button;
    }
}

void MainWindow::createAboutButton()
{
    m_aboutButton = new ImageButton(aboutButtonKey, this, aboutButtonX, height() - 55);
    m_aboutButton->setAccessibleName(tr("About"));
    m_aboutButton->setToolTip(tr("About"));
    connect(m_aboutButton, SIGNAL(clicked()), this, SLOT(About()));
}

void MainWindow::groupModeButtons()
{
    auto *group = new QButtonGroup(this);
    for (ImageButton *button : m_modeButtons)
        group->addButton(button);
}

void MainWindow::createSidePanelButton()
{
    m_sidePanelButton = new ImageButton(QString(), this, 0, 0);
    m_sidePanelButton->setAccessibleName(tr("Side panel"));
    m_sidePanelButton->setToolTip(tr("Side panel"));
    connect(m_sidePanelButton, SIGNAL(clicked()), this, SLOT(expand()));
}

void MainWindow::createPanel()
{
    using namespace ButtonTable;
    m_panel = new Panel(this);
    m_toolGroup = new QButtonGroup(this);
    int group = -1;
    for (const PanelRow &row : panelRows()) {
        if (int(row.group) != group) {
            group = int(row.group);
            m_panel->addGroup(tr(groupTitles()[std::size_t(group)]));
        }
        ImageButton *button =
            createPanelButton(row.skin, tr(row.toolTip), row.clickSlot, row.holdSlot,
                              row.inToolGroup ? m_toolGroup : nullptr);
        if (row.after & MadeCheckable)
            button->setCheckable(true);
        if (row.after & MadeUncheckable)
            button->setCheckable(false);
        if (row.after & Checked)
            button->setChecked(true);
        if (row.after & HiddenAndDisabled) {
            button->hide();
            button->setEnabled(false);
        }
        m_panelButtons[std::size_t(row.button)] = button;
        if (row.button == PanelButton::ZoomIn)
            connectZoomButtons();
    }
    m_panel->finishAdding();
}

ImageButton *MainWindow::createPanelButton(const QString &key, const QString &toolTip,
                                           const char *clickSlot, const char *holdSlot,
                                           QButtonGroup *group)
{
    auto *button = new ImageButton(key, toolTip, this, 0, 0);
    if (clickSlot)
        connect(button, SIGNAL(clicked()), this, clickSlot);
    if (holdSlot)
        connect(button, SIGNAL(hold()), this, holdSlot);
    if (group) {
        button->setCheckable(true);
        group->addButton(button);
    }
    m_panel->addButton(button);
    button->setAccessibleName(toolTip);
    return button;
}

void MainWindow::connectZoomButtons()
{
    const ImageButton *zoomOut = panelButton(PanelButton::ZoomOut);
    connect(zoomOut, SIGNAL(pressed()), this, SLOT(zoomOutStart()));
    connect(zoomOut, SIGNAL(released()), this, SLOT(zoomOutStop()));
    const ImageButton *zoomIn = panelButton(PanelButton::ZoomIn);
    connect(zoomIn, SIGNAL(pressed()), this, SLOT(zoomInStart()));
    connect(zoomIn, SIGNAL(released()), this, SLOT(zoomInStop()));
}

ImageCanvas *MainWindow::createCanvas()
{
    auto *canvas = new ImageCanvas(this);
    auto *processor = new OSDProcessor(this, canvas);
    m_osdProcessors.insert(canvas, processor);
    canvas->setOsdProcessor(processor);
    m_stack->addWidget(canvas);
    return canvas;
}

void MainWindow::createLivePart()
{
    m_canvases[Live] = createCanvas();
    m_liveSource =
        new LiveSource(m_canvases[Live], Config::resolution(), Config::recordingResolution(), this);
    connect(m_liveSource, SIGNAL(recordFailed(QString)), this, SLOT(recordingFailed(QString)));
}

void MainWindow::createLiveBox()
{
    m_liveBox = new QWidget(this);
    m_liveBox->setFixedSize(LIVE_BOX_SIZE);
    m_liveRecordButton = new ImageButton("ICON_LIVE_RECORDING", m_liveBox, 20, 5);
    m_liveRecordButton->setCheckable(true);
    m_liveRecordButton->setAccessibleName(tr("Record video"));
    m_liveRecordButton->setToolTip(tr("Record video"));
    connect(m_liveRecordButton, SIGNAL(clicked()), this, SLOT(record()));
    m_capture.setLiveRecordButton(m_liveRecordButton);
    // The running time is painted over the picture; the label keeps its place at the lower right.
    m_recordTimeLabel = new QLabel(this);
    m_recordTimeLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void MainWindow::createFilmPart()
{
    m_canvases[Film] = createCanvas();
    m_filmSource = new FilmSource(m_canvases[Film], this);
    m_filmBar = new FilmBar(m_filmSource, m_canvases[Film], &m_popups, this);
}

void MainWindow::createPhotographPart()
{
    m_canvases[Photograph] = createCanvas();
    m_photographSource = new PhotographSource(m_canvases[Photograph], this);
    m_photographSource->setPlayInterval(PHOTOGRAPH_PLAY_INTERVALS[0] * 1000);
    connect(m_photographSource, SIGNAL(playDone()), this, SLOT(photographPlayDone()));
    m_photographBar =
        new PhotographBar(m_photographSource, m_canvases[Photograph], &m_popups, this);
}

void MainWindow::createDrawingBoard()
{
    m_canvases[DrawingBoard] = createCanvas();
    m_canvases[DrawingBoard]->setDrawingBoardMode(true);
    m_canvases[DrawingBoard]->fillCanvas(Qt::white);
}

void MainWindow::start()
{
    m_currentCanvas = m_canvases[Live];
    m_currentCanvas->setMouseMode(ImageCanvas::Freehand);
    m_stack->setCurrentWidget(m_currentCanvas);
    m_sidePanelOpen = false;
    setBuilt();
    expand();
    qApp->installEventFilter(this);
    createPresenterKeys();
}

void MainWindow::createPresenterKeys()
{
    auto *keys = new PresenterKeys(this);
    connect(keys, SIGNAL(previousPhotographWanted()), m_photographBar->button(1), SLOT(click()));
    connect(keys, SIGNAL(nextPhotographWanted()), m_photographBar->button(3), SLOT(click()));
    connect(keys, SIGNAL(playOrPauseWanted()), this, SLOT(filmPlayOrPause()));
    connect(keys, SIGNAL(freezeWanted()), panelButton(PanelButton::Freeze), SLOT(click()));
    connect(keys, SIGNAL(zoomInPressed()), this, SLOT(zoomInStart()));
    connect(keys, SIGNAL(zoomInReleased()), this, SLOT(zoomInStop()));
    connect(keys, SIGNAL(zoomOutPressed()), this, SLOT(zoomOutStart()));
    connect(keys, SIGNAL(zoomOutReleased()), this, SLOT(zoomOutStop()));
    connect(keys, SIGNAL(fullScreenWanted()), this, SLOT(toggleFullScreen()));
    connect(keys, SIGNAL(snapshotWanted()), panelButton(PanelButton::Snapshot), SLOT(click()));
    connect(keys, SIGNAL(printWanted()), panelButton(PanelButton::Print), SLOT(click()));
    qApp->installEventFilter(keys);
}
