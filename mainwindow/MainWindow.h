#pragma once

#include "mainwindow/CanvasDeck.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/Commands.h"
#include "mainwindow/FullScreen.h"
#include "mainwindow/MainWindowServices.h"
#include "mainwindow/Popups.h"
#include "mainwindow/actions/CameraActions.h"
#include "mainwindow/actions/CaptureActions.h"
#include "mainwindow/actions/ToolActions.h"
#include "mainwindow/bars/FilmBar.h"
#include "mainwindow/bars/PhotographBar.h"
#include "widgets/StyleWindow.h"

#include <QHash>
#include <QImage>
#include <QPoint>
#include <QString>

#include <memory>

class CameraKeeper;
class CommandCard;
class FilmSource;
class ImageButton;
class ImageCanvas;
class KeyBindings;
class LiveSource;
class OSDProcessor;
class Panel;
class PhotographSource;
class Presentation;
class QButtonGroup;
class QLabel;
class RecordingStatus;
class ThumbnailWidget;

/// The program's window: four canvases in a stack, one a mode, the sources that feed them, and the
/// buttons that drive both. Every slot of a button closes the open pop-up window as its rule says.
///
/// GUI thread. Owns everything that it builds; the sources go first when it is destroyed.
class MainWindow : public StyleWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    /// 0 live, 1 film, 2 photograph, 3 drawing board.
    [[nodiscard]] int currentMode() const;
    [[nodiscard]] ImageCanvas *currentCanvas() const;
    [[nodiscard]] const QHash<ImageCanvas *, OSDProcessor *> &osdProcessors() const;
    /// Null before it is built and after it is gone.
    [[nodiscard]] LiveSource *liveSource() const;
    [[nodiscard]] ThumbnailWidget *thumbnailWidget() const;
    [[nodiscard]] bool recording() const;
    /// Null when no pop-up window is open.
    [[nodiscard]] ToolWindow *currentToolWindow() const;
    /// Null for a command that has no button.
    [[nodiscard]] ImageButton *button(Command command) const;

    [[nodiscard]] Presentation *presentation() const { return m_presentation.get(); }

    /// Stops a running recording with its buttons and its clock; nothing otherwise.
    void stopRecording();

    void reposition() override;
    /// Filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    // Window
    void switchMode();
    void expand();
    void toggleFullScreen();
    /// Closes what lies on top: a visible pop-up, else full screen, else the presentation.
    void leave();
    /// Opens the pop-up with the pages; showKeys() opens it on the page of the keys.
    void more();
    void showKeys();

    // The drawing of the current canvas
    void undo();
    void redo();

    // The window for the class
    void present();
    void holdPresentation();
    void blankPresentation();

    // Drawing tools; the Hold slots open the tool's pop-up window.
    void line() { m_tools->select(Command::Line); }
    void rectangle() { m_tools->select(Command::Rectangle); }
    void freehand() { m_tools->select(Command::Freehand); }
    void circle() { m_tools->select(Command::Circle); }
    void arrow() { m_tools->select(Command::Arrow); }
    void triangle() { m_tools->select(Command::Triangle); }
    void erase() { m_tools->select(Command::Eraser); }
    void text() { m_tools->select(Command::Text); }
    void eraseAll() { m_tools->eraseAll(); }
    void clip() { m_tools->select(Command::Clip); }
    void hand() { m_tools->select(Command::Hand); }
    void fillBackground() { m_tools->select(Command::FillBackground); }
    void lineHold() { m_tools->showOptions(Command::Line); }
    void rectangleHold() { m_tools->showOptions(Command::Rectangle); }
    void freehandHold() { m_tools->showOptions(Command::Freehand); }
    void circleHold() { m_tools->showOptions(Command::Circle); }
    void arrowHold() { m_tools->showOptions(Command::Arrow); }
    void triangleHold() { m_tools->showOptions(Command::Triangle); }
    void eraseHold() { m_tools->showOptions(Command::Eraser); }
    void textHold() { m_tools->showOptions(Command::Text); }
    void fillBackgroundHold() { m_tools->showOptions(Command::FillBackground); }
    void mask() { m_tools->toggleMask(); }
    void maskHold() { m_tools->showOptions(Command::Mask); }
    void nextMask() { m_tools->nextMask(); }
    void nextEffect() { m_tools->nextEffect(); }
    void blackPen() { m_tools->setPenColor(0); }
    void redPen() { m_tools->setPenColor(1); }
    void yellowPen() { m_tools->setPenColor(2); }
    void bluePen() { m_tools->setPenColor(3); }
    void thinnerPen() { m_tools->changePenWidth(-1); }
    void thickerPen() { m_tools->changePenWidth(1); }
    void effectHold() { m_tools->showOptions(Command::Effect); }

    // Camera and view
    void zoomInStart() { m_camera->zoomInStart(); }
    void zoomInStop() { m_camera->zoomInStop(); }
    void zoomOutStart() { m_camera->zoomOutStart(); }
    void zoomOutStop() { m_camera->zoomOutStop(); }
    void zoomReset() { m_camera->zoomReset(); }
    void autoFocus() { m_camera->autoFocus(); }
    void brightnessDown() { m_camera->brightnessDown(); }
    void brightnessUp() { m_camera->brightnessUp(); }
    void rotate() { m_camera->rotate(); }
    void rotateRev() { m_camera->rotateRev(); }
    void macro();
    void freeze();

    // Snapshot, recording, printing, windows
    void snapshot();
    void record();
    void pauseRecording() { m_capture->togglePause(); }
    void print();
    void settings();
    void About();

    // Film
    void filmOpenFile() { m_filmBar->openFile(); }
    void filmPlay() { m_filmBar->play(); }
    void filmPause() { m_filmBar->pause(); }
    void filmStop() { m_filmBar->stop(); }
    void filmBackward() { m_filmBar->backward(); }
    void filmForward() { m_filmBar->forward(); }
    void filmVolume() { m_filmBar->showVolume(); }
    void filmTick() { m_filmBar->showPosition(); }
    void filmPlayOrPause() { m_filmBar->playOrPause(); }

    // Photographs
    void photographOpenDirectory() { m_photographBar->openDirectory(); }
    void photographPrevious() { m_photographBar->previous(); }
    void photographPlay() { m_photographBar->playOrStop(); }
    void photographPlayDone() { m_photographBar->playDone(); }
    void photographNext() { m_photographBar->next(); }
    void photographPreview() { m_photographBar->showThumbnails(); }
    void photographPlayInterval() { m_photographBar->showInterval(); }
    void photographPlayIntervalChanged(int value) { m_photographBar->setInterval(value); }
    void photographIdChange(int id) { m_photographBar->showIndex(id); }

signals:
    void modeChanged();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void recordingFailed(const QString &sentence);

private:
    // The steps of the constructor, in their order
    void createModeButtons();
    void createAboutButton();
    void groupModeButtons();
    void createSidePanelButton();
    void createPanel();
    void createLivePart();
    void createLiveBox();
    void createFilmPart();
    void createPhotographPart();
    void createDrawingBoard();
    void start();

    ImageButton *createPanelButton(const QString &key, const QString &toolTip,
                                   const char *clickSlot, const char *holdSlot,
                                   QButtonGroup *group);
    /// Connects the button of a tool that has no slot of its own.
    void connectTool(const Commands::Row &row, ImageButton *button);
    /// Opens the pop-up of a button for a user who cannot hold the mouse on it.
    void connectOptions(const Commands::Row &row, ImageButton *toolButton);
    void connectCommands();
    ImageCanvas *createCanvas();
    void createPresentation();
    void createCard();
    void createEmptyScreens();
    void createKeyBindings();
    void openMore();
    /// Updates the buttons of undo and redo for the current canvas.
    void showHistory();
    /// Updates the buttons of the presentation: whether it is open, holds its picture or is blank.
    void showPresentation();
    void perform(Command command);
    /// Calls one of this window's slots, coded by SLOT().
    void call(const char *slot);

    void leaveMode(int mode);
    void enterMode(int mode);
    void applyMode();
    /// Makes the window wider, or narrower, at its left edge.
    void widen(int step);
    /// Restores after full screen what the window manager does not: the place that the window was
    /// moved from, and the width of a side panel that was opened or closed meanwhile.
    void catchUp();
    [[nodiscard]] bool mustCatchUp() const;

    MainWindowServices m_services{this};

    const QString aboutButtonKey = QStringLiteral("AboutButton");
    const int aboutButtonX = 34;
    const QImage aboutBackground;

    Popups m_popups{this, aboutBackground};
    CommandButtons m_buttons;
    CanvasDeck *m_deck = nullptr;
    std::unique_ptr<ToolActions> m_tools;
    std::unique_ptr<CameraActions> m_camera;
    std::unique_ptr<CaptureActions> m_capture;
    std::unique_ptr<Presentation> m_presentation;
    KeyBindings *m_keys = nullptr;
    CommandCard *m_card = nullptr;
    Panel *m_panel = nullptr;
    QWidget *m_liveBox = nullptr;
    QLabel *m_recordTimeLabel = nullptr;
    RecordingStatus *m_recordingStatus = nullptr;
    LiveSource *m_liveSource = nullptr;
    CameraKeeper *m_keeper = nullptr;
    FilmSource *m_filmSource = nullptr;
    FilmBar *m_filmBar = nullptr;
    PhotographSource *m_photographSource = nullptr;
    PhotographBar *m_photographBar = nullptr;

    bool m_sidePanelOpen = false;
    /// By how much the side panel would have widened the window in full screen; afterwards the
    /// window manager restores the width from before.
    int m_missedWidening = 0;
    FullScreen m_fullScreen{this};
};
