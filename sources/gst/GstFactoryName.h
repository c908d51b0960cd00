#pragma once

#include <gst/gst.h>
#include <string_view>

/// The name of the factory that made the element, "avidemux" for example; empty for one that no
/// factory made. As long as the element lives. Any thread.
[[nodiscard]] inline std::string_view factoryNameOf(GstElement *element)
{
    GstElementFactory *factory = gst_element_get_factory(element);
    return factory ? gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)) : "";
}
