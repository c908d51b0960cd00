#pragma once

class ImageCanvas;
class LiveSource;
class MainWindow;
class OSDProcessor;
class QObject;
class QWidget;

/// What the folders below the main window may ask of it. They know MainWindow by name only: a
/// window registers its services when it is built, and whoever was handed a MainWindow pointer
/// looks them up with of(). This base class answers for a window that is null, not built yet or
/// destroyed: every answer is null, and every request does nothing.
///
/// GUI thread. A reference from of() is good until the window is destroyed; ask again for each use.
class WindowServices
{
public:
    WindowServices() = default;
    WindowServices(const WindowServices &) = delete;
    WindowServices &operator=(const WindowServices &) = delete;
    virtual ~WindowServices() = default;

    /// The services of that window; never null, and the pointer is not followed.
    [[nodiscard]] static WindowServices &of(const MainWindow *window);

    /// The window as the parent of objects and of widgets.
    [[nodiscard]] virtual QObject *object() const;
    [[nodiscard]] virtual QWidget *widget() const;
    /// The canvas of the current mode.
    [[nodiscard]] virtual ImageCanvas *currentCanvas() const;
    /// The indications of a canvas; null for a canvas that the window does not know.
    [[nodiscard]] virtual OSDProcessor *indications(ImageCanvas *canvas) const;
    /// The camera; null before it is built and after it is gone.
    [[nodiscard]] virtual LiveSource *liveSource() const;

    /// Rebuilds the thumbnail strip, if there is one yet.
    virtual void refreshThumbnails();
    /// Stops a running recording, the buttons and indications included.
    virtual void stopRecording();
    /// Calls the receiver's slot "modeChanged()" after each change of mode.
    virtual void notifyOfMode(QObject *receiver) const;

    /// Registers a window's services for as long as it lives: a member of the window.
    class Registration
    {
    public:
        Registration(const MainWindow *window, WindowServices *services);
        ~Registration();
        Registration(const Registration &) = delete;
        Registration &operator=(const Registration &) = delete;

    private:
        const MainWindow *m_window;
    };
};
