#pragma once

#include <QObject>

/// The camera's controls: zoom, autofocus and brightness over the numbered parameters of its
/// extension unit. The transport is the derived class's.
///
/// GUI thread only. Every exchange is a synchronous pair of USB control transfers, id register
/// first, value register second; results are not checked. A camera that is not running makes every
/// operation a no-op and every query 0.
class LiveSourceBase : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the camera is open and usable.
    virtual bool running() const = 0;

    /// Writes / reads `length` bytes of the extension-unit control whose selector is the low byte
    /// of `property`. Returns the transport's result, negative on failure; `data` is then
    /// untouched.
    virtual int ksPropSet(unsigned long property, void *data, unsigned long length) = 0;
    virtual int ksPropGet(unsigned long property, void *data, unsigned long length) = 0;

    void setParam(unsigned long id, unsigned long value);
    /// The value of parameter `id`; 0 when the read failed.
    unsigned long getParam(unsigned long id);

    void autoFocus();
    void brightnessUp();
    void brightnessDown();
    /// The zoom keys act for as long as they are held, between start and stop.
    void zoomInStart();
    void zoomInStop();
    void zoomOutStart();
    void zoomOutStop();
    void zoomReset();

    /// Brightness steps. A running camera that answers 0 to its range has the range 1 to 15.
    int brightness();
    int brightnessMax();
    int brightnessMin();

    /// Lens position as a fraction, 1.0 = full optical zoom.
    double opticalZoomPercent();
    /// Digital zoom as a factor, 1.0 = none.
    double digitalZoomPercent();

    /// The macro state lives in the button and the indication alone; the camera is not told.
    void setMacroMode(bool on);
    void sleep(int milliseconds);

private:
    void pressKey(unsigned long id);
};
