#include "sources/film/FilmMessagesGst.h"

#include <gst/pbutils/missing-plugins.h>
#include <memory>

FilmFault faultOf(GstMessage *message)
{
    GError *error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const bool unreadable = error->domain == GST_RESOURCE_ERROR;
    g_error_free(error);
    return unreadable ? FilmFault::Unreadable : FilmFault::NoFilm;
}

QString missingDecoder(GstMessage *message)
{
    const GstStructure *structure = gst_message_get_structure(message);
    if (!structure || !gst_structure_has_name(structure, "missing-plugin") ||
        g_strcmp0(gst_structure_get_string(structure, "type"), "decoder") != 0)
        return {};
    GstCaps *caps = nullptr;
    gst_structure_get(structure, "detail", GST_TYPE_CAPS, &caps, nullptr);
    const bool picture =
        caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps) &&
        g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps, 0)), "video/");
    if (caps)
        gst_caps_unref(caps);
    if (!picture)
        return {};
    const std::unique_ptr<gchar, decltype(&g_free)> description(
        gst_missing_plugin_message_get_description(message), &g_free);
    return QString::fromUtf8(description.get());
}
