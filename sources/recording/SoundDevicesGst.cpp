#include "sources/recording/SoundDevices.h"

#include "sources/gst/GstRuntime.h"

#include <QString>

namespace
{

bool isCameraMicrophone(MicrophoneId microphone, GstDevice *device)
{
    GstStructure *properties = gst_device_get_properties(device);
    if (!properties)
        return false;
    const auto text = [&](const char *name) {
        return QString::fromUtf8(gst_structure_get_string(properties, name));
    };
    const bool found =
        gst_device_has_classes(device, "Audio/Source") &&
        SoundCapture::isCameraMicrophone(microphone, text("device.vendor.id"),
                                         text("device.product.id"), text("device.class"));
    gst_structure_free(properties);
    return found;
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

GstPtr<GstDevice> SoundDevices::findCameraMicrophone(MicrophoneId microphone)
{
    // A provider does not notice that its server has died, so each look begins again.
    rest();
    m_serverAnswered = false;
    GstPtr<GstDevice> found;
    for (Provider &provider : m_providers) {
        provider.started = gst_device_provider_start(provider.object.get());
        if (!provider.started)
            continue;
        m_serverAnswered = true;
        GList *devices = gst_device_provider_get_devices(provider.object.get());
        for (GList *item = devices; item && !found; item = item->next) {
            if (isCameraMicrophone(microphone, GST_DEVICE(item->data)))
                found.reset(GST_DEVICE(gst_object_ref(item->data)));
        }
        g_list_free_full(devices, gst_object_unref);
        if (found)
            return found;
    }
    rest();
    return nullptr;
}

bool SoundDevices::cameraMicrophoneRemoved(MicrophoneId microphone)
{
    bool removed = false;
    for (const Provider &provider : m_providers) {
        const GstPtr<GstBus> bus(gst_device_provider_get_bus(provider.object.get()));
        while (const GstPtr<GstMessage> message{gst_bus_pop(bus.get())}) {
            if (GST_MESSAGE_TYPE(message.get()) != GST_MESSAGE_DEVICE_REMOVED)
                continue;
            GstDevice *device = nullptr;
            gst_message_parse_device_removed(message.get(), &device);
            const GstPtr<GstDevice> owned(device);
            removed |= owned && isCameraMicrophone(microphone, owned.get());
        }
    }
    return removed;
}

void SoundDevices::rest()
{
    for (Provider &provider : m_providers) {
        if (provider.started)
            gst_device_provider_stop(provider.object.get());
        provider.started = false;
    }
}
