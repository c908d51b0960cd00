#include "mainwindow/MainWindowServices.h"

#include "mainwindow/MainWindow.h"
#include "mainwindow/bars/ThumbnailWidget.h"

MainWindowServices::MainWindowServices(MainWindow *window)
    : m_window(window)
    , m_registration(window, this)
{
}

QObject *MainWindowServices::object() const
{
    return m_window;
}

QWidget *MainWindowServices::widget() const
{
    return m_window;
}

ImageCanvas *MainWindowServices::currentCanvas() const
{
    return m_window->currentCanvas();
}

OSDProcessor *MainWindowServices::indications(ImageCanvas *canvas) const
{
    return m_window->osdProcessors().value(canvas);
}

LiveSource *MainWindowServices::liveSource() const
{
    return m_window->liveSource();
}

void MainWindowServices::refreshThumbnails()
{
    if (ThumbnailWidget *strip = m_window->thumbnailWidget())
        strip->refresh();
}

void MainWindowServices::stopRecording()
{
    m_window->stopRecording();
}

void MainWindowServices::notifyOfMode(QObject *receiver) const
{
    QObject::connect(m_window, SIGNAL(modeChanged()), receiver, SLOT(modeChanged()));
}
