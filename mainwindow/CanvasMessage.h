#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

#include <chrono>

/// A sentence over the picture of a canvas, large enough to be read from the last row: why nothing
/// is shown, or what to do. It ignores the mouse and appears in no snapshot, movie or print.
///
/// One sentence may stand and one may pass; the passing one is shown first. A child of the canvas,
/// in whose centre it stays. GUI thread.
class CanvasMessage : public QWidget
{
    Q_OBJECT

public:
    explicit CanvasMessage(QWidget *canvas);

    /// Shows a sentence for a while; afterwards the standing one is shown again. An empty one ends
    /// the passing sentence at once.
    void pass(const QString &text, std::chrono::milliseconds time = std::chrono::seconds(6));
    /// Shows a sentence until it is replaced; none when it is empty.
    void stand(const QString &text);
    /// The sentence that is shown now; empty when there is none.
    [[nodiscard]] QString text() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// Another sentence is shown now.
    void said(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void update();
    void place();

    QString m_passing;
    QString m_standing;
    QTimer m_timer;
};
