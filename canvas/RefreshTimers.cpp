#include "canvas/RefreshTimers.h"

#include "canvas/model/CanvasModel.h"

#include <QWidget>

#include <algorithm>

namespace
{

constexpr int REFRESH_INTERVAL_MS = 40;
/// When a source has been silent for this long, the canvas shows its own changes itself.
constexpr int SILENT_SOURCE_MS = 200;
/// How long a stroke over a standing picture may wait, so that several are shown together.
constexpr int STROKE_DELAY_MS = 10;
/// A screen shows no more than this apart: a mouse that tells of a thousand moves a second is not
/// worth a thousand pictures.
constexpr qint64 VIEW_INTERVAL_MS = 16;

} // namespace

RefreshTimers::RefreshTimers(const QWidget &canvas, const CanvasModel &model)
    : m_canvas(canvas)
    , m_model(model)
{
    m_refresh.setInterval(REFRESH_INTERVAL_MS);
    connect(&m_refresh, &QTimer::timeout, this, &RefreshTimers::due);
    m_idle.setInterval(REFRESH_INTERVAL_MS);
    connect(&m_idle, &QTimer::timeout, this, &RefreshTimers::refreshWhenIdle);
    m_idle.start();
    m_stroke.setInterval(STROKE_DELAY_MS);
    m_stroke.setSingleShot(true);
    m_stroke.setTimerType(Qt::PreciseTimer);
    connect(&m_stroke, &QTimer::timeout, this, &RefreshTimers::due);
    m_view.setSingleShot(true);
    m_view.setTimerType(Qt::PreciseTimer);
    connect(&m_view, &QTimer::timeout, this, &RefreshTimers::showView);
    m_sinceView.start();
}

void RefreshTimers::drawn()
{
    if (!m_stroke.isActive() && m_model.msSinceFrame() >= REFRESH_INTERVAL_MS)
        m_stroke.start();
}

void RefreshTimers::viewMoved()
{
    if (!m_view.isActive())
        m_view.start(
            static_cast<int>(std::max<qint64>(0, VIEW_INTERVAL_MS - m_sinceView.elapsed())));
}

void RefreshTimers::showView()
{
    emit viewDue();
    // From its end: a picture that takes long leaves time for the events that come meanwhile.
    m_sinceView.start();
}

void RefreshTimers::refreshWhenIdle()
{
    emit idle();
    if (m_refresh.isActive() || !m_canvas.isVisible() || m_model.msSinceFrame() < SILENT_SOURCE_MS)
        return;
    // Indications appear and disappear with time, so a repaint is needed even without changes.
    emit due();
}
