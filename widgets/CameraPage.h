#pragma once

#include "sources/camera/CameraStatus.h"

#include <QWidget>

class ImageButton;
class QLabel;
class QPlainTextEdit;
class StatusSign;

/// A page about the camera: its state with a sign, what helps, and the commands for that with a
/// button that copies them. It keeps the width that it is made with and wraps its lines to that.
/// GUI thread.
class CameraPage : public QWidget
{
    Q_OBJECT

public:
    explicit CameraPage(QWidget *parent = nullptr);

    void setStatus(const CameraStatus &status);

    /// The sentence that is shown, for the window's mark and for a screen reader.
    [[nodiscard]] QString sentence() const;

private slots:
    void copyCommands();

private:
    StatusSign *m_sign;
    QLabel *m_sentence;
    QLabel *m_remedy;
    QPlainTextEdit *m_commands;
    ImageButton *m_copy;
};
