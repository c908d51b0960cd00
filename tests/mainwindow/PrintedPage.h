#pragma once

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

/// What lies on a printed page, read from the page's PDF file.
namespace PrintedPage
{

/// Resolution of the pictures that are made of a page.
constexpr int DOTS_PER_INCH = 72;

enum Quarter { TopLeft, TopRight, BottomLeft, BottomRight };
constexpr QRgb COLORS[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00};

/// A picture whose quarters tell how it lies.
inline QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2;
    const int h = size.height() / 2;
    painter.fillRect(0, 0, w, h, QColor(COLORS[TopLeft]));
    painter.fillRect(w, 0, w, h, QColor(COLORS[TopRight]));
    painter.fillRect(0, h, w, h, QColor(COLORS[BottomLeft]));
    painter.fillRect(w, h, w, h, QColor(COLORS[BottomRight]));
    return image;
}

/// The smallest rectangle that holds everything printed.
inline QRect inked(const QImage &page)
{
    QRect box;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QRgb pixel = page.pixel(x, y);
            if (qRed(pixel) < 200 || qGreen(pixel) < 200 || qBlue(pixel) < 200)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

/// Which quarter of the picture lies there.
inline int quarterAt(const QImage &page, QPoint point)
{
    const QRgb pixel = page.pixel(point);
    for (int i = 0; i < 4; ++i) {
        if (qAbs(qRed(pixel) - qRed(COLORS[i])) < 60 &&
            qAbs(qGreen(pixel) - qGreen(COLORS[i])) < 60 &&
            qAbs(qBlue(pixel) - qBlue(COLORS[i])) < 60)
            return i;
    }
    return -1;
}

/// A picture of the file's only page; null when there is none or more than one.
inline QImage of(const QString &pdf)
{
    const QTemporaryDir folder;
    QProcess::execute("pdftoppm",
                      {"-png", "-r", QString::number(DOTS_PER_INCH), pdf, folder.filePath("page")});
    const QStringList pages = QDir(folder.path()).entryList({"page*.png"});
    return pages.size() == 1 ? QImage(folder.filePath(pages.first())) : QImage();
}

} // namespace PrintedPage
