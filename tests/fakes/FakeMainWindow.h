#pragma once

#include "sources/WindowServices.h"

#include <QWidget>

/// Stands for the main window in tests of the folders below it, which know that class by its name
/// alone. What it answers are public members; null where a test sets none.
class MainWindow : public QWidget, private WindowServices
{
    Q_OBJECT

public:
    ImageCanvas *canvas = nullptr;
    OSDProcessor *osdProcessor = nullptr;
    LiveSource *camera = nullptr;
    int thumbnailRefreshes = 0;
    int recordingStops = 0;

signals:
    void modeChanged();

private:
    QObject *object() const override { return const_cast<MainWindow *>(this); }
    QWidget *widget() const override { return const_cast<MainWindow *>(this); }
    ImageCanvas *currentCanvas() const override { return canvas; }
    OSDProcessor *indications(ImageCanvas *) const override { return osdProcessor; }
    LiveSource *liveSource() const override { return camera; }
    void refreshThumbnails() override { ++thumbnailRefreshes; }
    void stopRecording() override { ++recordingStops; }
    void notifyOfMode(QObject *receiver) const override
    {
        connect(this, SIGNAL(modeChanged()), receiver, SLOT(modeChanged()));
    }

    Registration m_registration{this, this};
};
