#pragma once

#include <QObject>

class ImageCanvas;
class MainWindow;
class QImage;
class QPainter;
class QString;

/// Paints the short-lived indications over the picture of one canvas. GUI thread only.
class OSDProcessor : public QObject
{
    Q_OBJECT

public:
    OSDProcessor(MainWindow *window, ImageCanvas *canvas);
    ~OSDProcessor() override;

    void osdMask();
    void osdEffect();
    void osdBrightness();
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
    void osdSnapshot();

    /// Paints what is due, in widget coordinates; called by the canvas without its lock.
    void postPaint(QPainter *painter);
    /// An image at (x, y) with its caption centred right of the 38-pixel icon area.
    void paintImageText(QPainter *painter, int x, int y, const QImage &image, const QString &text);
};
