#pragma once

#include <QImage>
#include <QPoint>
#include <QWidget>

/// A window whose background is one image and which is dragged by its top strip.
///
/// It keeps the focus itself until the user moves it with the tabulator key or into a field, and
/// takes it back when the focused widget disappears, so that a key never presses a button that
/// nobody chose.
class FramelessWindow : public QWidget
{
    Q_OBJECT

public:
    /// With `frameless` it is a tool window without the platform's frame; under Wayland, where no
    /// program places its windows, a part of its parent's window.
    FramelessWindow(const QImage &background, bool frameless, QWidget *parent);

    /// Takes the image's size as size and minimum size. A null image leaves the background
    /// unpainted.
    void setBackgroundImage(const QImage &image);

protected:
    bool event(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] bool movable() const;
    /// Whether a widget of this window, or the window itself, can take a key.
    [[nodiscard]] bool focusIsShown() const;

    /// Pointer minus frame's top left, in global coordinates.
    QPoint m_dragOffset;
    bool m_dragging = false;
    bool m_frameless;
};
