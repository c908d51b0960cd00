#pragma once

class ImageCanvas;
class LiveSource;
class OSDProcessor;
class QObject;
class QWidget;

/// What the door to the main window answers in tests of the rooms below it: any non-null pointer
/// stands for the window, and these are its things. Reset by assigning a fresh one.
struct FakeMainWindow {
    QObject *object = nullptr;
    QWidget *widget = nullptr;
    ImageCanvas *canvas = nullptr;
    OSDProcessor *osdProcessor = nullptr;
    LiveSource *liveSource = nullptr;
    int thumbnailRefreshes = 0;
    int recordingStops = 0;
};

extern FakeMainWindow fakeMainWindow;
