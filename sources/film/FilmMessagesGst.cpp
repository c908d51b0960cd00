#include "sources/film/FilmMessagesGst.h"

FilmFault faultOf(GstMessage *message)
{
    GError *error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const bool unreadable = error->domain == GST_RESOURCE_ERROR;
    g_error_free(error);
    return unreadable ? FilmFault::Unreadable : FilmFault::NoFilm;
}

bool isMissingDecoder(GstMessage *message)
{
    const GstStructure *structure = gst_message_get_structure(message);
    if (!structure || !gst_structure_has_name(structure, "missing-plugin") ||
        g_strcmp0(gst_structure_get_string(structure, "type"), "decoder") != 0)
        return false;
    GstCaps *caps = nullptr;
    gst_structure_get(structure, "detail", GST_TYPE_CAPS, &caps, nullptr);
    const bool picture =
        caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps) &&
        g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps, 0)), "video/");
    if (caps)
        gst_caps_unref(caps);
    return picture;
}
