#include "FakeMainWindowDoor.h"

#include "sources/MainWindowDoor.h"

FakeMainWindow fakeMainWindow;

QObject *MainWindowDoor::object(MainWindow *)
{
    return fakeMainWindow.object;
}

QWidget *MainWindowDoor::widget(MainWindow *)
{
    return fakeMainWindow.widget;
}

MainWindow *MainWindowDoor::fromObject(QObject *object)
{
    return object && object == fakeMainWindow.object ? reinterpret_cast<MainWindow *>(object)
                                                     : nullptr;
}

ImageCanvas *MainWindowDoor::currentCanvas(MainWindow *)
{
    return fakeMainWindow.canvas;
}

OSDProcessor *MainWindowDoor::osdProcessor(MainWindow *, ImageCanvas *)
{
    return fakeMainWindow.osdProcessor;
}

LiveSource *MainWindowDoor::liveSource(MainWindow *)
{
    return fakeMainWindow.liveSource;
}

void MainWindowDoor::refreshThumbnails(MainWindow *)
{
    ++fakeMainWindow.thumbnailRefreshes;
}

void MainWindowDoor::stopRecording(MainWindow *)
{
    ++fakeMainWindow.recordingStops;
}
