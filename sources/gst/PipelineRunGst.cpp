#include "sources/gst/GstPointers.h"
#include "sources/gst/PipelineRun.h"

namespace
{

constexpr GstClockTime TIMEOUT = 3 * GST_SECOND;

bool endComes(GstElement *pipeline)
{
    if (gst_element_set_state(pipeline, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        return false;
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline));
    const GstPtr<GstMessage> last(gst_bus_timed_pop_filtered(
        bus.get(), TIMEOUT, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    return last && GST_MESSAGE_TYPE(last.get()) == GST_MESSAGE_EOS;
}

} // namespace

bool runPipelineToItsEnd(const QByteArray &description)
{
    GError *error = nullptr;
    GstElement *launched = gst_parse_launch(description.constData(), &error);
    const bool complete = launched && !error;
    g_clear_error(&error);
    if (!launched)
        return false;
    const GstPtr<GstElement> pipeline(GST_ELEMENT(gst_object_ref_sink(launched)));
    const bool ended = complete && endComes(pipeline.get());
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return ended;
}
