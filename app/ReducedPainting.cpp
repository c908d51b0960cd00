#include "app/ReducedPainting.h"

#include <QApplication>
#include <QEvent>
#include <QGraphicsEffect>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace
{

/// Paints a window through one painter for all its widgets, which brings the scale that their own
/// painters leave out: those never scale by less than 1.
class ReducedPainting final : public QGraphicsEffect
{
public:
    explicit ReducedPainting(QWidget &window)
        : QGraphicsEffect(&window)
        , m_window(window)
    {
    }

protected:
    void draw(QPainter *painter) override
    {
        const double ratio = painter->device()->devicePixelRatioF();
        if (ratio >= 1) {
            drawSource(painter);
            return;
        }
        const QRegion dirty = toPaint(painter->paintEngine()->systemClip(), ratio);
        painter->save();
        painter->scale(ratio, ratio);
        m_window.render(painter, dirty.boundingRect().topLeft(), dirty,
                        QWidget::DrawWindowBackground | QWidget::DrawChildren);
        painter->restore();
    }

private:
    /// In units of the layout, what a region in device pixels touches; all when it is empty.
    QRegion toPaint(const QRegion &devicePixels, double ratio) const
    {
        QRegion region;
        for (const QRect &rect : devicePixels) {
            const QPointF topLeft = QPointF(rect.topLeft()) / ratio;
            region += QRectF(topLeft, QSizeF(rect.size()) / ratio).toAlignedRect();
        }
        return region.isEmpty() ? m_window.rect() : region & m_window.rect();
    }

    QWidget &m_window;
};

/// Gives windows their painting when they are shown.
class ShownWindows final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show && object->isWidgetType()) {
            auto &widget = static_cast<QWidget &>(*object);
            if (widget.isWindow() && widget.devicePixelRatioF() < 1 && !widget.graphicsEffect())
                widget.setGraphicsEffect(new ReducedPainting(widget));
        }
        return QObject::eventFilter(object, event);
    }
};

} // namespace

void paintSmallRatios()
{
    qApp->installEventFilter(new ShownWindows(qApp));
}
