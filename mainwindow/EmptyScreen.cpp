#include "mainwindow/EmptyScreen.h"

#include "mainwindow/CanvasFont.h"

#include "canvas/ImageCanvas.h"
#include "canvas/picture/ViewGeometry.h"

#include <QEvent>
#include <QFontMetrics>
#include <QImageReader>
#include <QPainter>
#include <QTimer>

#include <algorithm>

namespace
{

// As parts of the start picture's height: where its drawing ends, the middle of the pictogram, its
// height, and the middle of the line under it and under the start picture's own drawing.
constexpr double DRAWING_END = 0.85;
constexpr double PICTOGRAM_MIDDLE = 0.38;
constexpr double PICTOGRAM_HEIGHT = 0.24;
constexpr double LINE_MIDDLE = 0.64;
constexpr double LINE_UNDER_DRAWING = 0.90;
constexpr int LINE_FLAGS = Qt::AlignCenter | Qt::TextWordWrap;

} // namespace

EmptyScreen::EmptyScreen(ImageCanvas *canvas, const QString &pictogram, const QString &line,
                         std::chrono::milliseconds delay)
    : QWidget(canvas)
    , m_canvas(canvas)
    , m_pictogramPath(pictogram)
    , m_line(line)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(line);
    hide();
    // It lies below an open text editor and below messages.
    lower();
    canvas->installEventFilter(this);
    if (delay.count() > 0)
        QTimer::singleShot(delay, this, &EmptyScreen::appear);
    else
        appear();
}

void EmptyScreen::showAgain()
{
    m_canvas->forgetFrames();
    appear();
}

void EmptyScreen::yieldTo(QWidget *message)
{
    m_message = message;
    message->installEventFilter(this);
}

bool EmptyScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_canvas && event->type() == QEvent::Resize)
        setGeometry(m_canvas->rect());
    else if (watched == m_message &&
             (event->type() == QEvent::Show || event->type() == QEvent::Hide))
        update();
    return false;
}

void EmptyScreen::paintEvent(QPaintEvent *)
{
    // It is painted whenever the canvas under it is.
    if (!m_canvas->isUntouched()) {
        // Not from within its own painting.
        QMetaObject::invokeMethod(
            this, [this] { setVisible(m_canvas->isUntouched()); }, Qt::QueuedConnection);
        return;
    }
    const QRect place = picturePlace();
    QPainter painter(this);
    if (!m_pictogramPath.isEmpty())
        paintGround(painter, place);
    if (!m_message || !m_message->isVisible())
        paintSign(painter, place);
}

void EmptyScreen::paintGround(QPainter &painter, const QRect &place) const
{
    const int height = qRound(place.height() * DRAWING_END);
    painter.fillRect(QRect(place.topLeft(), QSize(place.width(), height)) &
                         rect().adjusted(2, 2, -2, -2),
                     Qt::black);
}

void EmptyScreen::paintSign(QPainter &painter, const QRect &place)
{
    const double ratio = painter.device()->devicePixelRatioF();
    if (m_signFor != place || m_signRatio != ratio) {
        drawSign(place, ratio);
        m_signFor = place;
        m_signRatio = ratio;
    }
    // In pixels of the screen, so that the painter copies and does not scale.
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.drawImage(m_signCorner, m_sign);
}

void EmptyScreen::drawSign(const QRect &place, double ratio)
{
    const QFont font = canvasFont(height());
    const bool hasPictogram = !m_pictogramPath.isEmpty();
    const auto heightOf = [&place](double part) { return qRound(place.height() * part); };
    const int room = 3 * font.pixelSize();
    const QRect lineRoom(
        0, place.top() + heightOf(hasPictogram ? LINE_MIDDLE : LINE_UNDER_DRAWING) - room / 2,
        width(), room);
    const QRect line = QFontMetrics(font).boundingRect(lineRoom, LINE_FLAGS, m_line);
    const QRectF pictogram = hasPictogram ? pictogramPlace(place) : QRectF();
    // At a small ratio letters are wider than their measure.
    const QRectF whole =
        pictogram | QRectF(line).adjusted(-font.pixelSize(), -2, font.pixelSize(), 2);
    const QRect pixels = QRectF(whole.topLeft() * ratio, whole.size() * ratio).toAlignedRect();
    m_signCorner = pixels.topLeft();
    m_sign = QImage(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    m_sign.fill(Qt::transparent);
    QPainter painter(&m_sign);
    painter.translate(-pixels.topLeft());
    painter.scale(ratio, ratio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (hasPictogram)
        painter.drawImage(pictogram, QImage(m_pictogramPath));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(lineRoom, LINE_FLAGS, m_line);
}

QRectF EmptyScreen::pictogramPlace(const QRect &place) const
{
    const auto heightOf = [&place](double part) { return qRound(place.height() * part); };
    QRectF target(QPointF(0, 0),
                  QSizeF(QImageReader(m_pictogramPath).size())
                      .scaled(place.width(), heightOf(PICTOGRAM_HEIGHT), Qt::KeepAspectRatio));
    target.moveCenter(
        QPointF(place.left() + place.width() / 2.0, place.top() + heightOf(PICTOGRAM_MIDDLE)));
    return target;
}

QRect EmptyScreen::picturePlace() const
{
    const ViewGeometry::Fit fit = ViewGeometry::fit(m_canvas->pictureSize(), m_canvas->size());
    return {fit.margin, fit.size};
}

void EmptyScreen::appear()
{
    if (!m_canvas->isUntouched())
        return;
    setGeometry(m_canvas->rect());
    show();
}
