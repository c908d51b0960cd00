#pragma once

#include <QtGlobal>

#include <array>
#include <optional>

class QImage;

/// The machine-readable frame number on the sheet: a row of black and white cells, a guard at each
/// end, and between them 16 bits of the number and 8 of a checksum, most significant first.
namespace SheetCounter
{

constexpr int CELL_COUNT = 36;
/// The numbers start again at 0 here.
constexpr quint32 MODULUS = 0x10000;

/// True is black.
[[nodiscard]] std::array<bool, CELL_COUNT> cells(quint32 frameNumber);

/// The frame number (modulo MODULUS) that the picture shows; nothing if none can be read. The row
/// may stand anywhere, turned by quarter turns or inverted, with cells of three pixels or more.
[[nodiscard]] std::optional<quint32> read(const QImage &picture);

} // namespace SheetCounter
