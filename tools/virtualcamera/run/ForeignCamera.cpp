#include "tools/virtualcamera/run/ForeignCamera.h"

#include "tools/virtualcamera/VirtualCamera.h"

#include <QRegularExpression>
#include <QStringList>

using namespace UsbDescriptors;

namespace
{

constexpr double SECOND = 10'000'000; ///< in the units of a frame interval

struct Name {
    const char *name;
    StreamCoding coding;
};
constexpr Name NAMES[] = {
    {"mjpeg", StreamCoding::MotionJpeg},
    {"yuyv", StreamCoding::Yuyv},
    {"uyvy", StreamCoding::Uyvy},
    {"grey", StreamCoding::Grey},
};

bool addFormat(std::vector<StreamFormat> &formats, const QString &text)
{
    static const QRegularExpression pattern("^(\\w+):((?:\\d+x\\d+,?)+)(?:@([\\d.]+))?$");
    const QRegularExpressionMatch match = pattern.match(text);
    StreamFormat format;
    bool known = false;
    for (const Name &row : NAMES) {
        if (match.captured(1) != QLatin1String(row.name))
            continue;
        format.coding = row.coding;
        known = true;
    }
    format.sizes.clear();
    for (const QString &size : match.captured(2).split(',', Qt::SkipEmptyParts))
        format.sizes.push_back(
            {size.section('x', 0, 0).toUShort(), size.section('x', 1).toUShort()});
    const double rate = match.captured(3).toDouble();
    if (rate > 0)
        format.intervals = {static_cast<std::uint32_t>(SECOND / rate)};
    formats.push_back(std::move(format));
    return known;
}

} // namespace

bool ForeignCamera::setMake(VirtualCameraConfig &camera, const QString &text)
{
    constexpr int HEXADECIMAL = 16;
    bool vendorRead = false, productRead = false;
    camera.vendorId = text.section(':', 0, 0).toUShort(&vendorRead, HEXADECIMAL);
    camera.productId = text.section(':', 1).toUShort(&productRead, HEXADECIMAL);
    camera.extensionUnit = camera.vendorId == VENDOR_ID && camera.productId == PRODUCT_ID;
    return vendorRead && productRead;
}

bool ForeignCamera::setFormats(VirtualCameraConfig &camera, const QString &text)
{
    camera.formats.clear();
    bool all = true;
    for (const QString &part : text.split(';', Qt::SkipEmptyParts))
        all = addFormat(camera.formats, part) && all;
    return all && !camera.formats.empty();
}
