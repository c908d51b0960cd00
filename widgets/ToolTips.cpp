#include "widgets/ToolTips.h"

#include "widgets/HorizontalSlider.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <optional>

namespace
{

/// Between a tip and what it must not cover.
constexpr int DISTANCE = 4;
/// The toolkit puts a tip this far right of and below the point that it is given.
constexpr QPoint OFFSET(2, 16);
/// What the toolkit adds to the letters, beside the frame and its margin.
constexpr int INDENT = 3;

/// A way from the widget, in steps of -1, 0 or 1.
struct Way {
    int right;
    int down;
};
constexpr Way WAYS[] = {{0, 1}, {0, -1}, {1, 0}};
constexpr Way LAST_WAY{-1, 0};

/// Touches that place, or comes nearer to it than the distance.
bool isNear(const QRect &tip, const QRect &place)
{
    return tip.adjusted(1 - DISTANCE, 1 - DISTANCE, DISTANCE - 1, DISTANCE - 1).intersects(place);
}

void putPast(QRect *tip, const QRect &place, Way way)
{
    if (way.down > 0)
        tip->moveTop(place.bottom() + 1 + DISTANCE);
    else if (way.down < 0)
        tip->moveBottom(place.top() - 1 - DISTANCE);
    else if (way.right > 0)
        tip->moveLeft(place.right() + 1 + DISTANCE);
    else
        tip->moveRight(place.left() - 1 - DISTANCE);
}

/// The first free place on that way, if the screen has one.
std::optional<QRect> placeOn(Way way, QRect tip, const ToolTips::Surroundings &around)
{
    putPast(&tip, around.widget, way);
    // Each neighbour is passed once at most.
    for (int i = 0; i <= around.neighbours.size(); ++i) {
        const auto blocking = std::find_if(around.neighbours.begin(), around.neighbours.end(),
                                           [&tip](const QRect &each) { return isNear(tip, each); });
        if (blocking == around.neighbours.end())
            break;
        putPast(&tip, *blocking, way);
    }
    return around.screen.contains(tip) ? std::optional<QRect>(tip) : std::nullopt;
}

int gap(const QRect &one, const QRect &other)
{
    const int across = std::max(one.left() - other.right(), other.left() - one.right());
    const int along = std::max(one.top() - other.bottom(), other.top() - one.bottom());
    return std::max(across, along);
}

bool isNeighbour(const QWidget *each)
{
    if (const auto *label = qobject_cast<const QLabel *>(each))
        return !label->text().isEmpty();
    return qobject_cast<const QAbstractButton *>(each) ||
           qobject_cast<const QAbstractSlider *>(each) ||
           qobject_cast<const HorizontalSlider *>(each) || qobject_cast<const QComboBox *>(each) ||
           qobject_cast<const QLineEdit *>(each) || qobject_cast<const QPlainTextEdit *>(each);
}

QVector<QRect> neighboursOf(const QWidget *widget)
{
    QVector<QRect> places;
    for (const QWidget *each : widget->window()->findChildren<QWidget *>()) {
        // A pop-up belongs to the window and has controls of its own.
        if (each == widget || each->window() != widget->window() || each->isAncestorOf(widget) ||
            widget->isAncestorOf(each) || !each->isVisible() || !isNeighbour(each))
            continue;
        // A page may be scrolled.
        const QRect seen = each->visibleRegion().boundingRect();
        if (!seen.isEmpty())
            places << QRect(each->mapToGlobal(seen.topLeft()), seen.size());
    }
    return places;
}

/// As large as the toolkit makes it.
QSize sizeOf(const QString &text, const QWidget *widget)
{
    const QFontMetrics metrics(QToolTip::font());
    const int frame =
        2 * (1 + widget->style()->pixelMetric(QStyle::PM_ToolTipLabelFrameWidth, nullptr, widget));
    return metrics.size(Qt::TextSingleLine, text) + QSize(frame + INDENT, frame + INDENT);
}

class TipFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *widget = static_cast<QWidget *>(watched);
        if (event->type() != QEvent::ToolTip || widget->toolTip().isEmpty())
            return false;
        ToolTips::show(widget, widget->toolTip(), static_cast<QHelpEvent *>(event)->globalPos());
        return true;
    }
};

} // namespace

void ToolTips::show(QWidget *widget, const QString &text, QPoint pointer)
{
    const Surroundings around{{widget->mapToGlobal(QPoint(0, 0)), widget->size()},
                              neighboursOf(widget),
                              widget->screen()->geometry(),
                              pointer};
    const QRect tip = place(sizeOf(text, widget), around);
    // A file's name is no markup.
    QToolTip::showText(tip.topLeft() - OFFSET,
                       Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text, widget,
                       widget->rect());
}

void ToolTips::add(QWidget *widget)
{
    // One for all, as a strip may have ten thousand buttons.
    static TipFilter filter;
    widget->installEventFilter(&filter);
}

void ToolTips::addName(QWidget *widget)
{
    widget->setToolTip(widget->accessibleName());
    add(widget);
}

QRect ToolTips::place(QSize tip, const Surroundings &around)
{
    // A long strip has its tip where the pointer is.
    const int last = std::max(around.widget.left(), around.widget.right() + 1 - tip.width());
    const int x = std::clamp(around.pointer.x(), around.widget.left(), last);
    const QRect first(QPoint(std::min(x, around.screen.right() + 1 - tip.width()),
                             std::max(around.widget.top(), around.screen.top())),
                      tip);
    std::optional<QRect> best;
    for (const Way &way : WAYS) {
        const std::optional<QRect> found = placeOn(way, first, around);
        if (found && (!best || gap(*found, around.widget) < gap(*best, around.widget)))
            best = found;
    }
    if (!best)
        best = placeOn(LAST_WAY, first, around);
    return best.value_or(first);
}
