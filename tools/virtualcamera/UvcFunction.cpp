#include "tools/virtualcamera/UvcFunction.h"

#include "tools/virtualcamera/UvcRequests.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

using namespace UsbDescriptors;

namespace
{

constexpr int PROBE_CONTROL = 1;
constexpr int COMMIT_CONTROL = 2;
constexpr int REGISTER_SIZE = 8;

int reply(const SetupPacket &setup, std::uint8_t *data, const void *answer, std::size_t size)
{
    const std::size_t length = std::min<std::size_t>(setup.length, size);
    std::memcpy(data, answer, length);
    return static_cast<int>(length);
}

int replyByte(const SetupPacket &setup, std::uint8_t *data, std::uint8_t value)
{
    return reply(setup, data, &value, 1);
}

int replyLength(const SetupPacket &setup, std::uint8_t *data, std::uint8_t length)
{
    const std::uint8_t answer[2] = {length, 0};
    return reply(setup, data, answer, sizeof answer);
}

int replyRegister(const SetupPacket &setup, std::uint8_t *data, std::uint64_t value)
{
    std::uint8_t answer[REGISTER_SIZE];
    for (unsigned i = 0; i < REGISTER_SIZE; ++i)
        answer[i] = static_cast<std::uint8_t>(value >> 8 * i);
    return reply(setup, data, answer, sizeof answer);
}

void put32(std::uint8_t *target, std::uint32_t value)
{
    for (unsigned i = 0; i < 4; ++i)
        target[i] = static_cast<std::uint8_t>(value >> 8 * i);
}

std::uint32_t get32(const std::uint8_t *source)
{
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(source[i]) << 8 * i;
    return value;
}

} // namespace

SetupPacket SetupPacket::parse(const std::uint8_t *bytes)
{
    const auto u16 = [bytes](int at) {
        return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
    };
    return {bytes[0], bytes[1], u16(2), u16(4), u16(6)};
}

UvcFunction::UvcFunction(Settings settings, ExtensionUnit &extensionUnit,
                         UnitControls &unitControls, CameraFaults &faults)
    : m_settings(std::move(settings))
    , m_extensionUnit(extensionUnit)
    , m_unitControls(unitControls)
    , m_faults(faults)
{
    powerOn(true, 0);
}

void UvcFunction::powerOn(bool withExtensionUnit, int missingSize)
{
    m_hasExtensionUnit = withExtensionUnit && m_settings.extensionUnit;
    m_descriptors =
        build({m_settings.vendorId, m_settings.productId, m_settings.isochronous,
               withExtensionUnit && m_settings.extensionUnit,
               m_unitControls.map(StandardUnit::CameraTerminal),
               m_unitControls.map(StandardUnit::ProcessingUnit), missingSize, m_settings.formats});
    for (const auto &[place, value] : m_settings.descriptorPatches) {
        if (place < m_descriptors.size())
            m_descriptors[place] = value;
    }
    m_probe = m_commit = streamControl(agreed(1, 1, 0));
    m_committed.reset();
    m_extensionUnit.powerOn();
    m_unitControls.powerOn();
}

int UvcFunction::control(const SetupPacket &setup, std::uint8_t *data)
{
    ++m_controlTransfers;
    const bool isClass = setup.isClassRequest();
    const int result = isClass ? classRequest(setup, data) : standard(setup, data);
    m_classTransfers += isClass;
    m_stalledTransfers += result < 0;
    return result;
}

std::optional<UvcFunction::Commit> UvcFunction::takeCommit()
{
    return std::exchange(m_committed, std::nullopt);
}

void UvcFunction::report(CameraStatistics &statistics) const
{
    statistics.controlTransfers = m_controlTransfers;
    statistics.classTransfers = m_classTransfers;
    statistics.stalledTransfers = m_stalledTransfers;
}

int UvcFunction::standard(const SetupPacket &setup, std::uint8_t *data) const
{
    constexpr std::uint8_t GET_STATUS = 0, GET_DESCRIPTOR = 6, GET_CONFIGURATION = 8;
    if (!(setup.requestType & 0x80))
        return 0;
    if (setup.requestType != 0x80)
        return -EPIPE;
    if (setup.request == GET_DESCRIPTOR)
        return descriptor(setup, data);
    if (setup.request == GET_CONFIGURATION)
        return replyByte(setup, data, 1);
    if (setup.request == GET_STATUS)
        return replyLength(setup, data, 0);
    return -EPIPE;
}

int UvcFunction::descriptor(const SetupPacket &setup, std::uint8_t *data) const
{
    const std::uint8_t *bytes = m_descriptors.data();
    switch (setup.value >> 8) {
    case 1:
        return reply(setup, data, bytes, DEVICE_DESCRIPTOR_SIZE);
    case 2:
        return reply(setup, data, bytes + DEVICE_DESCRIPTOR_SIZE,
                     m_descriptors.size() - DEVICE_DESCRIPTOR_SIZE);
    case 3:
        break;
    default:
        return -EPIPE;
    }
    const int index = setup.value & 0xFF;
    if (index == 0) {
        constexpr std::uint8_t englishOnly[] = {4, 3, 0x09, 0x04};
        return reply(setup, data, englishOnly, sizeof englishOnly);
    }
    if (index > 3)
        return -EPIPE;
    const std::string *texts[] = {&m_settings.manufacturer, &m_settings.product,
                                  &m_settings.serial};
    const auto answer = buildString(texts[index - 1]->c_str());
    return reply(setup, data, answer.data(), answer.size());
}

int UvcFunction::classRequest(const SetupPacket &setup, std::uint8_t *data)
{
    if (takeFault(m_faults.stallControls))
        return -EPIPE;
    const bool toInterface = (setup.requestType & 0x1F) == 1;
    if (toInterface && (setup.index & 0xFF) == STREAMING_INTERFACE)
        return streaming(setup, data);
    const int unit = setup.index >> 8;
    if (unit == EXTENSION_UNIT && m_hasExtensionUnit)
        return extension(setup, data);
    if (unit == CAMERA_TERMINAL)
        return m_unitControls.control(StandardUnit::CameraTerminal, setup, data);
    if (unit == PROCESSING_UNIT)
        return m_unitControls.control(StandardUnit::ProcessingUnit, setup, data);
    return -EPIPE;
}

int UvcFunction::streaming(const SetupPacket &setup, std::uint8_t *data)
{
    const int selector = setup.value >> 8;
    if (selector != PROBE_CONTROL && selector != COMMIT_CONTROL)
        return -EPIPE;
    if (takeFault(m_faults.stallProbes))
        return -EPIPE;
    StreamControl &current = selector == PROBE_CONTROL ? m_probe : m_commit;
    switch (setup.request) {
    case SET_CUR: {
        if (setup.length < 8)
            return -EPIPE;
        const Agreed answer = agreed(data[2], data[3], get32(data + 4));
        current = streamControl(answer);
        if (selector == COMMIT_CONTROL)
            m_committed = answer.stream;
        return setup.length;
    }
    case GET_CUR:
        return reply(setup, data, current.data(), current.size());
    case GET_MIN:
    case GET_MAX:
    case GET_DEF:
        return reply(setup, data, streamControl(agreed(1, 1, 0)).data(), current.size());
    case GET_LEN:
        return replyLength(setup, data, static_cast<std::uint8_t>(current.size()));
    case GET_INFO:
        return replyByte(setup, data, GET_AND_SET);
    default:
        return -EPIPE;
    }
}

int UvcFunction::extension(const SetupPacket &setup, std::uint8_t *data)
{
    const int selector = setup.value >> 8;
    if (selector == m_faults.stallSelector)
        return -EPIPE;
    switch (setup.request) {
    case SET_CUR: {
        if (setup.length != REGISTER_SIZE)
            return -EPIPE;
        std::uint64_t value = 0;
        for (unsigned i = 0; i < REGISTER_SIZE; ++i)
            value |= static_cast<std::uint64_t>(data[i]) << 8 * i;
        return m_extensionUnit.set(selector, value) ? REGISTER_SIZE : -EPIPE;
    }
    case GET_CUR: {
        const auto value = m_extensionUnit.get(selector);
        return value ? replyRegister(setup, data, *value) : -EPIPE;
    }
    case GET_MIN:
    case GET_DEF:
        return replyRegister(setup, data, 0);
    case GET_MAX:
        return replyRegister(setup, data, ~std::uint64_t{0});
    case GET_RES:
        return replyRegister(setup, data, 1);
    case GET_LEN:
        return replyLength(setup, data, REGISTER_SIZE);
    case GET_INFO:
        return replyByte(setup, data, GET_AND_SET);
    default:
        return -EPIPE;
    }
}

UvcFunction::Agreed UvcFunction::agreed(unsigned formatIndex, unsigned frameIndex,
                                        std::uint32_t interval) const
{
    if (formatIndex < 1 || formatIndex > m_settings.formats.size())
        formatIndex = 1;
    const StreamFormat &format = m_settings.formats[formatIndex - 1];
    if (frameIndex < 1 || frameIndex > format.sizes.size())
        frameIndex = 1;
    const auto &intervals = format.intervals;
    const bool listed =
        format.range ? interval >= intervals[0] && interval <= intervals[1]
                     : std::find(intervals.begin(), intervals.end(), interval) != intervals.end();
    return {static_cast<std::uint8_t>(formatIndex),
            static_cast<std::uint8_t>(frameIndex),
            {format.coding, format.sizes[frameIndex - 1], listed ? interval : intervals.front()}};
}

/// The layout of UVC 1.1.
UvcFunction::StreamControl UvcFunction::streamControl(const Agreed &agreed) const
{
    StreamControl block{};
    block[0] = 1; // the frame interval is kept
    block[2] = agreed.formatIndex;
    block[3] = agreed.frameIndex;
    put32(&block[4], agreed.stream.interval);
    put32(&block[18], m_settings.formats[agreed.formatIndex - 1u].frameBytes(agreed.stream.size));
    put32(&block[22], m_settings.isochronous ? ISOCHRONOUS_PACKET : m_settings.maximumPayload);
    put32(&block[26], CLOCK_FREQUENCY);
    block[30] = 3; // frame id and end of frame are used
    block[31] = block[32] = block[33] = 1;
    return block;
}
