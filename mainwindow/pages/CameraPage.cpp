#include "widgets/CameraPage.h"

#include "mainwindow/CameraPreferences.h"
#include "mainwindow/pages/CameraList.h"
#include "mainwindow/pages/CameraSizes.h"
#include "mainwindow/pages/CameraSliders.h"
#include "mainwindow/pages/Pages.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"

#include <QCheckBox>
#include <QLabel>

namespace
{

QCheckBox *makeMirror(const char *caption, LiveSource *camera, Qt::Orientation direction,
                      QWidget *parent)
{
    QCheckBox *box = Pages::makeCheckBox(caption, camera->mirrored().testFlag(direction), parent);
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
    auto *state = new CameraPage(parent);
    state->setStatus(keeper->status());
    QObject::connect(keeper, &CameraKeeper::statusChanged, state,
                     [state, keeper] { state->setStatus(keeper->status()); });

    auto *caption =
        new QLabel(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Camera to show")), parent);
    auto *cameras = new CameraList(keeper, parent);
    cameras->setAccessibleName(caption->text());
    QCheckBox *leftRight = makeMirror(QT_TRANSLATE_NOOP("MoreToolWindow", "Mirror left and right"),
                                      context.camera, Qt::Horizontal, parent);
    QCheckBox *upsideDown = makeMirror(QT_TRANSLATE_NOOP("MoreToolWindow", "Mirror top and bottom"),
                                       context.camera, Qt::Vertical, parent);
    auto *sizeCaption =
        new QLabel(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Size of the picture")), parent);
    auto *sizes = new CameraSizes(context.camera, parent);
    sizes->setAccessibleName(sizeCaption->text());
    auto *sliders = new CameraSliders(context.camera, parent);
    return makeColumn({state, caption, cameras, sizeCaption, sizes, leftRight, upsideDown, sliders},
                      parent);
}
