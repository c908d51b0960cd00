#include "tests/media/HeldEncoder.h"

#include <gst/gst.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace
{

std::mutex mutex;
std::condition_variable changed;
bool tried = false;
bool released = false;

GstStateChangeReturn changeState(GstElement *element, GstStateChange change)
{
    if (change == GST_STATE_CHANGE_NULL_TO_READY) {
        std::unique_lock lock(mutex);
        tried = true;
        changed.notify_all();
        changed.wait(lock, [] { return released; });
        return GST_STATE_CHANGE_FAILURE;
    }
    auto *parent = GST_ELEMENT_CLASS(g_type_class_peek_parent(GST_ELEMENT_GET_CLASS(element)));
    return parent->change_state(element, change);
}

void initialiseClass(gpointer data, gpointer)
{
    GstElementClass *type = GST_ELEMENT_CLASS(data);
    gst_element_class_set_static_metadata(type, "Held", "Codec/Encoder/Video", "Held", "Test");
    for (const auto &[name, direction] :
         {std::pair("sink", GST_PAD_SINK), std::pair("src", GST_PAD_SRC)}) {
        GstCaps *caps =
            gst_caps_from_string(direction == GST_PAD_SINK ? "video/x-raw" : "video/x-h264");
        gst_element_class_add_pad_template(
            type, gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
        gst_caps_unref(caps);
    }
    type->change_state = changeState;
}

void initialise(GTypeInstance *instance, gpointer type)
{
    for (const char *name : {"sink", "src"})
        gst_element_add_pad(
            GST_ELEMENT(instance),
            gst_pad_new_from_template(
                gst_element_class_get_pad_template(GST_ELEMENT_CLASS(type), name), name));
}

} // namespace

void HeldEncoder::install()
{
    gst_init(nullptr, nullptr);
    const GTypeInfo info{
        sizeof(GstElementClass), nullptr, nullptr,    initialiseClass, nullptr, nullptr,
        sizeof(GstElement),      0,       initialise, nullptr};
    static const GType type =
        g_type_register_static(GST_TYPE_ELEMENT, "HeldEncoder", &info, GTypeFlags(0));
    gst_element_register(nullptr, "heldencoder", GST_RANK_NONE, type);
    const std::lock_guard lock(mutex);
    tried = false;
    released = false;
}

bool HeldEncoder::waitUntilTried()
{
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(20), [] { return tried; });
}

void HeldEncoder::release()
{
    const std::lock_guard lock(mutex);
    released = true;
    changed.notify_all();
}
