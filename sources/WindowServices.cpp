#include "sources/WindowServices.h"

#include <QHash>

namespace
{

QHash<const MainWindow *, WindowServices *> &registered()
{
    static QHash<const MainWindow *, WindowServices *> windows;
    return windows;
}

} // namespace

WindowServices &WindowServices::of(const MainWindow *window)
{
    static WindowServices none;
    WindowServices *services = registered().value(window);
    return services ? *services : none;
}

QObject *WindowServices::object() const
{
    return nullptr;
}

QWidget *WindowServices::widget() const
{
    return nullptr;
}

ImageCanvas *WindowServices::currentCanvas() const
{
    return nullptr;
}

OSDProcessor *WindowServices::indications(ImageCanvas *) const
{
    return nullptr;
}

LiveSource *WindowServices::liveSource() const
{
    return nullptr;
}

void WindowServices::refreshThumbnails() {}

void WindowServices::stopRecording() {}

void WindowServices::notifyOfMode(QObject *) const {}

WindowServices::Registration::Registration(const MainWindow *window, WindowServices *services)
    : m_window(window)
{
    registered().insert(window, services);
}

WindowServices::Registration::~Registration()
{
    registered().remove(m_window);
}
