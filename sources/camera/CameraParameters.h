#pragma once

/// The numbered parameters of the camera's extension unit. The 0x01xxxxxx ones are keys of the
/// camera's own keypad (1 pressed, 0 released), the 0x70xxxxxx ones are values. Ids and values
/// travel as unsigned 64-bit numbers, least significant byte first.
namespace CameraParameter
{

constexpr unsigned long ZOOM_IN_KEY = 0x010000A1;
constexpr unsigned long ZOOM_OUT_KEY = 0x010000A2;
constexpr unsigned long AUTOFOCUS_KEY = 0x010000A5;
constexpr unsigned long BRIGHTNESS_UP_KEY = 0x0100003F;
constexpr unsigned long BRIGHTNESS_DOWN_KEY = 0x01000040;

/// Written 0 to drive the lens back to its widest position.
constexpr unsigned long OPTICAL_ZOOM_POSITION = 0x7000001A;
/// In thousandths; 1000 is no digital zoom.
constexpr unsigned long DIGITAL_ZOOM = 0x7000001C;
constexpr unsigned long BRIGHTNESS = 0x7000001D;
/// In thousandths; a second factor that multiplies the digital zoom.
constexpr unsigned long SECOND_ZOOM = 0x7000001E;
constexpr unsigned long BRIGHTNESS_MIN = 0x70000022;
constexpr unsigned long BRIGHTNESS_MAX = 0x70000023;
/// Lens position in percent, 0 to 100.
constexpr unsigned long OPTICAL_ZOOM_PERCENT = 0x70000024;

/// Selectors of the two 8-byte controls of the extension unit.
constexpr unsigned long ID_SELECTOR = 19;
constexpr unsigned long VALUE_SELECTOR = 20;

} // namespace CameraParameter
