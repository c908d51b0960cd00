#pragma once

#include <QString>

struct VirtualCameraConfig;

/// Texts of the command line that make a camera of another make.
namespace ForeignCamera
{

/// "1d6b:0104", in hexadecimal; a camera of another make has no vendor's unit. False when it is no
/// such text, as with all of them.
[[nodiscard]] bool setMake(VirtualCameraConfig &camera, const QString &text);

/// "mjpeg:1920x1080,3840x2160@25;yuyv:640x480": for each format its sizes and, if it is not 30, the
/// rate. The formats are mjpeg, yuyv, uyvy and grey.
[[nodiscard]] bool setFormats(VirtualCameraConfig &camera, const QString &text);

} // namespace ForeignCamera
