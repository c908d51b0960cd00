#include "widgets/CameraPage.h"

#include "mainwindow/CameraPreferences.h"
#include "mainwindow/pages/CameraList.h"
#include "mainwindow/pages/Pages.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "widgets/FormControls.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace
{

QCheckBox *makeMirror(const QString &caption, LiveSource *camera, Qt::Orientation direction,
                      QWidget *parent)
{
    auto *box = new QCheckBox(caption, parent);
    FormControls::applyLook(box);
    box->setChecked(camera->mirrored().testFlag(direction));
    QObject::connect(box, &QCheckBox::toggled, camera,
                     [=](bool on) { CameraPreferences::setMirrored(*camera, direction, on); });
    return box;
}

} // namespace

QWidget *Pages::makeCameraPage(const Context &context, QWidget *parent)
{
    CameraKeeper *keeper = context.keeper;
    if (!keeper || !context.camera)
        return new CameraPage(parent);
    auto *page = new QWidget(parent);
    auto *state = new CameraPage(page);
    state->setStatus(keeper->status());
    QObject::connect(keeper, &CameraKeeper::statusChanged, state,
                     [state, keeper] { state->setStatus(keeper->status()); });

    auto *caption =
        new QLabel(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Camera to show")), page);
    auto *cameras = new CameraList(keeper, page);
    cameras->setAccessibleName(caption->text());
    QCheckBox *leftRight =
        makeMirror(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Mirror left and right")),
                   context.camera, Qt::Horizontal, page);
    QCheckBox *upsideDown =
        makeMirror(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Mirror top and bottom")),
                   context.camera, Qt::Vertical, page);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    for (QWidget *each : {static_cast<QWidget *>(state), static_cast<QWidget *>(caption),
                          static_cast<QWidget *>(cameras), static_cast<QWidget *>(leftRight),
                          static_cast<QWidget *>(upsideDown)})
        layout->addWidget(each);
    layout->addStretch();
    return page;
}
