#include "widgets/ImageButton.h"

#include "resources/FittedFont.h"
#include "resources/SkinImages.h"
#include "widgets/ToolTips.h"
#include "widgets/WidgetAccessibles.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr int HOLD_MS = 500;
/// Left and right of a caption that had to be narrowed, in pixels.
constexpr int CAPTION_MARGIN = 3;
// Light for the dark faces and dark for the light ones: one of the two always stands out.
constexpr QRgb RING_COLOUR = 0xffffffff;
constexpr QRgb INNER_RING_COLOUR = 0xff15181b;
// Amber: red is for recording alone.
constexpr QRgb MARK_COLOUR = 0xffffc83d;

bool isKeyReason(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

// Whether the focus changes without the user having chosen another widget of this window.
bool isPassing(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

bool asksForOptions(const QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Menu:
        return event->modifiers() == Qt::NoModifier;
    case Qt::Key_F10:
        return event->modifiers() == Qt::ShiftModifier;
    case Qt::Key_Down:
        return (event->modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier;
    default:
        return false;
    }
}

QImage loadState(const QString &state, const QString &name)
{
    return SkinImages::load(QString(":/icons/%1/%2.png").arg(state, name));
}

} // namespace

ImageButton::ImageButton(const QString &name, QWidget *parent, int x, int y)
    : TabFocusButton(parent)
{
    setFlat(true);
    m_holdTimer.setSingleShot(true);
    m_holdTimer.setInterval(HOLD_MS);
    // A coarse timer may fire a twentieth of its time too early.
    m_holdTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_holdTimer, &QTimer::timeout, this, &ImageButton::hold);
    WidgetAccessibles::install();
    setImage(name);
    move(x, y);
}

ImageButton::ImageButton(const QString &name, const QString &toolTip, QWidget *parent, int x, int y)
    : ImageButton(name, nullptr, x, y)
{
    Q_UNUSED(parent)
    setToolTip(toolTip);
    setAccessibleName(toolTip);
}

void ImageButton::setImage(const QString &name)
{
    m_skin = name;
    m_normalImage = loadState("Normal", name);
    m_clickImage = QImage();
    m_overImage = QImage();
    setFixedSize(SkinImages::layoutSize(m_normalImage));
    update();
}

void ImageButton::setKey(const QKeySequence &key)
{
    m_key = key;
}

QString ImageButton::tip() const
{
    QString name = toolTip();
    for (const QString &other : {accessibleName(), text()}) {
        if (name.isEmpty())
            name = other;
    }
    if (m_key.isEmpty())
        return name == text() ? QString() : name;
    return QStringLiteral("%1 (%2)").arg(name, m_key.toString(QKeySequence::NativeText));
}

void ImageButton::setTextColor(const QColor &color)
{
    m_textColor = color;
}

void ImageButton::setCaptionLead(int pixels)
{
    m_captionLead = pixels;
    update();
}

void ImageButton::setGray(bool gray)
{
    m_gray = gray;
    update();
}

void ImageButton::setHasOptions(bool has)
{
    m_hasOptions = has;
}

void ImageButton::askForOptions()
{
    if (!m_gray)
        emit optionsWanted();
}

void ImageButton::setMarked(bool marked)
{
    m_marked = marked;
    update();
}

QImage ImageButton::convertToGrayScale(const QImage &image)
{
    QImage result = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                  : QImage::Format_RGB32);
    if (result.isNull() || result.constBits() != image.constBits())
        return result;
    for (int y = 0; y < image.height(); ++y) {
        // Both images share this buffer and turn gray together, so it must not be detached here.
        auto *pixel = reinterpret_cast<QRgb *>(const_cast<uchar *>(image.constScanLine(y)));
        for (int x = 0; x < image.width(); ++x, ++pixel) {
            const QRgb gray =
                (11u * static_cast<QRgb>(qRed(*pixel)) + 16u * static_cast<QRgb>(qGreen(*pixel)) +
                 5u * static_cast<QRgb>(qBlue(*pixel))) >>
                5;
            *pixel = (*pixel & 0xff000000u) | gray << 16 | gray << 8 | gray;
        }
    }
    return result;
}

bool ImageButton::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return TabFocusButton::event(event);
    const QString text = tip();
    if (text.isEmpty())
        event->ignore();
    else
        ToolTips::show(this, text, static_cast<QHelpEvent *>(event)->globalPos());
    return true;
}

void ImageButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    if (m_gray) {
        if (m_grayImage.isNull()) {
            m_grayImage = m_normalImage;
            m_grayImage.invertPixels(QImage::InvertRgb);
        }
        painter.drawImage(QPoint(0, 0), m_grayImage);
        paintFocusRing(painter);
        return;
    }
    painter.drawImage(QPoint(0, 0), stateImage());
    if (!text().isEmpty())
        paintCaption(painter);
    if (m_marked)
        paintMark(painter);
    paintFocusRing(painter);
}

void ImageButton::mousePressEvent(QMouseEvent *event)
{
    if (m_gray)
        return;
    if ((event->buttons() & Qt::LeftButton) && !m_holdTimer.isActive())
        m_holdTimer.start();
    TabFocusButton::mousePressEvent(event);
}

void ImageButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_gray)
        return;
    if (!(event->buttons() & Qt::LeftButton))
        m_holdTimer.stop();
    TabFocusButton::mouseReleaseEvent(event);
}

void ImageButton::enterEvent(QEvent *event)
{
    m_hovered = true;
    setCursor(Qt::ArrowCursor);
    update();
    TabFocusButton::enterEvent(event);
}

void ImageButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    TabFocusButton::leaveEvent(event);
}

void ImageButton::keyPressEvent(QKeyEvent *event)
{
    if (m_gray) {
        event->ignore();
        return;
    }
    if (m_hasOptions && asksForOptions(event)) {
        askForOptions();
        return;
    }
    TabFocusButton::keyPressEvent(event);
}

void ImageButton::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_hasOptions || event->reason() != QContextMenuEvent::Mouse)
        event->ignore();
    else
        askForOptions();
}

void ImageButton::focusInEvent(QFocusEvent *event)
{
    if (!isPassing(event->reason()))
        m_focusedByKey = isKeyReason(event->reason());
    TabFocusButton::focusInEvent(event);
    update();
}

void ImageButton::focusOutEvent(QFocusEvent *event)
{
    if (!isPassing(event->reason()))
        m_focusedByKey = false;
    TabFocusButton::focusOutEvent(event);
    update();
}

const QImage &ImageButton::stateImage()
{
    const bool pressed = isDown() || isChecked();
    if (!pressed && !m_hovered)
        return m_normalImage;
    QImage &image = pressed ? m_clickImage : m_overImage;
    if (image.isNull())
        image = loadState(pressed ? "Click" : "Over", m_skin);
    if (image.isNull())
        image = m_normalImage;
    return image;
}

void ImageButton::paintCaption(QPainter &painter)
{
    painter.setFont(font());
    const int lead = std::max(m_captionLead, CAPTION_MARGIN);
    const int room = width() - lead - CAPTION_MARGIN;
    // One that only fills the margins is left as large as the others.
    if (painter.fontMetrics().horizontalAdvance(text()) > (m_captionLead > 0 ? room : width()))
        painter.setFont(FittedFont::within(font(), text(), room));
    painter.setPen(m_textColor);
    const QFontMetrics metrics = painter.fontMetrics();
    const int x = std::max((width() - metrics.horizontalAdvance(text())) / 2, m_captionLead);
    const int y = (height() + metrics.height()) / 2 - 3;
    painter.drawText(x, y, text());
}

void ImageButton::paintMark(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(INNER_RING_COLOUR));
    painter.setBrush(QColor(MARK_COLOUR));
    painter.drawEllipse(QRectF(width() - 9.5, 1.5, 7, 7));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
}

void ImageButton::paintFocusRing(QPainter &painter)
{
    if (!m_focusedByKey || !hasFocus())
        return;
    painter.setPen(QColor(RING_COLOUR));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(QColor(INNER_RING_COLOUR));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}
