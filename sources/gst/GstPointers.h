#pragma once

#include <gst/gst.h>
#include <memory>

/// Drops the one reference that is held.
struct GstUnref {
    void operator()(GstBuffer *buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
    void operator()(GstMessage *message) const { gst_message_unref(message); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(GSource *source) const { g_source_unref(source); }
    template <class Object>
    void operator()(Object *object) const
    {
        gst_object_unref(object);
    }
};
template <class T>
using GstPtr = std::unique_ptr<T, GstUnref>;
