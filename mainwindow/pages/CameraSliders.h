#pragma once

#include "sources/camera/StandardControl.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class LiveSource;
class QCheckBox;
class QComboBox;
class QLabel;
class Slider;

/// The controls of the camera in use, a row each: exposure, focus, white balance and sharpness as
/// sliders, those that the camera can set by itself with a check box for that, and the frequency of
/// the mains. Rows of what the camera does not have are hidden. GUI thread; the camera outlives it.
class CameraSliders : public QWidget
{
    Q_OBJECT

public:
    CameraSliders(LiveSource *camera, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void refresh();

private:
    struct Row {
        StandardControl control;
        QWidget *widget;
        Slider *slider;
        QCheckBox *automatic;
    };

    void addRow(StandardControl control, const QString &name);
    void addFrequency();
    void show(const Row &row);
    void showFrequency();

    LiveSource *m_camera;
    std::vector<Row> m_rows;
    QWidget *m_frequencyRow = nullptr;
    QComboBox *m_frequency = nullptr;
    /// Runs while the rows are seen, as the camera changes what it sets by itself.
    QTimer m_timer;
};
