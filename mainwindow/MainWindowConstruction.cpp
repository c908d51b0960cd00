#include "mainwindow/CameraPreferences.h"
#include "mainwindow/MainWindow.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/Announcer.h"
#include "mainwindow/EmptyScreen.h"
#include "mainwindow/Modes.h"
#include "mainwindow/PenPressure.h"
#include "mainwindow/PopupCloser.h"
#include "mainwindow/PulledScreens.h"
#include "mainwindow/RecordingPreferences.h"
#include "mainwindow/RecordingSign.h"
#include "mainwindow/RecordingStatus.h"
#include "mainwindow/actions/KeyBindings.h"
#include "mainwindow/bars/CommandCard.h"
#include "mainwindow/presentation/Presentation.h"
#include "resources/SkinImages.h"
#include "settings/Config.h"
#include "sources/FilmSource.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "sources/PhotographSource.h"
#include "sources/camera/CameraKeeper.h"
#include "sources/threads/ExitDeadline.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"
#include "widgets/Panel.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QButtonGroup>
#include <QLabel>

#include <chrono>

using namespace Modes;

namespace
{

constexpr QSize MINIMUM_SIZE(800, 768);
constexpr QSize LIVE_BOX_SIZE(60, 37);
/// A camera that is there shows its picture two to three seconds after the start.
constexpr std::chrono::seconds CAMERA_DELAY(5);
/// The part of the two seconds for closing that belongs to the sources; thumbnails and threads that
/// are left behind come after them.
constexpr std::chrono::milliseconds END_TIMEOUT(1500);

/// The slot of the row opens it, or the tool of a row that has none.
bool holdOpensPopUp(const Commands::Row &row)
{
    return row.holdSlot || (row.tool && row.popUp != Commands::PopUp::None);
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : aboutBackground(SkinImages::load(":/icons/Background/POP_BK_ABOUT_small.png"))
{
    if (parent)
        setParent(parent, windowFlags());
    setMinimumSize(MINIMUM_SIZE);
    resize(MINIMUM_SIZE);
    FormControls::applyLookToToolTips();
    m_deck = new CanvasDeck(this);
    m_tools = std::make_unique<ToolActions>(m_deck, &m_popups, &m_buttons);
    m_capture = std::make_unique<CaptureActions>(m_deck, &m_buttons, this);
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
    createPresentation();
    createEmptyScreens();
    createCard();
    PulledScreens::bringBack(this);
    start();
}

MainWindow::~MainWindow()
{
    const ExitDeadline end(END_TIMEOUT);
    if (m_capture->recording())
        m_liveSource->stopRecord();
    // The pointer is reset before any canvas is destroyed, so that nothing asks a camera that is
    // gone.
    LiveSource *live = m_liveSource;
    m_liveSource = nullptr;
    m_capture->setSource(nullptr);
    delete live;
    delete m_filmSource;
    delete m_photographSource;
}

void MainWindow::createModeButtons()
{
    const QFont font("Arial", 11);
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Modes)) {
        auto *modeButton = new ImageButton(row.skin, this, 0, 0);
        modeButton->setFont(font);
        modeButton->setTextColor(Qt::white);
        modeButton->setText(tr(row.text));
        modeButton->setAccessibleName(tr(row.text));
        modeButton->setCheckable(true);
        modeButton->setChecked((row.look & Commands::Checked) != 0);
        m_buttons.add(row.command, modeButton);
    }
}

void MainWindow::createAboutButton()
{
    auto *about = new ImageButton(aboutButtonKey, this, aboutButtonX, height() - 55);
    about->setAccessibleName(tr("About"));
    about->setToolTip(tr("About"));
    m_buttons.add(Command::About, about);
}

void MainWindow::groupModeButtons()
{
    auto *group = new QButtonGroup(this);
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Modes))
        group->addButton(button(row.command));
}

void MainWindow::createSidePanelButton()
{
    auto *side = new ImageButton(QString(), this, 0, 0);
    side->setAccessibleName(tr("Side panel"));
    side->setToolTip(tr("Side panel"));
    m_buttons.add(Command::SidePanel, side);
}

void MainWindow::createPanel()
{
    using namespace Commands;
    m_panel = new Panel(this);
    auto *tools = new QButtonGroup(this);
    int group = -1;
    for (const Row &row : rows()) {
        if (!inPanel(row.group))
            continue;
        if (static_cast<int>(row.group) != group) {
            group = static_cast<int>(row.group);
            m_panel->addGroup(tr(titleOf(row.group)));
        }
        ImageButton *made = createPanelButton(row.skin, tr(row.text), row.clickSlot, row.holdSlot,
                                              row.look & InToolGroup ? tools : nullptr);
        connectTool(row, made);
        if (row.look & Checkable)
            made->setCheckable(true);
        if (row.look & NeverChecked)
            made->setCheckable(false);
        made->setChecked((row.look & Checked) != 0);
        // A button that does not belong to Live mode is hidden until its mode is entered.
        if (!Modes::contains(row.modes, Live)) {
            made->hide();
            made->setEnabled(false);
        }
        m_buttons.add(row.command, made);
    }
    m_panel->finishAdding();
}

ImageButton *MainWindow::createPanelButton(const QString &key, const QString &toolTip,
                                           const char *clickSlot, const char *holdSlot,
                                           QButtonGroup *group)
{
    auto *made = new ImageButton(key, toolTip, this, 0, 0);
    if (clickSlot)
        connect(made, SIGNAL(clicked()), this, clickSlot);
    if (holdSlot)
        connect(made, SIGNAL(hold()), this, holdSlot);
    if (group) {
        made->setCheckable(true);
        group->addButton(made);
    }
    m_panel->addButton(made);
    made->setAccessibleName(toolTip);
    return made;
}

void MainWindow::connectTool(const Commands::Row &row, ImageButton *toolButton)
{
    if (!row.tool)
        return;
    const Command command = row.command;
    if (!row.clickSlot)
        connect(toolButton, &ImageButton::clicked, this, [=] { m_tools->select(command); });
    if (!row.holdSlot && holdOpensPopUp(row))
        connect(toolButton, &ImageButton::hold, this, [=] { m_tools->showOptions(command); });
}

void MainWindow::connectOptions(const Commands::Row &row, ImageButton *toolButton)
{
    const char *slot = row.holdSlot;
    const Command command = row.command;
    toolButton->setHasOptions(true);
    connect(toolButton, &ImageButton::optionsWanted, this, [this, slot, command] {
        if (slot)
            call(slot);
        else
            m_tools->showOptions(command);
        if (m_popups.current())
            m_popups.current()->takeFocus();
    });
}

void MainWindow::connectCommands()
{
    for (const Commands::Row &row : Commands::rows()) {
        ImageButton *each = button(row.command);
        if (!each)
            continue;
        if (!row.keys.empty())
            each->setKey(row.keys.front());
        // The panel's are connected where they are made.
        if (row.clickSlot && !Commands::inPanel(row.group))
            connect(each, SIGNAL(clicked()), this, row.clickSlot);
        if (holdOpensPopUp(row))
            connectOptions(row, each);
        if (row.startSlot) {
            connect(each, SIGNAL(pressed()), this, row.startSlot);
            connect(each, SIGNAL(released()), this, row.stopSlot);
        }
    }
    connect(m_liveSource, &LiveSource::recordFailed, this, &MainWindow::recordingFailed);
    connect(m_filmSource, SIGNAL(tick()), this, SLOT(filmTick()));
    connect(m_photographSource, SIGNAL(playDone()), this, SLOT(photographPlayDone()));
    connect(m_photographSource, SIGNAL(photographChanged(int)), this,
            SLOT(photographIdChange(int)));
    connect(m_photographBar, &PhotographBar::intervalMoved, this,
            &MainWindow::photographPlayIntervalChanged);
}

ImageCanvas *MainWindow::createCanvas()
{
    auto *canvas = new ImageCanvas(this);
    m_deck->add(canvas, new OSDProcessor(this, canvas));
    new PopupCloser(&m_popups, canvas);
    return canvas;
}

void MainWindow::createLivePart()
{
    m_liveSource =
        new LiveSource(createCanvas(), Config::resolution(), Config::recordingResolution(), this);
    m_keeper = new CameraKeeper(*m_liveSource, m_liveSource);
    CameraPreferences::restore(*m_keeper, *m_liveSource);
    RecordingPreferences::restore(m_liveSource->liveRecording());
    m_capture->setSource(m_liveSource);
    m_camera = std::make_unique<CameraActions>(m_deck, &m_popups, m_liveSource);
    m_camera->setZoomQuery([source = m_liveSource] { return source->cameraZooms(); });
}

void MainWindow::createLiveBox()
{
    m_liveBox = new QWidget(this);
    m_liveBox->setFixedSize(LIVE_BOX_SIZE);
    auto *liveRecordButton = new ImageButton("ICON_LIVE_RECORDING", m_liveBox, 20, 5);
    liveRecordButton->setCheckable(true);
    liveRecordButton->setAccessibleName(tr("Record video"));
    liveRecordButton->setToolTip(tr("Record video"));
    liveRecordButton->setKey(Commands::row(Command::Record).keys.front());
    connect(liveRecordButton, SIGNAL(clicked()), this, SLOT(record()));
    m_capture->setLiveRecordButton(liveRecordButton);
    m_recordingStatus = new RecordingStatus(this);
    m_capture->setRecordingSigns(new RecordingSign(button(Command::LiveMode)), m_recordingStatus);
    // The running time is painted over the picture; the label keeps its place at the lower right.
    m_recordTimeLabel = new QLabel(this);
    m_recordTimeLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void MainWindow::createFilmPart()
{
    ImageCanvas *canvas = createCanvas();
    m_filmSource = new FilmSource(canvas, this);
    m_filmBar = new FilmBar(m_filmSource, canvas, &m_popups, &m_buttons, this);
}

void MainWindow::createPhotographPart()
{
    ImageCanvas *canvas = createCanvas();
    m_photographSource = new PhotographSource(canvas, this);
    m_photographSource->setPlayInterval(PHOTOGRAPH_PLAY_INTERVALS[0] * 1000);
    m_photographBar = new PhotographBar(m_photographSource, canvas, &m_popups, &m_buttons, this);
}

void MainWindow::createDrawingBoard()
{
    ImageCanvas *canvas = createCanvas();
    canvas->setDrawingBoardMode(true);
    canvas->fillCanvas(Qt::white);
}

void MainWindow::createEmptyScreens()
{
    const auto pictogram = [](const char *name) {
        return QStringLiteral(":/icons/Background/%1@2x.png").arg(name);
    };
    new EmptyScreen(m_deck->canvas(Live), {}, tr("Connect the document camera"), CAMERA_DELAY);
    auto *film = new EmptyScreen(m_deck->canvas(Film), pictogram("EMPTY_FILM"), tr("Open a film"));
    film->yieldTo(m_filmBar->message());
    connect(m_filmSource, &FilmSource::emptied, film, &EmptyScreen::showAgain);
    auto *photograph = new EmptyScreen(m_deck->canvas(Photograph), pictogram("EMPTY_PHOTOGRAPH"),
                                       tr("Open a picture of a folder"));
    photograph->yieldTo(m_photographBar->message());
}

void MainWindow::start()
{
    m_deck->setMode(Live);
    new Announcer(m_deck, this);
    currentCanvas()->setMouseMode(ImageCanvas::Freehand);
    connectCommands();
    showHistory();
    m_sidePanelOpen = false;
    setBuilt();
    expand();
    qApp->installEventFilter(this);
    createKeyBindings();
    PenPressure::apply(*m_deck);
    showPresentation();
}

void MainWindow::createPresentation()
{
    m_presentation = std::make_unique<Presentation>(m_deck, this);
    connect(m_presentation.get(), &Presentation::changed, this, &MainWindow::showPresentation);
}

void MainWindow::createCard()
{
    m_card = new CommandCard(&m_buttons, this);
    m_popups.setMore({m_deck, m_keeper, m_liveSource, m_presentation.get()}, m_card);
    m_card->allowForOpening(CAMERA_DELAY);
    const auto showCamera = [this] { m_card->setCameraStatus(m_keeper->status()); };
    connect(m_keeper, &CameraKeeper::statusChanged, m_card, showCamera);
    showCamera();
    for (int mode = 0; mode < Modes::COUNT; ++mode) {
        const ImageCanvas *canvas = m_deck->canvas(mode);
        connect(canvas, &ImageCanvas::historyChanged, this, &MainWindow::showHistory);
        connect(canvas, &ImageCanvas::snapshotFailed, m_card,
                [this] { m_card->setFailureUnread(true); });
    }
}

void MainWindow::createKeyBindings()
{
    m_keys = new KeyBindings(this, m_deck, &m_popups);
    m_keys->setLeavable([this] { return m_presentation->isOpen(); });
    connect(m_keys, &KeyBindings::given, this, &MainWindow::perform);
    connect(m_keys, &KeyBindings::started, this,
            [this](Command command) { call(Commands::row(command).startSlot); });
    connect(m_keys, &KeyBindings::stopped, this,
            [this](Command command) { call(Commands::row(command).stopSlot); });
    connect(this, &MainWindow::modeChanged, m_keys, &KeyBindings::forgetHeldKey);
    qApp->installEventFilter(m_keys);
}
