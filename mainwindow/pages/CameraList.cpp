#include "mainwindow/pages/CameraList.h"

#include "mainwindow/CameraPreferences.h"
#include "mainwindow/pages/Pages.h"
#include "sources/camera/CameraKeeper.h"
#include "sources/camera/CameraName.h"
#include "widgets/FormControls.h"

namespace
{

/// Twins are told apart by their serial numbers.
QString nameOf(const BusCamera &camera, const BusCameras &all)
{
    QString name = shownCameraName(camera.name);
    if (name.isEmpty())
        return camera.text();
    for (const BusCamera &other : all) {
        if (!(other == camera) && shownCameraName(other.name) == name)
            return QStringLiteral("%1 (%2)").arg(name, shownCameraName(camera.serial));
    }
    return name;
}

} // namespace

CameraList::CameraList(CameraKeeper *keeper, QWidget *parent)
    : QComboBox(parent)
    , m_keeper(keeper)
{
    FormControls::applyLook(this);
    Pages::leaveWheelToPage(this);
    // A long name is cut off instead of widening the pop-up.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(1);
    connect(keeper, &CameraKeeper::camerasChanged, this, &CameraList::refresh);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &CameraList::take);
    refresh();
}

void CameraList::showEvent(QShowEvent *event)
{
    m_keeper->addViewer(this);
    QComboBox::showEvent(event);
}

void CameraList::hideEvent(QHideEvent *event)
{
    if (m_keeper)
        m_keeper->removeViewer(this);
    QComboBox::hideEvent(event);
}

void CameraList::refresh()
{
    clear();
    addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "The document camera")), QString());
    const BusCameras &cameras = m_keeper->cameras();
    for (const BusCamera &camera : cameras) {
        if (findData(camera.text()) < 0)
            addItem(nameOf(camera, cameras), camera.text());
    }
    const CameraChoice &choice = m_keeper->choice();
    const QString chosen = choice ? choice->text() : QString();
    if (findData(chosen) < 0) {
        const QString name = CameraPreferences::chosenName();
        addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "%1 (not plugged in)"))
                    .arg(name.isEmpty() ? shownCameraName(chosen) : name),
                chosen);
    }
    setCurrentIndex(findData(chosen));
}

void CameraList::take(int index)
{
    CameraPreferences::choose(*m_keeper, CameraIdentity::fromText(itemData(index).toString()),
                              itemText(index));
}
