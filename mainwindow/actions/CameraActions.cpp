#include "mainwindow/actions/CameraActions.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Popups.h"
#include "sources/LiveSourceBase.h"

#include <utility>

CameraActions::CameraActions(CanvasDeck *deck, Popups *popups, LiveSourceBase *camera)
    : m_deck(deck)
    , m_popups(popups)
    , m_camera(camera)
{
}

void CameraActions::setZoomQuery(std::function<bool()> cameraZooms)
{
    m_cameraZooms = std::move(cameraZooms);
}

bool CameraActions::zoomsOptically() const
{
    return m_deck->onLive() && (!m_cameraZooms || m_cameraZooms());
}

void CameraActions::zoomInStart()
{
    m_popups->closeAny();
    m_zoomingIn = true;
    if (zoomsOptically()) {
        m_camera->zoomInStart();
        m_deck->indications()->osdOpticalZoomOn();
    } else {
        m_deck->current()->zoomIn();
        m_deck->indications()->osdZoomIn();
    }
}

void CameraActions::zoomInStop()
{
    m_popups->closeAny();
    endZoomIn();
}

void CameraActions::endZoomIn()
{
    m_zoomingIn = false;
    if (m_deck->onLive()) {
        m_camera->zoomInStop();
        m_deck->indications()->osdOpticalZoomOff();
    }
}

void CameraActions::zoomOutStart()
{
    m_popups->closeAny();
    m_zoomingOut = true;
    if (zoomsOptically()) {
        m_camera->zoomOutStart();
        m_deck->indications()->osdOpticalZoomOn();
    } else {
        m_deck->current()->zoomOut();
        m_deck->indications()->osdZoomOut();
    }
}

void CameraActions::zoomOutStop()
{
    m_popups->closeAny();
    endZoomOut();
}

void CameraActions::endZoomOut()
{
    m_zoomingOut = false;
    if (m_deck->onLive()) {
        m_camera->zoomOutStop();
        m_deck->indications()->osdOpticalZoomOff();
    }
}

void CameraActions::releaseZoom()
{
    if (m_zoomingIn)
        endZoomIn();
    if (m_zoomingOut)
        endZoomOut();
}

void CameraActions::zoomReset()
{
    m_popups->closeAny();
    if (m_deck->onLive())
        m_camera->zoomReset();
    // The wheel and fingers zoom the live canvas too.
    m_deck->current()->zoomReset();
    m_deck->indications()->osdZoomIn();
}

void CameraActions::autoFocus()
{
    m_popups->closeAny();
    m_camera->autoFocus();
    m_deck->indications()->osdAutoFocus();
}

void CameraActions::brightnessDown()
{
    m_popups->closeAny();
    m_camera->brightnessDown();
    m_deck->indications()->osdBrightness();
}

void CameraActions::brightnessUp()
{
    m_popups->closeAny();
    m_camera->brightnessUp();
    m_deck->indications()->osdBrightness();
}

void CameraActions::rotate()
{
    m_popups->closeAny();
    m_deck->current()->rotate();
    m_deck->indications()->osdRotate();
}

void CameraActions::rotateRev()
{
    m_popups->closeAny();
    m_deck->current()->rotateRev();
    m_deck->indications()->osdRotate();
}

void CameraActions::setMacro(bool on)
{
    m_popups->closeAny();
    m_camera->setMacroMode(on);
    m_deck->indications()->osdMacro(on);
}

void CameraActions::setFrozen(bool on)
{
    m_popups->closeAny();
    m_deck->current()->frozen = on;
    m_deck->indications()->osdFreeze();
}
