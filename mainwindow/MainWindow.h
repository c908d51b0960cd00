#pragma once

#include "mainwindow/ButtonTable.h"
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

#include <array>

class FilmSource;
class ImageButton;
class ImageCanvas;
class LiveSource;
class OSDProcessor;
class Panel;
class PhotographSource;
class QButtonGroup;
class QLabel;
class QStackedWidget;
class ThumbnailWidget;

/// The program's window: four canvases in a stack, one a mode, the sources that feed them, and the
/// buttons that drive both. Every slot of a button closes the open pop-up window as its rule says.
///
/// GUI thread. Owns everything that it builds; the sources go first when it is destroyed.
class MainWindow : public StyleWindow
{
    Q_OBJECT

public:
    using PanelButton = ButtonTable::PanelButton;

    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    /// 0 live, 1 film, 2 photograph, 3 drawing board.
    [[nodiscard]] int currentMode() const;
    [[nodiscard]] ImageCanvas *currentCanvas() const;
    [[nodiscard]] const QHash<ImageCanvas *, OSDProcessor *> &osdProcessors() const;
    /// Null before it is built and after it is gone.
    [[nodiscard]] LiveSource *liveSource() const;
    [[nodiscard]] ThumbnailWidget *thumbnailWidget() const;
    [[nodiscard]] bool onLiveCanvas() const;
    [[nodiscard]] bool recording() const;
    /// Null when no pop-up window is open.
    [[nodiscard]] ToolWindow *currentToolWindow() const;
    [[nodiscard]] ImageButton *panelButton(PanelButton button) const;

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

    // Drawing tools; the Hold slots open the tool's pop-up window.
    void line() { m_tools.select(PanelButton::Line, CanvasModes::Line); }
    void rectangle() { m_tools.select(PanelButton::Rectangle, CanvasModes::Rectangle); }
    void freehand() { m_tools.select(PanelButton::Freehand, CanvasModes::Freehand); }
    void circle() { m_tools.select(PanelButton::Circle, CanvasModes::Circle); }
    void arrow() { m_tools.select(PanelButton::Arrow, CanvasModes::Arrow); }
    void triangle() { m_tools.select(PanelButton::Triangle, CanvasModes::Triangle); }
    void erase() { m_tools.select(PanelButton::Eraser, CanvasModes::Eraser); }
    void text() { m_tools.select(PanelButton::Text, CanvasModes::Text); }
    void eraseAll() { m_tools.eraseAll(); }
    void clip() { m_tools.selectPlain(CanvasModes::Clip); }
    void hand() { m_tools.selectPlain(CanvasModes::Hand); }
    void fillBackground() { m_tools.closeUnlessOwnedBy(PanelButton::FillBackground); }
    void lineHold() { m_tools.openColorTool(PanelButton::Line); }
    void rectangleHold() { m_tools.openColorTool(PanelButton::Rectangle); }
    void freehandHold() { m_tools.openColorTool(PanelButton::Freehand); }
    void circleHold() { m_tools.openColorTool(PanelButton::Circle); }
    void arrowHold() { m_tools.openColorTool(PanelButton::Arrow); }
    void triangleHold() { m_tools.openColorTool(PanelButton::Triangle); }
    void eraseHold() { m_tools.openColorTool(PanelButton::Eraser); }
    void textHold() { m_tools.openText(); }
    void fillBackgroundHold() { m_tools.openFillBackground(); }
    void mask() { m_tools.toggleMask(); }
    void maskHold() { m_tools.openMask(); }
    void effectHold() { m_tools.openEffect(); }

    // Camera and view
    void zoomInStart() { m_camera.zoomInStart(); }
    void zoomInStop() { m_camera.zoomInStop(); }
    void zoomOutStart() { m_camera.zoomOutStart(); }
    void zoomOutStop() { m_camera.zoomOutStop(); }
    void zoomReset() { m_camera.zoomReset(); }
    void autoFocus() { m_camera.autoFocus(); }
    void brightnessDown() { m_camera.brightnessDown(); }
    void brightnessUp() { m_camera.brightnessUp(); }
    void rotate() { m_camera.rotate(); }
    void rotateRev() { m_camera.rotateRev(); }
    void macro();
    void freeze();

    // Snapshot, recording, printing, windows
    void snapshot();
    void record();
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
    void connectZoomButtons();
    ImageCanvas *createCanvas();
    void createPresenterKeys();

    void leaveMode(int mode);
    void enterMode(int mode);
    void applyMode();
    void showCanvasState();
    void checkToolButton();
    /// Makes the window wider, or narrower, at its left edge.
    void widen(int step);
    /// Gives a side panel that was opened or closed in full screen its width.
    void catchUpWidening();

    MainWindowServices m_services{this};

    const QString aboutButtonKey = QStringLiteral("AboutButton");
    const int aboutButtonX = 34;
    const QImage aboutBackground;

    Popups m_popups;
    ToolActions m_tools{this, &m_popups};
    CameraActions m_camera{this, &m_popups};
    CaptureActions m_capture{this};

    QHash<ImageCanvas *, OSDProcessor *> m_osdProcessors;
    /// By mode number, as the canvases.
    std::array<ImageButton *, 4> m_modeButtons{};
    ImageButton *m_aboutButton = nullptr;
    ImageButton *m_sidePanelButton = nullptr;
    QStackedWidget *m_stack = nullptr;
    std::array<ImageCanvas *, 4> m_canvases{};
    ImageCanvas *m_currentCanvas = nullptr;
    Panel *m_panel = nullptr;
    QButtonGroup *m_toolGroup = nullptr;
    std::array<ImageButton *, ButtonTable::PANEL_BUTTON_COUNT> m_panelButtons{};
    QWidget *m_liveBox = nullptr;
    ImageButton *m_liveRecordButton = nullptr;
    QLabel *m_recordTimeLabel = nullptr;
    LiveSource *m_liveSource = nullptr;
    FilmSource *m_filmSource = nullptr;
    FilmBar *m_filmBar = nullptr;
    PhotographSource *m_photographSource = nullptr;
    PhotographBar *m_photographBar = nullptr;

    int m_currentMode = 0;
    bool m_sidePanelOpen = false;
    /// What the side panel would have made the window wider in full screen; the window manager
    /// gives back the width from before.
    int m_missedWidening = 0;
};
