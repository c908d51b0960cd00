#pragma once

#include <cstdint>

/// The bytes that begin a segment of a JPEG file, from ITU-T T.81, table B.1. Each stands behind
/// MARKER.
namespace JpegMarkers
{

constexpr std::uint8_t MARKER = 0xFF;
constexpr std::uint8_t START_OF_FRAME = 0xC0;
constexpr std::uint8_t HUFFMAN_TABLES = 0xC4;
constexpr std::uint8_t FIRST_RESTART = 0xD0;
constexpr std::uint8_t START_OF_IMAGE = 0xD8;
constexpr std::uint8_t END_OF_IMAGE = 0xD9;
constexpr std::uint8_t START_OF_SCAN = 0xDA;

} // namespace JpegMarkers
