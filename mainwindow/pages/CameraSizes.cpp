#include "mainwindow/pages/CameraSizes.h"

#include "mainwindow/CameraPreferences.h"
#include "mainwindow/pages/Pages.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraSettings.h"
#include "widgets/FormControls.h"

#include <algorithm>

CameraSizes::CameraSizes(LiveSource *camera, QWidget *parent)
    : QComboBox(parent)
    , m_camera(camera)
{
    FormControls::applyLook(this);
    Pages::leaveWheelToPage(this);
    connect(&camera->cameraSettings(), &CameraSettings::cameraChanged, this, &CameraSizes::refresh);
    connect(camera, &LiveSource::previewSizeDropped, this, &CameraSizes::refresh);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &CameraSizes::take);
    refresh();
}

void CameraSizes::refresh()
{
    clear();
    const auto text = [](QSize size) {
        return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
    };
    addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "As in the settings (%1)"))
                .arg(text(m_camera->resolution())),
            QSize());
    const QSize chosen = m_camera->previewSize();
    std::vector<QSize> sizes = m_camera->cameraSizes();
    // One that is kept for another camera stays chosen.
    if (!chosen.isEmpty() && std::find(sizes.begin(), sizes.end(), chosen) == sizes.end())
        sizes.insert(sizes.begin(), chosen);
    for (const QSize size : sizes)
        addItem(text(size), size);
    setCurrentIndex(chosen.isEmpty() ? 0 : findData(chosen));
}

void CameraSizes::take(int index)
{
    CameraPreferences::setPreviewSize(*m_camera, itemData(index).toSize());
}
