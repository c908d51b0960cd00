#pragma once

#include <QImage>
#include <QWidget>

/// A painted strip with a handle that follows the mouse: the film's position, the thumbnails' view.
class HorizontalSlider : public QWidget
{
    Q_OBJECT

public:
    HorizontalSlider(const QImage &handle, QWidget *parent);

    // The three setters of numbers store them as given: no clamping, no signal.
    void setRange(int minimum, int maximum);
    void setHandleWidth(int width);
    /// Repaints at once.
    void setValue(int value);

    [[nodiscard]] int value() const { return m_value; }
    [[nodiscard]] int minimum() const { return m_minimum; }
    [[nodiscard]] int maximum() const { return m_maximum; }

    /// Pixels a step; not positive when the widget is narrower than its margins.
    [[nodiscard]] double strip() const;
    /// Sets the value under the pointer, kept within the range, and emits the signal.
    void translateMouseEvent(QMouseEvent *event);

signals:
    void valueChanged(int value);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    /// Left edge of the handle, in widget coordinates.
    [[nodiscard]] double handleX() const;

    QImage m_background;
    QImage m_handle;
    int m_handleWidth = 96;
    int m_value = 0;
    int m_minimum = 0;
    int m_maximum = 100;
};
