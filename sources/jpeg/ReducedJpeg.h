#pragma once

#include <QImage>
#include <QSize>

class QIODevice;

/// The JPEG picture that the device stands at, as it lies in the file, decoded at the smallest of
/// the library's cheap sizes (whole, a half, a quarter, an eighth) that holds `enough`: opaque, 32
/// bits a pixel. Null when it cannot be read, is in a printer's colours, or needs more than
/// `mostBytes` besides the answer.
[[nodiscard]] QImage readReducedJpeg(QIODevice &device, QSize enough, qint64 mostBytes);

/// What decoding holds whatever size is asked for: 0 for a picture that comes from top to bottom,
/// all of its coefficients for one that comes in several scans. 0 without a readable header.
[[nodiscard]] qint64 jpegCoefficientBytes(QIODevice &device);
