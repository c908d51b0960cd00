#include "mainwindow/CanvasMessage.h"

#include "mainwindow/CanvasFont.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr int TEXT_FLAGS = Qt::AlignCenter | Qt::TextWordWrap;
const QColor GROUND(16, 16, 16, 215);

} // namespace

CanvasMessage::CanvasMessage(QWidget *canvas)
    : QWidget(canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { pass({}); });
    canvas->installEventFilter(this);
}

void CanvasMessage::pass(const QString &text, std::chrono::milliseconds time)
{
    m_passing = text;
    if (text.isEmpty())
        m_timer.stop();
    else
        m_timer.start(time);
    update();
}

void CanvasMessage::stand(const QString &text)
{
    m_standing = text;
    update();
}

QString CanvasMessage::text() const
{
    return m_passing.isEmpty() ? m_standing : m_passing;
}

bool CanvasMessage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        place();
    return false;
}

void CanvasMessage::paintEvent(QPaintEvent *)
{
    const int margin = font().pixelSize();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(GROUND);
    painter.drawRoundedRect(rect(), margin / 2.0, margin / 2.0);
    painter.setPen(Qt::white);
    painter.drawText(rect().adjusted(margin, margin / 2, -margin, -margin / 2), TEXT_FLAGS, text());
}

void CanvasMessage::update()
{
    const bool news = !text().isEmpty() && text() != accessibleName();
    setAccessibleName(text());
    setVisible(!text().isEmpty());
    place();
    QWidget::update();
    if (news)
        emit said(text());
}

void CanvasMessage::place()
{
    if (text().isEmpty())
        return;
    const QSize canvas = parentWidget()->size();
    const QFont large = canvasFont(canvas.height());
    setFont(large);
    const int margin = large.pixelSize();
    const QRect room(0, 0, std::max(canvas.width() * 4 / 5 - 2 * margin, 1), canvas.height());
    const QSize size = QFontMetrics(large).boundingRect(room, TEXT_FLAGS, text()).size() +
                       QSize(2 * margin, margin);
    setGeometry(
        {QPoint((canvas.width() - size.width()) / 2, (canvas.height() - size.height()) / 2), size});
    raise();
}
