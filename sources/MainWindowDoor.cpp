// The door of a program that has no main window: closed. A program with one links definitions of
// its own as objects, which the linker takes before it looks into this library.
#include "MainWindowDoor.h"

QObject *MainWindowDoor::object(MainWindow *)
{
    return nullptr;
}

QWidget *MainWindowDoor::widget(MainWindow *)
{
    return nullptr;
}

MainWindow *MainWindowDoor::fromObject(QObject *)
{
    return nullptr;
}

ImageCanvas *MainWindowDoor::currentCanvas(MainWindow *)
{
    return nullptr;
}

OSDProcessor *MainWindowDoor::osdProcessor(MainWindow *, ImageCanvas *)
{
    return nullptr;
}

LiveSource *MainWindowDoor::liveSource(MainWindow *)
{
    return nullptr;
}

void MainWindowDoor::refreshThumbnails(MainWindow *) {}

void MainWindowDoor::stopRecording(MainWindow *) {}
