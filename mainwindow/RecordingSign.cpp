#include "mainwindow/RecordingSign.h"

#include "canvas/osd/IndicationTexts.h"
#include "widgets/ImageButton.h"

#include <QCoreApplication>
#include <QPainter>

namespace
{

constexpr int SIDE = 12;
constexpr int LEFT = 8;
/// Between the dot and the tab's caption.
constexpr int GAP_TO_CAPTION = 2;
/// Often enough that no second is left out.
constexpr int INTERVAL_MS = 250;
constexpr QRgb RED = 0xFFD3261B;

} // namespace

RecordingSign::RecordingSign(ImageButton *tab)
    : QWidget(tab)
    , m_tab(tab)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    // The face of a tab starts a row lower than its image.
    setGeometry(LEFT, (tab->height() - SIDE) / 2 + 1, SIDE, SIDE);
    setAccessibleName(QCoreApplication::translate("MainWindow", "Recording"));
    hide();
    m_timer.setInterval(INTERVAL_MS);
    connect(&m_timer, &QTimer::timeout, this, &RecordingSign::showTime);
}

void RecordingSign::start()
{
    if (m_timer.isActive())
        return;
    m_ownTitle = window()->windowTitle();
    m_clock.start();
    m_time.start(m_clock.elapsed());
    m_paused = false;
    m_timer.start();
    m_tab->setCaptionLead(LEFT + SIDE + GAP_TO_CAPTION);
    show();
    showTime();
}

void RecordingSign::setPaused(bool paused)
{
    if (!m_timer.isActive())
        return;
    m_paused = paused;
    m_time.setHeld(paused, m_clock.elapsed());
    showTime();
    update();
}

void RecordingSign::stop()
{
    if (!m_timer.isActive())
        return;
    m_timer.stop();
    m_tab->setCaptionLead(0);
    hide();
    window()->setWindowTitle(m_ownTitle);
}

void RecordingSign::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_paused) {
        for (const int x : {2, 7}) {
            painter.fillRect(QRect(x - 1, 0, 5, SIDE), Qt::white);
            painter.fillRect(QRect(x, 1, 3, SIDE - 2), QColor(RED));
        }
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    // The ring keeps the dot apart from the tab's blue.
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(QColor(RED));
    painter.drawEllipse(QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0));
}

void RecordingSign::showTime()
{
    const QString name = m_ownTitle.isEmpty() ? QCoreApplication::applicationName() : m_ownTitle;
    window()->setWindowTitle(
        QStringLiteral("%1 %2 \u2013 %3")
            .arg(m_paused ? QStringLiteral("\u2016") : QStringLiteral("\u25CF"),
                 IndicationTexts::recordTime(m_time.elapsedMs(m_clock.elapsed())), name));
}
