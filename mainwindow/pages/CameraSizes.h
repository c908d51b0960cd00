#pragma once

#include <QComboBox>

class LiveSource;

/// The sizes of pictures that the camera in use offers, of which the user may choose one in place
/// of that of the settings. GUI thread; the camera outlives it.
class CameraSizes : public QComboBox
{
    Q_OBJECT

public:
    CameraSizes(LiveSource *camera, QWidget *parent);

private slots:
    void refresh();
    void take(int index);

private:
    LiveSource *m_camera;
};
