#include "diagnostics/TerminalLines.h"
#include "sources/gst/GstPointers.h"
#include "sources/recording/CaptureClock.h"
#include "sources/recording/SoundCapture.h"
#include "sources/recording/SoundDevices.h"
#include "sources/recording/SoundPump.h"
#include "sources/threads/DetachedThreads.h"
#include "sources/threads/ExitDeadline.h"

#include <QDebug>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace
{

using std::chrono::milliseconds;

constexpr milliseconds STOP_TIMEOUT{1000};
/// How often a thread asks whether an earlier one has let go of the list of devices.
constexpr milliseconds TURN_INTERVAL{100};
/// How often the list of microphones is looked after while none of them is wanted.
constexpr milliseconds WATCH_INTERVAL{500};
constexpr GstClockTime PULL_TIMEOUT = 100 * GST_MSECOND;

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
    SoundSearch(MicrophoneChoice choice, milliseconds interval)
        : m_interval(interval)
        , m_choice(std::move(choice))
    {
    }

    SoundPump pump;

    void run()
    {
        pthread_setname_np(pthread_self(), "SoundDevice");
        SoundDevices &devices = SoundDevices::instance();
        std::unique_lock turn(devices.mutex(), std::try_to_lock);
        // The thread of an earlier recording may wait for a sound server that does not answer.
        if (!turn)
            pump.setSource(false);
        while (!turn && !waitForStop(TURN_INTERVAL))
            (void)turn.try_lock();
        if (turn) {
            searchAndListen(devices);
            devices.rest();
        }
        const std::lock_guard lock(m_mutex);
        m_finished = true;
        m_changed.notify_all();
    }

    /// Asks the thread to end, which takes it as long as the sound server does to answer.
    void stop()
    {
        std::unique_lock lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
        (void)m_changed.wait_for(lock, ExitDeadline::atTheEnd(STOP_TIMEOUT),
                                 [this] { return m_finished; });
    }

    void choose(const MicrophoneChoice &choice)
    {
        const std::lock_guard lock(m_mutex);
        m_choice = choice;
        m_choiceIsNew = true;
        m_changed.notify_all();
    }

    QString heard() const
    {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }

private:
    void searchAndListen(SoundDevices &devices)
    {
        bool reported = false;
        while (!waitForStop(milliseconds(0))) {
            const auto [choice, isNew] = takeChoice();
            const bool wanted = choice.kind != MicrophoneChoice::Kind::None;
            reported = reported && !isNew;
            if (!wanted)
                pump.setSource(false);
            const GstPtr<GstDevice> device = devices.find(choice);
            pump.setSource(device != nullptr);
            if (device) {
                listen(devices, device.get(), choice);
                pump.setSource(false);
            }
            if (wanted && !reported && !interrupted())
                tellOfSilence(choice, device != nullptr, devices.serverAnswered());
            reported = !device;
            // Only the list of microphones is kept up to date.
            while (!wanted && devices.serverAnswered() && !waitForOrders(WATCH_INTERVAL))
                (void)devices.removed(choice);
            waitForOrders(m_interval);
        }
    }

    static void tellOfSilence(const MicrophoneChoice &choice, bool lost, bool serverAnswered)
    {
        if (choice.kind == MicrophoneChoice::Kind::OfCamera)
            qDebug("%s", lost ? "The camera's microphone is lost, recording silence."
                              : "No camera microphone found, recording silence.");
        else
            qDebug("%s", lost ? "The chosen microphone is lost, recording silence."
                              : "The chosen microphone is not there, recording silence.");
        if (!serverAnswered)
            TerminalLines::tell(TerminalLines::Line::NoSoundServer);
    }

    void listen(SoundDevices &devices, GstDevice *device, const MicrophoneChoice &choice)
    {
        Microphone microphone(device);
        gchar *name = gst_device_get_display_name(device);
        setHeard(QString::fromUtf8(name));
        g_free(name);
        while (microphone.running() && !devices.removed(choice) && !interrupted())
            microphone.pull(pump);
        setHeard({});
    }

    void setHeard(const QString &name)
    {
        const std::lock_guard lock(m_mutex);
        m_heard = name;
    }

    /// And whether it has not been taken before.
    std::pair<MicrophoneChoice, bool> takeChoice()
    {
        const std::lock_guard lock(m_mutex);
        return {m_choice, std::exchange(m_choiceIsNew, false)};
    }

    bool interrupted() { return waitForOrders(milliseconds(0)); }

    bool waitForStop(milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, time, [this] { return m_stopping; });
    }

    /// Whether it is to stop, or to listen to another microphone.
    bool waitForOrders(milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, time, [this] { return m_stopping || m_choiceIsNew; });
    }

    const milliseconds m_interval;
    /// Guards the members below.
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    MicrophoneChoice m_choice;
    bool m_choiceIsNew = false;
    QString m_heard;
    bool m_stopping = false;
    bool m_finished = false;
};

class SoundCaptureGst final : public SoundCapture
{
public:
    SoundCaptureGst(MicrophoneChoice choice, milliseconds interval)
        : m_choice(std::move(choice))
        , m_interval(interval)
    {
    }
    ~SoundCaptureGst() override { stop(); }

    void start(Handler handler) override
    {
        stop();
        m_search = std::make_shared<SoundSearch>(m_choice, m_interval);
        m_search->pump.start(std::move(handler));
        auto running = std::make_shared<DetachedThreads::Running>();
        std::thread([search = m_search, running] { search->run(); }).detach();
    }

    void stop() override
    {
        if (!m_search)
            return;
        m_search->pump.stop();
        m_search->stop();
        m_search.reset();
    }

    void choose(const MicrophoneChoice &choice) override
    {
        m_choice = choice;
        if (m_search)
            m_search->choose(choice);
    }

    QString heard() const override { return m_search ? m_search->heard() : QString(); }

private:
    MicrophoneChoice m_choice;
    const milliseconds m_interval;
    std::shared_ptr<SoundSearch> m_search;
};

} // namespace

std::unique_ptr<SoundCapture> SoundCapture::create(const MicrophoneChoice &microphone,
                                                   milliseconds searchInterval)
{
    return std::make_unique<SoundCaptureGst>(microphone, searchInterval);
}

std::vector<SoundSource> SoundCapture::sources()
{
    return SoundDevices::sources();
}
