#include "mainwindow/RecordingStatus.h"

#include "sources/LiveSource.h"
#include "sources/camera/CameraLink.h"

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>
#include <tuple>

namespace
{

constexpr int LOOK_INTERVAL_MS = 250;
constexpr int BAR_WIDTH = 3;
constexpr int BAR_PITCH = 5;
constexpr int GAP = 5;
constexpr int PIXELS = 12;
/// From here on hours are told.
constexpr int MANY_MINUTES = 600;
constexpr qint64 MANY_LOST = 999;
constexpr QRgb PLAIN = 0xFFFFFFFF;
constexpr QRgb UNLIT = 0x60FFFFFF;
constexpr QRgb SIGN_GROUND = 0xFFFFC83D;
constexpr QRgb SIGN_INK = 0xFF20242A;

QString windowText(const char *source)
{
    return QCoreApplication::translate("MainWindow", source);
}

QString timeText(int minutes)
{
    return minutes < MANY_MINUTES
               ? windowText(QT_TRANSLATE_NOOP("MainWindow", "%1 min")).arg(minutes)
               : windowText(QT_TRANSLATE_NOOP("MainWindow", "%1 h")).arg(minutes / 60);
}

/// Of a movie that says too little yet: what an encoder takes at most, so that the sign comes too
/// early rather than too late.
constexpr qint64 USUAL_BYTES_A_SECOND = qint64{1000} * 1000;

} // namespace

bool RecordingStatus::Shown::operator==(const Shown &other) const
{
    return std::tie(bars, withSound, mute, minutes, fewMinutes, lost) ==
           std::tie(other.bars, other.withSound, other.mute, other.minutes, other.fewMinutes,
                    other.lost);
}

RecordingStatus::RecordingStatus(QWidget *window)
    : QWidget(window)
{
    setFixedSize(SIZE);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(windowText("Recording"));
    hide();
    m_timer.setInterval(LOOK_INTERVAL_MS);
    connect(&m_timer, &QTimer::timeout, this, &RecordingStatus::look);
}

void RecordingStatus::start(const LiveSource *source)
{
    m_source = source;
    m_timer.start();
    look();
    show();
    raise();
}

void RecordingStatus::stop()
{
    m_timer.stop();
    m_source = nullptr;
    hide();
}

void RecordingStatus::look()
{
    if (m_source)
        showState(m_source->liveRecording().state(), qint64(m_source->cameraLink().lost));
}

void RecordingStatus::showState(const RecordingState &state, qint64 missed)
{
    const std::optional<int> minutes =
        RecordingRules::minutesLeft(state.movie, USUAL_BYTES_A_SECOND);
    const qint64 lost = state.dropped + missed;
    Shown shown;
    shown.bars = RecordingRules::barsOf(state.level.shownPeak);
    shown.withSound = state.withSound;
    shown.mute = RecordingRules::isMute(state);
    shown.fewMinutes = minutes && *minutes < RecordingRules::FEW_MINUTES;
    shown.minutes = minutes ? timeText(*minutes) : QString();
    if (lost > 0)
        shown.lost = QStringLiteral("\u2212%1").arg(std::min(lost, MANY_LOST));
    if (lost > MANY_LOST)
        shown.lost += '+';

    QStringList tip;
    if (minutes)
        tip << windowText(QT_TRANSLATE_NOOP("MainWindow", "The disk lasts %1 minutes"))
                   .arg(*minutes);
    if (shown.mute)
        tip << windowText(QT_TRANSLATE_NOOP("MainWindow", "No sound is recorded"));
    if (state.dropped > 0)
        tip << windowText(QT_TRANSLATE_NOOP("MainWindow", "Pictures dropped: %1"))
                   .arg(state.dropped);
    if (missed > 0)
        tip << windowText(QT_TRANSLATE_NOOP("MainWindow", "Frames missed: %1")).arg(missed);
    setToolTip(tip.join('\n'));
    // Said and painted only when it is another one.
    if (const QString text = tip.join(QStringLiteral(", ")); text != accessibleDescription())
        setAccessibleDescription(text);
    if (shown == m_shown)
        return;
    m_shown = shown;
    update();
}

void RecordingStatus::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QFont font("Arial");
    font.setPixelSize(PIXELS);
    painter.setFont(font);
    int right = width();
    // From the right, as far as there is room: what is marked comes first.
    const auto put = [&](const QString &text, bool sign) {
        const int textWidth = painter.fontMetrics().horizontalAdvance(text);
        const int space = sign ? 3 : 0;
        const QRect place(right - textWidth - 2 * space, 2, textWidth + 2 * space, height() - 4);
        if (text.isEmpty() || place.left() < 0)
            return;
        if (sign) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor::fromRgb(SIGN_GROUND));
            painter.drawRoundedRect(place, 3, 3);
        }
        painter.setPen(QColor::fromRgb(sign ? SIGN_INK : PLAIN));
        painter.drawText(place, Qt::AlignCenter, text);
        right = place.left() - GAP;
    };
    if (m_shown.withSound)
        right = paintBars(painter) - GAP;
    put(m_shown.lost, true);
    put(m_shown.minutes, m_shown.fewMinutes);
}

/// Returns where they begin.
int RecordingStatus::paintBars(QPainter &painter) const
{
    const int barsWidth = RecordingRules::BARS * BAR_PITCH;
    const QRect bars(width() - barsWidth, 3, barsWidth, height() - 6);
    if (m_shown.mute) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(SIGN_GROUND));
        painter.drawRoundedRect(bars.adjusted(-2, -1, 0, 1), 3, 3);
    }
    for (int bar = 0; bar < RecordingRules::BARS; ++bar) {
        const int barHeight = bars.height() * (bar + 1) / RecordingRules::BARS;
        const QRgb unlit = m_shown.mute ? SIGN_INK : UNLIT;
        painter.fillRect(QRect(bars.left() + bar * BAR_PITCH, bars.bottom() + 1 - barHeight,
                               BAR_WIDTH, barHeight),
                         QColor::fromRgba(bar < m_shown.bars ? PLAIN : unlit));
    }
    if (m_shown.mute) {
        painter.setPen(QPen(QColor(0xD3, 0x26, 0x1B), 2));
        painter.drawLine(bars.bottomLeft(), bars.topRight());
    }
    return bars.left();
}
