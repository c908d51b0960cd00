#include "mainwindow/pages/MicrophoneLevel.h"

#include "mainwindow/pages/Pages.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr int LEVEL_INTERVAL_MS = 100;
constexpr int BAR_HEIGHT = 8;
constexpr int BAR_GAP = 4;
/// What is quieter leaves the bar empty.
constexpr double QUIETEST = -60.0;
/// Louder than that it may be cut off.
constexpr double TOO_LOUD = -3.0;
constexpr QRgb GROUND = 0xFF2B3036;
constexpr QRgb LOUDNESS = 0xFF3E8E5A;
constexpr QRgb PEAK = 0xFFFFFFFF;
constexpr QRgb PEAK_TOO_LOUD = 0xFFE8703A;

} // namespace

MicrophoneLevel::MicrophoneLevel(LiveSource *source, QWidget *parent)
    : QWidget(parent)
    , m_preview(*source)
    , m_name(new QLabel(this))
{
    m_name->setTextFormat(Qt::PlainText);
    m_name->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, BAR_HEIGHT + BAR_GAP);
    layout->addWidget(m_name);
    connect(&m_timer, &QTimer::timeout, this, &MicrophoneLevel::look);
    m_timer.setInterval(LEVEL_INTERVAL_MS);
}

void MicrophoneLevel::showEvent(QShowEvent *event)
{
    look();
    m_timer.start();
    QWidget::showEvent(event);
}

void MicrophoneLevel::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    m_preview.rest();
    QWidget::hideEvent(event);
}

void MicrophoneLevel::look()
{
    m_preview.listen();
    const QString name = m_preview.heard();
    m_name->setText(
        name.isEmpty()
            ? Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "No microphone is heard"))
            : Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Heard now: %1")).arg(name));
    const SoundMeter::Level before = std::exchange(m_level, m_preview.level());
    // Screen readers are told each time, so only when it is another one.
    if (m_name->text() != accessibleDescription())
        setAccessibleDescription(m_name->text());
    if (m_level.shownPeak != before.shownPeak || m_level.shownRms != before.shownRms)
        update();
}

void MicrophoneLevel::paintEvent(QPaintEvent *)
{
    const QRect bar(0, height() - BAR_HEIGHT, width(), BAR_HEIGHT);
    const auto xOf = [&bar](double decibels) {
        return int((decibels - QUIETEST) / -QUIETEST * bar.width());
    };
    QPainter painter(this);
    painter.fillRect(bar, QColor::fromRgb(GROUND));
    if (m_level.shownRms > QUIETEST)
        painter.fillRect(QRect(bar.topLeft(), QSize(xOf(m_level.shownRms), BAR_HEIGHT)),
                         QColor::fromRgb(LOUDNESS));
    if (m_level.shownPeak > QUIETEST)
        painter.fillRect(
            QRect(qBound(0, xOf(m_level.shownPeak) - 2, bar.width() - 2), bar.y(), 2, BAR_HEIGHT),
            QColor::fromRgb(m_level.shownPeak > TOO_LOUD ? PEAK_TOO_LOUD : PEAK));
}
