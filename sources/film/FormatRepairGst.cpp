#include "sources/film/FormatRepairGst.h"

#include "sources/film/FormatProbeGst.h"
#include "sources/gst/GstFactoryName.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace
{

constexpr std::array PARSERS{std::string_view("h264parse"), std::string_view("h265parse")};

} // namespace

void FormatRepairGst::watch(GstElement *pipeline)
{
    // Its threads see by the same lock what was made before they were.
    const std::lock_guard lock(m_mutex);
    g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onElement), this);
}

std::string FormatRepairGst::namedColours() const
{
    const std::lock_guard lock(m_mutex);
    return m_namedColours;
}

/// Any thread of the library.
void FormatRepairGst::onElement(GstBin *, GstBin *, GstElement *element, gpointer self)
{
    const std::string_view factory = factoryNameOf(element);
    if (std::find(PARSERS.begin(), PARSERS.end(), factory) != PARSERS.end()) {
        GstPad *pad = gst_element_get_static_pad(element, "sink");
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onFormat, self, nullptr);
        gst_object_unref(pad);
    } else if (factory == "avidemux") {
        const auto onPad = +[](GstElement *, GstPad *pad, gpointer repair) {
            gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onFormat, repair, nullptr);
        };
        g_signal_connect(element, "pad-added", G_CALLBACK(onPad), self);
    }
}

GstPadProbeReturn FormatRepairGst::onFormat(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    return changePassingFormat(info, [self](GstStructure *format) {
        static_cast<FormatRepairGst *>(self)->repair(format);
    });
}

void FormatRepairGst::repair(GstStructure *format)
{
    int width = 1;
    int height = 1;
    if (gst_structure_get_fraction(format, "pixel-aspect-ratio", &width, &height) &&
        (width < 0) != (height < 0))
        gst_structure_set(format, "pixel-aspect-ratio", GST_TYPE_FRACTION, std::abs(width),
                          std::abs(height), nullptr);
    if (const char *colours = gst_structure_get_string(format, "colorimetry")) {
        const std::lock_guard lock(m_mutex);
        m_namedColours = colours;
    }
    const bool coded = !gst_structure_has_name(format, "video/x-raw");
    if (coded)
        gst_structure_remove_field(format, "colorimetry");
}
