#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <chrono>

class ImageCanvas;

/// What to do while a canvas has nothing to show yet: one line under a pictogram, over the start
/// picture. It lets the mouse through, no snapshot, movie or print has it, and it goes with the
/// first frame or the first stroke.
///
/// A child of the canvas. GUI thread.
class EmptyScreen : public QWidget
{
    Q_OBJECT

public:
    /// With a pictogram the start picture's drawing is covered; a null one leaves that drawing to
    /// be the pictogram. The line shows after `delay`, so that nobody is told to do what is done.
    EmptyScreen(ImageCanvas *canvas, const QImage &pictogram, const QString &line,
                std::chrono::milliseconds delay = std::chrono::milliseconds(0));

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Where the canvas shows the start picture, in the canvas's coordinates.
    [[nodiscard]] QRect picturePlace() const;
    void appear();

    ImageCanvas *m_canvas;
    QImage m_pictogram;
    QString m_line;
};
