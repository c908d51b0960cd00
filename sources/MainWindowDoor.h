#pragma once

class ImageCanvas;
class LiveSource;
class MainWindow;
class OSDProcessor;
class QObject;
class QWidget;

/// The whole way up: what the rooms below the main window may ask of it. They know MainWindow by
/// name only; the functions are defined beside it, and tests of one room define them over a fake.
/// GUI thread. Every function accepts a null window and then answers null or does nothing.
namespace MainWindowDoor
{

/// The window as a parent for objects and for widgets.
QObject *object(MainWindow *window);
QWidget *widget(MainWindow *window);
/// The window behind a parent object; null when the object is another kind.
MainWindow *fromObject(QObject *object);

/// The canvas of the current mode.
ImageCanvas *currentCanvas(MainWindow *window);
/// The indications of a canvas; null for a canvas that the window does not know.
OSDProcessor *osdProcessor(MainWindow *window, ImageCanvas *canvas);
/// The camera; null before it is built and after it is gone.
LiveSource *liveSource(MainWindow *window);

/// Rebuilds the thumbnail strip, if there is one yet.
void refreshThumbnails(MainWindow *window);
/// Stops a running recording, the buttons and indications included.
void stopRecording(MainWindow *window);

} // namespace MainWindowDoor
