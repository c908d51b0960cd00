#include "sources/LiveSourceBase.h"

#include "sources/camera/CameraParameters.h"

#include <QtGlobal>

// Ids and values are sent as they lie in memory, 8 bytes, least significant byte first.
static_assert(sizeof(unsigned long) == 8, "camera parameters are 64-bit");
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "camera parameters are little-endian");

using namespace CameraParameter;

void LiveSourceBase::setParam(unsigned long id, unsigned long value)
{
    ksPropSet(ID_SELECTOR, &id, sizeof id);
    ksPropSet(VALUE_SELECTOR, &value, sizeof value);
}

unsigned long LiveSourceBase::getParam(unsigned long id)
{
    unsigned long value = 0;
    ksPropSet(ID_SELECTOR, &id, sizeof id);
    ksPropGet(VALUE_SELECTOR, &value, sizeof value);
    return value;
}

void LiveSourceBase::autoFocus()
{
    pressKey(AUTOFOCUS_KEY);
}

void LiveSourceBase::brightnessUp()
{
    pressKey(BRIGHTNESS_UP_KEY);
}

void LiveSourceBase::brightnessDown()
{
    pressKey(BRIGHTNESS_DOWN_KEY);
}

void LiveSourceBase::zoomInStart()
{
    if (running())
        setParam(ZOOM_IN_KEY, 1);
}

void LiveSourceBase::zoomInStop()
{
    if (running())
        setParam(ZOOM_IN_KEY, 0);
}

void LiveSourceBase::zoomOutStart()
{
    if (running())
        setParam(ZOOM_OUT_KEY, 1);
}

void LiveSourceBase::zoomOutStop()
{
    if (running())
        setParam(ZOOM_OUT_KEY, 0);
}

void LiveSourceBase::zoomReset()
{
    if (!running())
        return;
    setParam(OPTICAL_ZOOM_POSITION, 0);
    setParam(DIGITAL_ZOOM, 1000);
}

int LiveSourceBase::brightness()
{
    return running() ? static_cast<int>(getParam(BRIGHTNESS)) : 0;
}

int LiveSourceBase::brightnessMax()
{
    if (!running())
        return 0;
    const int value = static_cast<int>(getParam(BRIGHTNESS_MAX));
    return value == 0 ? 15 : value;
}

int LiveSourceBase::brightnessMin()
{
    if (!running())
        return 0;
    const int value = static_cast<int>(getParam(BRIGHTNESS_MIN));
    return value == 0 ? 1 : value;
}

double LiveSourceBase::opticalZoomPercent()
{
    return running() ? static_cast<double>(getParam(OPTICAL_ZOOM_PERCENT)) / 100.0 : 0.0;
}

double LiveSourceBase::digitalZoomPercent()
{
    if (!running())
        return 0.0;
    const double first = static_cast<double>(getParam(DIGITAL_ZOOM)) / 1000.0;
    const double second = static_cast<double>(getParam(SECOND_ZOOM)) / 1000.0;
    return first * second;
}

void LiveSourceBase::setMacroMode(bool)
{
    (void)running();
}

void LiveSourceBase::sleep(int) {}

void LiveSourceBase::pressKey(unsigned long id)
{
    if (!running())
        return;
    setParam(id, 1);
    setParam(id, 0);
}
