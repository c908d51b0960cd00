#include "sources/media/CaptureClock.h"
#include "sources/media/GstPointers.h"
#include "sources/media/MediaLibrary.h"
#include "sources/media/SoundCapture.h"
#include "sources/media/SoundPump.h"

#include <QDebug>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace
{

constexpr auto SEARCH_INTERVAL = std::chrono::seconds(2);
constexpr auto STOP_PATIENCE = std::chrono::seconds(1);
constexpr GstClockTime PULL_TIMEOUT = 100 * GST_MSECOND;

bool isCameraMicrophoneDevice(GstDevice *device)
{
    GstStructure *properties = gst_device_get_properties(device);
    if (!properties)
        return false;
    const auto text = [&](const char *name) {
        return QString::fromUtf8(gst_structure_get_string(properties, name));
    };
    const bool found = SoundCapture::isCameraMicrophone(
        text("device.vendor.id"), text("device.product.id"), text("device.class"));
    gst_structure_free(properties);
    return found;
}

/// The list of sound sources, watched for as long as it lives.
class DeviceWatch
{
public:
    DeviceWatch()
        : m_monitor(gst_device_monitor_new())
        , m_bus(gst_device_monitor_get_bus(m_monitor.get()))
    {
        gst_device_monitor_add_filter(m_monitor.get(), "Audio/Source", nullptr);
        m_started = gst_device_monitor_start(m_monitor.get());
    }
    ~DeviceWatch()
    {
        if (m_started)
            gst_device_monitor_stop(m_monitor.get());
        gst_bus_set_flushing(m_bus.get(), TRUE);
    }
    DeviceWatch(const DeviceWatch &) = delete;
    DeviceWatch &operator=(const DeviceWatch &) = delete;

    /// The camera's microphone; null when there is none.
    GstPtr<GstDevice> cameraMicrophone() const
    {
        GstPtr<GstDevice> found;
        GList *devices = m_started ? gst_device_monitor_get_devices(m_monitor.get()) : nullptr;
        for (GList *item = devices; item && !found; item = item->next) {
            if (isCameraMicrophoneDevice(GST_DEVICE(item->data)))
                found.reset(GST_DEVICE(gst_object_ref(item->data)));
        }
        g_list_free_full(devices, gst_object_unref);
        return found;
    }

    /// Whether the camera's microphone has been taken away since the last call.
    bool microphoneRemoved() const
    {
        bool removed = false;
        while (GstMessage *message = gst_bus_pop(m_bus.get())) {
            GstDevice *device = nullptr;
            if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_DEVICE_REMOVED)
                gst_message_parse_device_removed(message, &device);
            removed |= device && isCameraMicrophoneDevice(device);
            if (device)
                gst_object_unref(device);
            gst_message_unref(message);
        }
        return removed;
    }

private:
    GstPtr<GstDeviceMonitor> m_monitor;
    GstPtr<GstBus> m_bus;
    bool m_started = false;
};

/// A running pipeline from the microphone to a sink that is pulled.
class Microphone
{
public:
    explicit Microphone(GstDevice *device)
        : m_pipeline(gst_pipeline_new("microphone"))
    {
        GstElement *source = gst_device_create_element(device, nullptr);
        GError *error = nullptr;
        GstElement *rest = gst_parse_bin_from_description(
            "queue max-size-time=5000000000 max-size-buffers=0 max-size-bytes=0 ! audioconvert"
            " ! audioresample ! appsink name=sink sync=false"
            " caps=audio/x-raw,format=S16LE,rate=44100,channels=1,layout=interleaved",
            TRUE, &error);
        g_clear_error(&error);
        for (GstElement *element : {source, rest}) {
            if (element && !(source && rest))
                gst_object_unref(gst_object_ref_sink(element));
        }
        if (!source || !rest)
            return;
        setUpTiming(source);
        gst_bin_add_many(GST_BIN(m_pipeline.get()), source, rest, nullptr);
        m_sink.reset(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), "sink"));
        m_bus.reset(gst_element_get_bus(m_pipeline.get()));
        m_running =
            gst_element_link(source, rest) &&
            gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    }
    ~Microphone() { gst_element_set_state(m_pipeline.get(), GST_STATE_NULL); }
    Microphone(const Microphone &) = delete;
    Microphone &operator=(const Microphone &) = delete;

    bool running() const
    {
        if (!m_running)
            return false;
        GstMessage *message = gst_bus_pop_filtered(
            m_bus.get(), static_cast<GstMessageType>(GST_MESSAGE_ERROR | GST_MESSAGE_EOS));
        if (message)
            gst_message_unref(message);
        return message == nullptr;
    }

    /// Hands the next sound to the pump, if there is any within a tenth of a second.
    void pull(SoundPump &pump)
    {
        GstSample *sample = gst_app_sink_try_pull_sample(GST_APP_SINK(m_sink.get()), PULL_TIMEOUT);
        if (!sample)
            return;
        GstBuffer *buffer = gst_sample_get_buffer(sample);
        GstMapInfo map;
        if (buffer && GST_BUFFER_PTS_IS_VALID(buffer) &&
            gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            std::vector<std::int16_t> samples(map.size / sizeof(std::int16_t));
            memcpy(samples.data(), map.data, samples.size() * sizeof(std::int16_t));
            gst_buffer_unmap(buffer, &map);
            const GstClockTime time =
                gst_element_get_base_time(m_pipeline.get()) +
                gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                            GST_BUFFER_PTS(buffer));
            pump.push(std::move(samples), static_cast<qint64>(time / GST_USECOND));
        }
        gst_sample_unref(sample);
    }

private:
    /// The system's monotonic clock stamps the sound: the server's own clock is tens of
    /// milliseconds off. Each buffer is stamped by itself, so that no sample is dropped to keep up.
    void setUpTiming(GstElement *source)
    {
        const GstPtr<GstClock> clock(gst_system_clock_obtain());
        gst_pipeline_use_clock(GST_PIPELINE(m_pipeline.get()), clock.get());
        if (g_object_class_find_property(G_OBJECT_GET_CLASS(source), "slave-method"))
            gst_util_set_object_arg(G_OBJECT(source), "slave-method", "re-timestamp");
    }

    GstPtr<GstElement> m_pipeline;
    GstPtr<GstElement> m_sink;
    GstPtr<GstBus> m_bus;
    bool m_running = false;
};

/// Looks for the microphone and listens to it, on a thread of its own that may be left behind
/// when the sound server does not answer.
class SoundSearch
{
public:
    SoundPump pump;

    void run()
    {
        pthread_setname_np(pthread_self(), "SoundDevice");
        MediaLibrary::initialise();
        bool reported = false;
        while (!waitForStop(std::chrono::seconds(0))) {
            const DeviceWatch watch;
            const GstPtr<GstDevice> device = watch.cameraMicrophone();
            pump.setSource(device != nullptr);
            if (device) {
                listen(watch, device.get());
                pump.setSource(false);
            }
            if (!reported && !waitForStop(std::chrono::seconds(0)))
                qDebug("%s", device ? "The camera's microphone is lost, recording silence."
                                    : "No camera microphone found, recording silence.");
            reported = !device;
            if (waitForStop(SEARCH_INTERVAL))
                break;
        }
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_finished = true;
        m_changed.notify_all();
    }

    /// Asks the thread to end and waits a moment for it.
    void stop()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
        if (!m_changed.wait_for(lock, STOP_PATIENCE, [this] { return m_finished; }))
            qDebug("The sound server does not answer, going on without it.");
    }

private:
    void listen(const DeviceWatch &watch, GstDevice *device)
    {
        Microphone microphone(device);
        while (microphone.running() && !watch.microphoneRemoved() &&
               !waitForStop(std::chrono::seconds(0)))
            microphone.pull(pump);
    }

    bool waitForStop(std::chrono::seconds time)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, time, [this] { return m_stopping; });
    }

    /// Guards the two members below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    bool m_finished = false;
};

class SoundCaptureGst : public SoundCapture
{
public:
    ~SoundCaptureGst() override { stop(); }

    void start(Handler handler) override
    {
        stop();
        m_search = std::make_shared<SoundSearch>();
        m_search->pump.start(std::move(handler));
        std::thread([search = m_search] { search->run(); }).detach();
    }

    void stop() override
    {
        if (!m_search)
            return;
        m_search->pump.stop();
        m_search->stop();
        m_search.reset();
    }

private:
    std::shared_ptr<SoundSearch> m_search;
};

} // namespace

std::unique_ptr<SoundCapture> SoundCapture::create()
{
    return std::make_unique<SoundCaptureGst>();
}
