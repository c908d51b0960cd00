#pragma once

#include "sources/WindowServices.h"

/// The main window's services, registered for as long as this object lives. GUI thread; a member of
/// the window.
class MainWindowServices : public WindowServices
{
public:
    explicit MainWindowServices(MainWindow *window);

    [[nodiscard]] QObject *object() const override;
    [[nodiscard]] QWidget *widget() const override;
    [[nodiscard]] ImageCanvas *currentCanvas() const override;
    [[nodiscard]] OSDProcessor *indications(ImageCanvas *canvas) const override;
    [[nodiscard]] LiveSource *liveSource() const override;
    void refreshThumbnails() override;
    void stopRecording() override;
    void notifyOfMode(QObject *receiver) const override;

private:
    MainWindow *m_window;
    Registration m_registration;
};
