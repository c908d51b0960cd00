#include "mainwindow/actions/CameraActions.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/MainWindow.h"
#include "mainwindow/Popups.h"
#include "sources/LiveSource.h"

CameraActions::CameraActions(MainWindow *window, Popups *popups)
    : m_window(window)
    , m_popups(popups)
{
}

void CameraActions::zoomInStart()
{
    m_popups->closeAny();
    m_zoomingIn = true;
    if (m_window->onLiveCanvas()) {
        m_window->liveSource()->zoomInStart();
        indications()->osdOpticalZoomOn();
    } else {
        m_window->currentCanvas()->zoomIn();
        indications()->osdZoomIn();
    }
}

void CameraActions::zoomInStop()
{
    m_popups->closeAny();
    m_zoomingIn = false;
    if (m_window->onLiveCanvas()) {
        m_window->liveSource()->zoomInStop();
        indications()->osdOpticalZoomOff();
    }
}

void CameraActions::zoomOutStart()
{
    m_popups->closeAny();
    m_zoomingOut = true;
    if (m_window->onLiveCanvas()) {
        m_window->liveSource()->zoomOutStart();
        indications()->osdOpticalZoomOn();
    } else {
        m_window->currentCanvas()->zoomOut();
        indications()->osdZoomOut();
    }
}

void CameraActions::zoomOutStop()
{
    m_popups->closeAny();
    m_zoomingOut = false;
    if (m_window->onLiveCanvas()) {
        m_window->liveSource()->zoomOutStop();
        indications()->osdOpticalZoomOff();
    }
}

void CameraActions::releaseZoom()
{
    if (m_zoomingIn)
        zoomInStop();
    if (m_zoomingOut)
        zoomOutStop();
}

void CameraActions::zoomReset()
{
    m_popups->closeAny();
    if (m_window->onLiveCanvas())
        m_window->liveSource()->zoomReset();
    else
        m_window->currentCanvas()->zoomReset();
    indications()->osdZoomIn();
}

void CameraActions::autoFocus()
{
    m_popups->closeAny();
    m_window->liveSource()->autoFocus();
    indications()->osdAutoFocus();
}

void CameraActions::brightnessDown()
{
    m_popups->closeAny();
    m_window->liveSource()->brightnessDown();
    indications()->osdBrightness();
}

void CameraActions::brightnessUp()
{
    m_popups->closeAny();
    m_window->liveSource()->brightnessUp();
    indications()->osdBrightness();
}

void CameraActions::rotate()
{
    m_popups->closeAny();
    m_window->currentCanvas()->rotate();
    indications()->osdRotate();
}

void CameraActions::rotateRev()
{
    m_popups->closeAny();
    m_window->currentCanvas()->rotateRev();
    indications()->osdRotate();
}

void CameraActions::setMacro(bool on)
{
    m_popups->closeAny();
    m_window->liveSource()->setMacroMode(on);
    indications()->osdMacro(on);
}

void CameraActions::setFrozen(bool on)
{
    m_popups->closeAny();
    m_window->currentCanvas()->frozen = on;
    indications()->osdFreeze();
}

OSDProcessor *CameraActions::indications() const
{
    return m_window->osdProcessors().value(m_window->currentCanvas());
}
