#include "mainwindow/EmptyScreen.h"

#include "mainwindow/CanvasFont.h"

#include "canvas/ImageCanvas.h"
#include "canvas/picture/ViewGeometry.h"

#include <QEvent>
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
    double lineMiddle = LINE_UNDER_DRAWING;
    if (!m_pictogramPath.isEmpty()) {
        paintGround(painter, place);
        lineMiddle = LINE_MIDDLE;
    }
    if (m_message && m_message->isVisible())
        return;
    if (!m_pictogramPath.isEmpty())
        paintPictogram(painter, place);
    const QFont font = canvasFont(height());
    painter.setFont(font);
    painter.setPen(Qt::white);
    const int room = 3 * font.pixelSize();
    painter.drawText(
        QRect(0, place.top() + qRound(place.height() * lineMiddle) - room / 2, width(), room),
        Qt::AlignCenter | Qt::TextWordWrap, m_line);
}

void EmptyScreen::paintGround(QPainter &painter, const QRect &place) const
{
    const int height = qRound(place.height() * DRAWING_END);
    painter.fillRect(QRect(place.topLeft(), QSize(place.width(), height)) &
                         rect().adjusted(2, 2, -2, -2),
                     Qt::black);
}

void EmptyScreen::paintPictogram(QPainter &painter, const QRect &place)
{
    if (m_pictogram.isNull())
        m_pictogram = QImage(m_pictogramPath);
    const auto heightOf = [&place](double part) { return qRound(place.height() * part); };
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QRectF target(QPointF(0, 0),
                  QSizeF(m_pictogram.size())
                      .scaled(place.width(), heightOf(PICTOGRAM_HEIGHT), Qt::KeepAspectRatio));
    target.moveCenter(
        QPointF(place.left() + place.width() / 2.0, place.top() + heightOf(PICTOGRAM_MIDDLE)));
    painter.drawImage(target, m_pictogram);
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
