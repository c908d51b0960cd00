#include "widgets/StyleWindow.h"

#include "resources/SkinImages.h"

#include <QCoreApplication>
#include <QDebug>
#include <QPainter>
#include <QResizeEvent>

namespace
{

QImage framePiece(const QString &name)
{
    return SkinImages::load(":/icons/Background_Sub/VIDEO_FRAME_" + name + ".png");
}

int widthOf(const QImage &image)
{
    return SkinImages::layoutSize(image).width();
}

int heightOf(const QImage &image)
{
    return SkinImages::layoutSize(image).height();
}

} // namespace

StyleWindow::StyleWindow()
    : FramelessWindow(QImage(), false, nullptr)
    , m_topRight(framePiece("TOP_RIGHT_MAC"))
    , m_bottomLeft(framePiece("BOT_LEFT"))
    , m_bottomRight(framePiece("BOT_RIGHT"))
    , m_topEdgeSource(framePiece("TOP_MID"))
    , m_bottomEdgeSource(framePiece("BOT_MID"))
    , m_leftEdgeSource(framePiece("MID_LEFT"))
    , m_rightEdgeSource(framePiece("MID_RIGHT"))
{
    const QImage centre = framePiece("MID_MID");
    m_centreColour = centre.isNull() ? qRgb(0, 0, 0) : centre.pixel(0, 0);
}

void StyleWindow::setExpanded(bool expanded)
{
    m_topLeft = framePiece(expanded ? "TOP_LEFT_EXPANDED" : "TOP_LEFT");
}

void StyleWindow::minimize()
{
    setWindowState(windowState() ^ Qt::WindowMinimized);
}

void StyleWindow::maximize()
{
    qDebug() << "maximize()";
    if (!m_geometrySaved) {
        m_normalSize = size();
        m_awaitingMaximizedSize = true;
        setWindowState(windowState() ^ Qt::WindowMaximized);
        m_maximizedSize = size();
        m_geometrySaved = true;
        return;
    }
    setWindowState(windowState() ^ Qt::WindowMaximized);
    if (isMaximized()) {
        resize(m_maximizedSize);
        move(0, 0);
        showMaximized();
    } else {
        resize(m_normalSize);
    }
}

void StyleWindow::setBuilt(bool built)
{
    m_built = built;
}

void StyleWindow::rescaleEdges()
{
    const int top = width() - widthOf(m_topLeft) - widthOf(m_topRight);
    const int bottom = width() - widthOf(m_bottomLeft) - widthOf(m_bottomRight);
    const int left = height() - heightOf(m_topLeft) - heightOf(m_bottomLeft);
    const int right = height() - heightOf(m_topRight) - heightOf(m_bottomRight);
    m_topEdge = SkinImages::stretched(m_topEdgeSource, {top, heightOf(m_topEdgeSource)});
    m_bottomEdge =
        SkinImages::stretched(m_bottomEdgeSource, {bottom, heightOf(m_bottomEdgeSource)});
    m_leftEdge = SkinImages::stretched(m_leftEdgeSource, {widthOf(m_leftEdgeSource), left});
    m_rightEdge = SkinImages::stretched(m_rightEdgeSource, {widthOf(m_rightEdgeSource), right});
    update();
}

void StyleWindow::resizeEvent(QResizeEvent *event)
{
    if (m_awaitingMaximizedSize && isMaximized()) {
        m_maximizedSize = event->size();
        m_awaitingMaximizedSize = false;
    }
    rescaleEdges();
    if (m_built)
        reposition();
}

void StyleWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    painter.drawImage(QPoint(0, 0), m_topLeft);
    painter.drawImage(QPoint(widthOf(m_topLeft), 0), m_topEdge);
    painter.drawImage(QPoint(widthOf(m_topLeft) + widthOf(m_topEdge), 0), m_topRight);

    painter.drawImage(QPoint(0, heightOf(m_topLeft)), m_leftEdge);
    painter.drawImage(QPoint(width() - widthOf(m_rightEdge), heightOf(m_topRight)), m_rightEdge);

    const int bottomY = heightOf(m_topLeft) + heightOf(m_leftEdge);
    painter.drawImage(QPoint(0, bottomY), m_bottomLeft);
    painter.drawImage(QPoint(widthOf(m_bottomLeft), bottomY), m_bottomEdge);
    painter.drawImage(QPoint(widthOf(m_bottomLeft) + widthOf(m_bottomEdge),
                             heightOf(m_topRight) + heightOf(m_rightEdge)),
                      m_bottomRight);

    const QRect centre(widthOf(m_leftEdge), heightOf(m_topEdge),
                       width() - widthOf(m_leftEdge) - widthOf(m_rightEdge),
                       height() - heightOf(m_topEdge) - heightOf(m_bottomEdge));
    if (!centre.isEmpty())
        painter.fillRect(centre, QColor(m_centreColour));
}

void StyleWindow::showEvent(QShowEvent *event)
{
    QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest), Qt::LowEventPriority);
    FramelessWindow::showEvent(event);
}
