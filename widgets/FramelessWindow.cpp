#include "widgets/FramelessWindow.h"

#include "resources/SkinImages.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>

namespace
{

constexpr int DRAG_STRIP_HEIGHT = 26;

} // namespace

FramelessWindow::FramelessWindow(const QImage &background, bool frameless, QWidget *parent)
    : QWidget(parent)
    , m_frameless(frameless)
{
    if (m_frameless && parent && QGuiApplication::platformName().startsWith("wayland")) {
        // So the tabulator key stays within it, as within a window.
        setWindowFlags(Qt::SubWindow);
        setAutoFillBackground(true);
        setAttribute(Qt::WA_NoMousePropagation);
    } else if (m_frameless) {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    }
    setBackgroundImage(background);
}

void FramelessWindow::setBackgroundImage(const QImage &image)
{
    const QSize size = SkinImages::layoutSize(image);
    setMinimumSize(size);
    resize(size);

    QPalette skinned = palette();
    skinned.setBrush(backgroundRole(), QBrush(image));
    setPalette(skinned);
}

bool FramelessWindow::event(QEvent *event)
{
    // Without a widget that takes the focus, the platform would choose the first button.
    if (event->type() == QEvent::WindowActivate && isWindow() && !focusIsShown())
        setFocus(Qt::ActiveWindowFocusReason);
    return QWidget::event(event);
}

bool FramelessWindow::focusNextPrevChild(bool next)
{
    // A widget that is hidden or disabled passes its focus on in the same way as the tabulator key.
    if (focusWidget() && !focusIsShown()) {
        setFocus(Qt::OtherFocusReason);
        return true;
    }
    return QWidget::focusNextPrevChild(next);
}

void FramelessWindow::paintEvent(QPaintEvent *)
{
    // The brush of the palette has already painted the image, but without averaging.
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    if (painter.testRenderHint(QPainter::SmoothPixmapTransform))
        painter.drawImage(QPoint(0, 0), palette().brush(backgroundRole()).textureImage());
}

void FramelessWindow::mousePressEvent(QMouseEvent *event)
{
    const QPoint local = event->localPos().toPoint();
    if (!movable() || event->button() != Qt::LeftButton || local.y() >= DRAG_STRIP_HEIGHT) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_dragOffset = event->screenPos().toPoint() - frameGeometry().topLeft();
    m_dragging = true;
    event->accept();
}

void FramelessWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!movable() || !m_dragging || !(event->buttons() & Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    move(event->screenPos().toPoint() - m_dragOffset);
    event->accept();
}

void FramelessWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_dragging = false;
    event->accept();
}

bool FramelessWindow::movable() const
{
    // Moving a full-screen window would end that state here, but not for the window manager.
    return !isMaximized() && !isMinimized() && !isFullScreen();
}

bool FramelessWindow::focusIsShown() const
{
    const QWidget *focus = focusWidget();
    return focus && focus->isVisible() && focus->isEnabled();
}
