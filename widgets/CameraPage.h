#pragma once

#include "sources/camera/CameraStatus.h"

#include <QWidget>

class ImageButton;
class QLabel;
class QPlainTextEdit;

/// A page about the camera: how it stands, what helps, and the commands for that with a button that
/// copies them. It is as wide as it is made and breaks its lines to that. GUI thread.
class CameraPage : public QWidget
{
    Q_OBJECT

public:
    explicit CameraPage(QWidget *parent = nullptr);

    void setStatus(const CameraStatus &status);

    /// What is shown, for the window's mark and for a screen reader.
    [[nodiscard]] QString sentence() const;

private slots:
    void copyCommands();

private:
    QLabel *m_sentence;
    QLabel *m_remedy;
    QPlainTextEdit *m_commands;
    ImageButton *m_copy;
};
