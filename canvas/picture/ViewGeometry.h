#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>

/// How the picture is seen: frame size, quarter turns, scale and offset, with every formula of
/// zooming, panning, turning and mapping. A value without a lock; any thread may use its own copy.
///
/// Three spaces meet here. Rotated-picture coordinates are pixels of the frame after its quarter
/// turns; output pixels are those times the scale; processed-picture coordinates are pixels of
/// the picture that is shown, which always has the frame's size. An empty frame has the scale 1
/// and the offset (0, 0), and maps everything to (0, 0).
class ViewGeometry
{
public:
    static constexpr double LARGEST_SCALE = 6.0;

    /// How a picture of a given size lies in a widget: the factor and the margins left and above.
    struct Fit {
        double factor = 0.0;
        QPoint margin;
        QSize size;
    };

    ViewGeometry() = default;
    /// A view of that shape with the offset (0, 0), for the formulas that need no more.
    ViewGeometry(QSize frameSize, int rotation, double scale)
        : m_frame(frameSize)
        , m_rotation(rotation)
        , m_scale(scale)
    {
    }

    [[nodiscard]] QSize frameSize() const { return m_frame; }
    /// Quarter turns clockwise, 0 to 3.
    [[nodiscard]] int rotation() const { return m_rotation; }
    [[nodiscard]] double scale() const { return m_scale; }
    /// The view's top left corner in output pixels.
    [[nodiscard]] QPoint offset() const { return m_offset; }
    [[nodiscard]] bool isEmpty() const { return m_frame.isEmpty(); }

    /// The frame's size after its quarter turns.
    [[nodiscard]] QSize rotatedSize() const;
    /// The rotated size in output pixels, truncated.
    [[nodiscard]] QSize transformedSize() const;
    /// The scale at which the whole rotated picture fits the frame.
    [[nodiscard]] double minimumScale() const;
    /// The view's centre in rotated-picture coordinates.
    [[nodiscard]] QPointF centerPoint() const;
    /// The part of the rotated picture that is seen; at least one pixel unless the frame is empty.
    [[nodiscard]] QRect visibleRectangle() const;

    /// Takes a frame of another size: the rotation stays, the view is placed again.
    void setFrameSize(QSize size);
    /// Keeps the centre and truncates the scale, as after a change of size.
    void refit();
    void zoom(QPointF centre, int factor);
    /// False, and nothing changed, when the largest scale is reached.
    bool zoomIn();
    void zoomOut();
    void zoomReset();
    /// As many steps of zoomIn(), or of zoomOut() below 0, about a point of the processed picture.
    void zoomStepsAbout(QPointF processedPoint, int steps);
    /// Brings a point of the rotated picture under one of the processed picture, at that scale or
    /// the nearest between the fitting and the largest one, as far as the picture reaches.
    void place(QPointF rotatedPoint, QPointF processedPoint, double scale);
    /// The point of the rotated picture that is seen at one of the processed picture.
    [[nodiscard]] QPointF rotatedPoint(QPointF processedPoint) const;
    /// Moves the view's top left corner, in output pixels, as far as the picture reaches.
    void setViewport(int x, int y);
    void turn(bool clockwise);

    /// How a picture of that size is centred in a widget of that size, its aspect kept.
    [[nodiscard]] static Fit fit(QSize picture, QSize widget);
    /// Widget coordinates to processed-picture coordinates, truncated toward zero.
    [[nodiscard]] static QPoint picturePoint(QPoint widgetPoint, QSize picture, QSize widget);
    /// The same between the pixels, not truncated.
    [[nodiscard]] static QPointF exactPicturePoint(QPointF widgetPoint, QSize picture,
                                                   QSize widget);
    /// A rectangle of the processed picture in widget coordinates.
    [[nodiscard]] static QRectF widgetRectangle(const QRect &picturePart, QSize picture,
                                                QSize widget);

    friend bool operator==(const ViewGeometry &a, const ViewGeometry &b)
    {
        return a.m_frame == b.m_frame && a.m_rotation == b.m_rotation && a.m_scale == b.m_scale &&
               a.m_offset == b.m_offset;
    }
    friend bool operator!=(const ViewGeometry &a, const ViewGeometry &b) { return !(a == b); }

private:
    void centreOn(QPointF centre);
    /// The scale after one step in or out.
    [[nodiscard]] double stepped(bool in) const;
    /// The black bars left and above, in output pixels.
    [[nodiscard]] QPointF bars() const;

    QSize m_frame{-1, -1};
    int m_rotation = 0;
    double m_scale = 1.0;
    QPoint m_offset;
};
