#pragma once

#include <cstdint>

/// The requests of the video class.
enum UvcRequest : std::uint8_t {
    SET_CUR = 0x01,
    GET_CUR = 0x81,
    GET_MIN = 0x82,
    GET_MAX = 0x83,
    GET_RES = 0x84,
    GET_LEN = 0x85,
    GET_INFO = 0x86,
    GET_DEF = 0x87,
};
/// The answer to GET_INFO of a control that can be read and written.
constexpr std::uint8_t GET_AND_SET = 3;
