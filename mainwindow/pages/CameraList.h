#pragma once

#include <QComboBox>
#include <QPointer>

class CameraKeeper;

/// The cameras on the bus, of which the user chooses the one to show. It follows the bus while it
/// is visible. GUI thread. The keeper may go first, with the window.
class CameraList : public QComboBox
{
    Q_OBJECT

public:
    CameraList(CameraKeeper *keeper, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void refresh();
    void take(int index);

private:
    QPointer<CameraKeeper> m_keeper;
};
