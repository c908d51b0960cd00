#include "widgets/CameraPage.h"

#include "mainwindow/pages/Pages.h"
#include "sources/camera/CameraKeeper.h"

QWidget *Pages::makeCameraPage(const Context &context, QWidget *parent)
{
    auto *page = new CameraPage(parent);
    const CameraKeeper *keeper = context.keeper;
    if (!keeper)
        return page;
    page->setStatus(keeper->status());
    QObject::connect(keeper, &CameraKeeper::statusChanged, page,
                     [page, keeper] { page->setStatus(keeper->status()); });
    return page;
}
