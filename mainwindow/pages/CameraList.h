#pragma once

#include <QComboBox>

class CameraKeeper;

/// The cameras on the bus, of which the user chooses the one to show. It follows the bus. GUI
/// thread; the keeper outlives it.
class CameraList : public QComboBox
{
    Q_OBJECT

public:
    CameraList(CameraKeeper *keeper, QWidget *parent);

private slots:
    void refresh();
    void take(int index);

private:
    CameraKeeper *m_keeper;
};
