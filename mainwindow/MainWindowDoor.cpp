#include "sources/MainWindowDoor.h"

#include "MainWindow.h"
#include "ThumbnailWidget.h"

QObject *MainWindowDoor::object(MainWindow *window)
{
    return window;
}

QWidget *MainWindowDoor::widget(MainWindow *window)
{
    return window;
}

MainWindow *MainWindowDoor::fromObject(QObject *object)
{
    return qobject_cast<MainWindow *>(object);
}

ImageCanvas *MainWindowDoor::currentCanvas(MainWindow *window)
{
    return window ? window->currentCanvas() : nullptr;
}

OSDProcessor *MainWindowDoor::osdProcessor(MainWindow *window, ImageCanvas *canvas)
{
    return window ? window->osdProcessors().value(canvas) : nullptr;
}

LiveSource *MainWindowDoor::liveSource(MainWindow *window)
{
    return window ? window->liveSource() : nullptr;
}

void MainWindowDoor::refreshThumbnails(MainWindow *window)
{
    ThumbnailWidget *strip = window ? window->thumbnailWidget() : nullptr;
    if (strip)
        strip->refresh();
}

void MainWindowDoor::stopRecording(MainWindow *window)
{
    if (window)
        window->stopRecording();
}
