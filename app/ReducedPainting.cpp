#include "app/ReducedPainting.h"

#include <QApplication>
#include <QEvent>
#include <QGraphicsEffect>
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
        painter->save();
        painter->scale(ratio, ratio);
        m_window.render(painter, QPoint(), QRegion(),
                        QWidget::DrawWindowBackground | QWidget::DrawChildren);
        painter->restore();
    }

private:
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
