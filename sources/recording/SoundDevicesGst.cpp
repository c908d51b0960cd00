#include "sources/recording/SoundDevices.h"

#include "sources/gst/GstRuntime.h"

#include <QString>

#include <algorithm>
#include <optional>
#include <utility>

namespace
{

/// The list of microphones, which outlives the thread that made it.
struct KnownSources {
    /// Guards the list.
    std::mutex mutex;
    std::vector<SoundSource> list;

    static KnownSources &instance()
    {
        static auto *const known = new KnownSources;
        return *known;
    }
};

QString textOf(const GstStructure *properties, const char *name)
{
    return properties ? QString::fromUtf8(gst_structure_get_string(properties, name)) : QString();
}

/// What the sound server calls it; only its own list tells that of the first library.
QString idOf(GstDevice *device, const GstStructure *properties)
{
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(device), "internal-name")) {
        gchar *name = nullptr;
        g_object_get(device, "internal-name", &name, nullptr);
        QString id = QString::fromUtf8(name);
        g_free(name);
        if (!id.isEmpty())
            return id;
    }
    return textOf(properties, "node.name");
}

QString nameOf(GstDevice *device)
{
    gchar *name = gst_device_get_display_name(device);
    QString text = QString::fromUtf8(name);
    g_free(name);
    return text;
}

/// A microphone; nothing for what is none, or plays what the machine itself plays.
std::optional<SoundSource> sourceOf(GstDevice *device)
{
    if (!gst_device_has_classes(device, "Audio/Source"))
        return {};
    GstStructure *properties = gst_device_get_properties(device);
    const bool monitor = textOf(properties, "device.class") == QLatin1String("monitor");
    const QString id = idOf(device, properties);
    if (properties)
        gst_structure_free(properties);
    if (monitor)
        return {};
    const QString name = nameOf(device);
    return SoundSource{id.isEmpty() ? name : id, name};
}

bool isCameraMicrophone(MicrophoneId microphone, GstDevice *device)
{
    GstStructure *properties = gst_device_get_properties(device);
    if (!properties)
        return false;
    const bool found =
        gst_device_has_classes(device, "Audio/Source") &&
        SoundCapture::isCameraMicrophone(microphone, textOf(properties, "device.vendor.id"),
                                         textOf(properties, "device.product.id"),
                                         textOf(properties, "device.class"));
    gst_structure_free(properties);
    return found;
}

bool suits(const MicrophoneChoice &choice, GstDevice *device)
{
    switch (choice.kind) {
    case MicrophoneChoice::Kind::OfCamera:
        return isCameraMicrophone(choice.camera, device);
    case MicrophoneChoice::Kind::Source: {
        const std::optional<SoundSource> source = sourceOf(device);
        return source && source->id == choice.source;
    }
    case MicrophoneChoice::Kind::None:
        break;
    }
    return false;
}

/// Adds a device to the list or takes it away.
void noteDevice(GstDevice *device, bool there)
{
    const std::optional<SoundSource> source = sourceOf(device);
    if (!source)
        return;
    KnownSources &known = KnownSources::instance();
    const std::lock_guard lock(known.mutex);
    const auto sameId = [&](const SoundSource &other) { return other.id == source->id; };
    known.list.erase(std::remove_if(known.list.begin(), known.list.end(), sameId),
                     known.list.end());
    if (there)
        known.list.push_back(*source);
}

} // namespace

SoundDevices &SoundDevices::instance()
{
    static auto *const devices = new SoundDevices;
    return *devices;
}

SoundDevices::SoundDevices()
{
    GstRuntime::initialise();
    GList *factories = gst_device_provider_factory_list_get_device_providers(GST_RANK_MARGINAL);
    for (GList *item = factories; item; item = item->next) {
        auto *factory = GST_DEVICE_PROVIDER_FACTORY(item->data);
        if (!gst_device_provider_factory_has_classes(factory, "Audio/Source"))
            continue;
        GstPtr<GstDeviceProvider> provider(gst_device_provider_factory_get(factory));
        // A provider that cannot report that a microphone was removed is of no use here.
        if (provider && gst_device_provider_can_monitor(provider.get()))
            m_providers.push_back({std::move(provider)});
    }
    gst_plugin_feature_list_free(factories);
}

GstPtr<GstDevice> SoundDevices::find(const MicrophoneChoice &choice)
{
    // A provider does not notice that its server has died, so each look begins again.
    rest();
    m_serverAnswered = false;
    GstPtr<GstDevice> found;
    std::vector<SoundSource> sources;
    for (Provider &provider : m_providers) {
        provider.started = gst_device_provider_start(provider.object.get());
        if (!provider.started)
            continue;
        m_serverAnswered = true;
        // Another library may list the same microphones once more.
        provider.lists = sources.empty();
        GList *devices = gst_device_provider_get_devices(provider.object.get());
        for (GList *item = devices; item; item = item->next) {
            auto *device = GST_DEVICE(item->data);
            if (!found && suits(choice, device))
                found.reset(GST_DEVICE(gst_object_ref(device)));
            if (std::optional<SoundSource> source = sourceOf(device); source && provider.lists)
                sources.push_back(std::move(*source));
        }
        g_list_free_full(devices, gst_object_unref);
        if (found)
            break;
    }
    KnownSources &known = KnownSources::instance();
    {
        const std::lock_guard lock(known.mutex);
        known.list = std::move(sources);
    }
    if (!found && choice.kind != MicrophoneChoice::Kind::None)
        rest();
    return found;
}

bool SoundDevices::removed(const MicrophoneChoice &choice)
{
    bool removed = false;
    for (const Provider &provider : m_providers) {
        const GstPtr<GstBus> bus(gst_device_provider_get_bus(provider.object.get()));
        while (const GstPtr<GstMessage> message{gst_bus_pop(bus.get())}) {
            const GstMessageType type = GST_MESSAGE_TYPE(message.get());
            GstDevice *device = nullptr;
            if (type == GST_MESSAGE_DEVICE_REMOVED)
                gst_message_parse_device_removed(message.get(), &device);
            else if (type == GST_MESSAGE_DEVICE_ADDED)
                gst_message_parse_device_added(message.get(), &device);
            const GstPtr<GstDevice> owned(device);
            if (!owned)
                continue;
            if (provider.lists)
                noteDevice(owned.get(), type == GST_MESSAGE_DEVICE_ADDED);
            removed |= type == GST_MESSAGE_DEVICE_REMOVED && suits(choice, owned.get());
        }
    }
    return removed;
}

std::vector<SoundSource> SoundDevices::sources()
{
    KnownSources &known = KnownSources::instance();
    const std::lock_guard lock(known.mutex);
    return known.list;
}

void SoundDevices::rest()
{
    for (Provider &provider : m_providers) {
        if (provider.started)
            gst_device_provider_stop(provider.object.get());
        provider.started = false;
    }
}
