#pragma once

#include "widgets/FramelessWindow.h"

#include <QColor>
#include <QImage>
#include <QSize>

/// A window framed by nine pieces of the skin: four corners, four stretched edges and a plain
/// centre. The derived window lays out its children in reposition().
///
/// The platform's own frame stays around it, so that the window can be closed and resized.
class StyleWindow : public FramelessWindow
{
    Q_OBJECT

public:
    StyleWindow();

    /// Chooses the top left corner for the open or the closed side panel. Neither rescales nor
    /// repaints; rescaleEdges() does both.
    void setExpanded(bool expanded);

    /// Places the children for the current size.
    virtual void reposition() = 0;

public slots:
    void minimize();
    void maximize();

protected:
    /// Before this, reposition() is not called: a base constructor resizes the window while the
    /// derived class and its children do not exist yet.
    void setBuilt(bool built = true);
    /// Fits the edges to the current size and corners, and repaints.
    void rescaleEdges();

    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QImage m_topLeft;
    QImage m_topRight;
    QImage m_bottomLeft;
    QImage m_bottomRight;
    // The edges as scaled for the current size; null where the corners leave no space between them.
    QImage m_topEdge;
    QImage m_bottomEdge;
    QImage m_leftEdge;
    QImage m_rightEdge;
    QImage m_topEdgeSource;
    QImage m_bottomEdgeSource;
    QImage m_leftEdgeSource;
    QImage m_rightEdgeSource;
    QRgb m_centreColour;
    QSize m_maximizedSize;
    QSize m_normalSize;
    bool m_geometrySaved = false;
    /// The window system reports the maximised size later, in a resize event.
    bool m_awaitingMaximizedSize = false;
    bool m_built = false;
};
