#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

#include <chrono>

/// A sentence over the picture of a canvas, large enough to be read from the last row: why nothing
/// is shown, or what to do. It lets the mouse through, and no snapshot, movie or print has it.
///
/// There may be one that stands and one that passes; the passing one comes first. A child of the
/// canvas, in whose middle it stays. GUI thread.
class CanvasMessage : public QWidget
{
    Q_OBJECT

public:
    explicit CanvasMessage(QWidget *canvas);

    /// Shows a sentence for a while; then the standing one is back. An empty one ends the passing
    /// sentence at once.
    void pass(const QString &text, std::chrono::milliseconds time = std::chrono::seconds(6));
    /// Shows a sentence until it is replaced; none when it is empty.
    void stand(const QString &text);
    /// What is to be read now; empty when nothing is shown.
    [[nodiscard]] QString text() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void update();
    void place();

    QString m_passing;
    QString m_standing;
    QTimer m_timer;
};
