#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

class QIODevice;

/// A JPEG picture as it lies in the file: not turned, in RGB888, in the colours of its profile.
struct JpegPicture {
    /// Null when nothing of it can be decoded. What is missing at the end of a file is grey; below
    /// the place of an error it is white.
    QImage image;
    /// The ICC profile in the file; empty when there is none, or one of a printer.
    QByteArray profile;
};

/// The functions read from where the device stands. They give a null picture when it cannot be
/// read, or when it needs more than `mostBytes` with the answer. Any thread.

/// The whole picture; one with more than `mostPixels` is decoded at the largest of the library's
/// sizes (7/8, 6/8, ...) that has no more, 1/8 at the least, and for which the memory suffices.
[[nodiscard]] JpegPicture readJpeg(QIODevice &device, qint64 mostPixels, qint64 mostBytes);

/// The picture at the smallest of the library's cheap sizes (whole, a half, a quarter, an eighth)
/// that holds `enough`.
[[nodiscard]] JpegPicture readReducedJpeg(QIODevice &device, QSize enough, qint64 mostBytes);

/// The memory in bytes that decoding takes whatever size is asked for: 0 for a picture that is
/// stored from top to bottom, all of its coefficients for one that is stored in several scans. 0
/// without a readable header.
[[nodiscard]] qint64 jpegCoefficientBytes(QIODevice &device);
