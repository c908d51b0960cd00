#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <chrono>

class ImageCanvas;
class QPainter;

/// Tells the user what to do while a canvas has nothing to show yet: one line under a pictogram,
/// over the start picture or the black that a source leaves. It lets the mouse through, appears in
/// no snapshot, movie or print, and disappears with the first frame or the first stroke.
///
/// A child of the canvas. GUI thread.
class EmptyScreen : public QWidget
{
    Q_OBJECT

public:
    /// The pictogram, the path of an image that is loaded when first painted, covers the start
    /// picture's own drawing; with an empty path, that drawing serves as the pictogram. The line
    /// appears after `delay`, so that the user is not told to do what has been done.
    EmptyScreen(ImageCanvas *canvas, const QString &pictogram, const QString &line,
                std::chrono::milliseconds delay = std::chrono::milliseconds(0));

    /// To be called when the source has taken its picture away.
    void showAgain();

    /// Shows neither pictogram nor line while that widget is visible, as it lies over them. It is a
    /// child of the canvas too.
    void yieldTo(QWidget *message);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintGround(QPainter &painter, const QRect &place) const;
    /// Pictogram and line, which are drawn anew only when the place or the screen has changed.
    void paintSign(QPainter &painter, const QRect &place);
    /// `ratio`: pixels of the screen in one of the widget.
    void drawSign(const QRect &place, double ratio);
    [[nodiscard]] QRectF pictogramPlace(const QRect &place) const;
    /// Where the canvas shows the start picture, in the canvas's coordinates.
    [[nodiscard]] QRect picturePlace() const;
    void appear();

    ImageCanvas *m_canvas;
    QString m_pictogramPath;
    /// Null when there is none.
    QWidget *m_message = nullptr;
    QString m_line;
    /// Pictogram and line in pixels of the screen, where they stand, and what they were drawn for.
    QImage m_sign;
    QPoint m_signCorner;
    QRect m_signFor;
    double m_signRatio = 0.0;
};
