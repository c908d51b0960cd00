#pragma once

#include "canvas/osd/BrightnessScale.h"
#include "canvas/osd/StopWatch.h"

#include <QImage>
#include <QObject>
#include <QRectF>
#include <QString>

#include <functional>
#include <optional>

class ImageCanvas;
class LiveSourceBase;
class MainWindow;
class QPainter;

/// Paints the short-lived indications over the picture of one canvas: what was just chosen, the
/// brightness scale, the record time, the blink of a finished clip.
///
/// GUI thread only; owned by the main window, its parent. Nothing here asks for a repaint: an
/// indication whose time is up disappears with the next one. Every osd call loads its images again;
/// a missing image draws nothing and counts as 0 wide.
class OSDProcessor : public QObject
{
    Q_OBJECT

public:
    /// Milliseconds from a fixed moment, never running backwards.
    using Clock = std::function<qint64()>;

    OSDProcessor(MainWindow *window, ImageCanvas *canvas);
    ~OSDProcessor() override;

    void osdMask();
    void osdEffect();
    void osdBrightness();
    /// Keeps the brightness scale on the screen for as long as it is on.
    void setBrightnessMode(bool on);
    void osdZoomIn();
    void osdZoomOut();
    void osdOpticalZoomOn();
    void osdOpticalZoomOff();
    void osdRotate();
    void osdAutoFocus();
    void osdFreeze();
    void osdMacro(bool on);
    void osdRecord();
    void stopOsdRecord();
    /// Has the record time stand still, or go on; nothing happens without it.
    void holdOsdRecord(bool held);
    void osdSnapshot();

    /// Paints the indications that are on, in widget coordinates; the canvas calls it without its
    /// lock. While the brightness scale or the optical zoom shows, this asks the camera over USB.
    void postPaint(QPainter *painter);
    /// An image at (x, y) with its caption centred right of the 38-pixel icon area.
    void paintImageText(QPainter *painter, int x, int y, const QImage &image, const QString &text);

    /// Replaces the clock, for tests; set it before the first osd call.
    void setClock(Clock clock);

signals:
    /// What has just been indicated, in the user's language; once for each, however long it shows.
    void indicated(const QString &text);

private:
    /// The moment the timer was started; empty while it does not run.
    using Timer = std::optional<qint64>;

    struct BrightnessImages {
        QImage minimumEnd;
        QImage maximumEnd;
        QImage shortSegment;
        QImage longSegment;
        QImage marker;
        QImage centreMarker;

        [[nodiscard]] const QImage &of(BrightnessScale::Piece piece) const;
        [[nodiscard]] BrightnessScale::Widths widths() const;
    };

    void paintModes(QPainter *painter);
    void paintBrightness(QPainter *painter);
    void paintOpticalZoom(QPainter *painter);
    void paintCameraStates(QPainter *painter);
    void paintRecordTime(QPainter *painter);
    void paintClipFrame(QPainter *painter);

    [[nodiscard]] bool isDue(const Timer &timer, qint64 limitMs) const;
    /// Whether the indication is on; the painter then has the opacity for this moment. It fades at
    /// its end unless the desktop asks for no animation.
    bool begin(QPainter *painter, const Timer &timer, qint64 limitMs) const;
    /// Null while there is no camera.
    [[nodiscard]] LiveSourceBase *camera() const;

    const MainWindow *const m_window;
    ImageCanvas *const m_canvas;
    Clock m_clock;

    QImage m_maskImage;
    QImage m_effectImage;
    QImage m_zoomImage;
    QImage m_rotateImage;
    QImage m_autoFocusImage;
    QImage m_freezeImage;
    QImage m_macroImage;
    QImage m_recordImage;
    QImage m_snapshotImage;
    BrightnessImages m_brightnessImages;

    QString m_effectText;
    QString m_zoomText;
    QString m_rotateText;

    Timer m_maskTimer;
    Timer m_effectTimer;
    Timer m_brightnessTimer;
    Timer m_zoomTimer;
    Timer m_rotateTimer;
    Timer m_clipBlinkTimer;
    Timer m_autoFocusTimer;
    StopWatch m_recordTime;
    Timer m_snapshotTimer;

    bool m_opticalZoomOn = false;
    bool m_macroOn = false;
    bool m_brightnessModeOn = false;
    QRectF m_clipFrame;
};
