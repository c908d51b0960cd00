#include "sources/camera/UvcCamera.h"

#include "sources/camera/UvcConnection.h"

#include <libuvc/libuvc.h>

#include <cstring>
#include <utility>

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Of the end of a camera. One that works is through with each within a few ten milliseconds.
constexpr milliseconds LAST_ANSWER_BOUND{500};
constexpr milliseconds CLOSE_BOUND{1000};
// After an unplug libuvc may wait for transfers that never come back.
constexpr milliseconds STOP_GONE_BOUND{300};

} // namespace

UvcCamera::UvcCamera()
    : m_connection(std::make_shared<UvcConnection>())
    , m_worker("UvcCommands")
{
    m_worker.post([connection = m_connection] { return connection->initialise(); });
}

UvcCamera::~UvcCamera()
{
    stopDelivery();
    m_worker.clear();
    m_connection->hurry();
    const auto listed = m_worker.call(LAST_ANSWER_BOUND,
                                      [connection = m_connection] { return connection->listed(); });
    if (!listed)
        return;
    m_worker.call(*listed ? CLOSE_BOUND : STOP_GONE_BOUND, [connection = m_connection] {
        connection->stop();
        return connection->close();
    });
}

std::optional<bool> UvcCamera::find()
{
    if (!m_search.valid())
        m_search = m_worker.post([connection = m_connection] { return connection->find(); });
    const std::optional<int> row = wait(m_search);
    if (!row)
        return std::nullopt;
    m_search = {};
    if (*row < 0)
        return false;
    m_profile = &CAMERA_PROFILES.at(static_cast<std::size_t>(*row));
    return true;
}

std::optional<int> UvcCamera::open()
{
    if (!m_opening.valid())
        m_opening = m_worker.post([connection = m_connection] { return connection->open(); });
    const std::optional<int> result = wait(m_opening);
    m_opened = result && *result >= 0;
    return result;
}

void UvcCamera::findExtensionUnit()
{
    m_extensionUnit = 0;
    if (!m_opened)
        return;
    const auto &code = m_profile->extensionUnit;
    // A walk over what was parsed when the camera was opened; nothing crosses the bus.
    for (const uvc_extension_unit_t *unit = uvc_get_extension_units(m_connection->handle()); unit;
         unit = unit->next) {
        if (std::memcmp(unit->guidExtensionCode, code.data(), code.size()) == 0) {
            m_extensionUnit = unit->bUnitID;
            return;
        }
    }
}

void UvcCamera::startStreaming(QSize size, int framesPerSecond, FrameHandler handler)
{
    stopDelivery();
    m_stream.reset();
    if (!m_opened || m_connection->gone()) {
        qDebug("uvc_get_stream_ctrl_format_size() failed.\n");
        return;
    }
    request(std::make_shared<UvcStream>(size, std::move(handler)), framesPerSecond);
}

void UvcCamera::stopDelivery()
{
    if (m_stream)
        m_stream->close();
}

void UvcCamera::stopStreaming()
{
    if (!m_stream)
        return;
    stopDelivery();
    request(nullptr, 0);
}

bool UvcCamera::streaming() const
{
    return m_stream != nullptr;
}

int UvcCamera::controlError() const
{
    if (!m_opened || m_connection->gone())
        return UVC_ERROR_NO_DEVICE;
    return m_extensionUnit == 0 ? UVC_ERROR_NOT_FOUND : UVC_SUCCESS;
}

BoundedWorker::Ticket UvcCamera::send(std::vector<std::shared_ptr<ControlRequest>> controls)
{
    return m_worker.post(
        [connection = m_connection, unit = m_extensionUnit, controls = std::move(controls)] {
            int result = UVC_SUCCESS;
            for (const std::shared_ptr<ControlRequest> &control : controls) {
                if (control->answered)
                    continue;
                result = connection->control(unit, *control);
                if (result == UVC_ERROR_TIMEOUT)
                    break;
                control->answered = true;
            }
            return result;
        });
}

std::optional<int> UvcCamera::wait(const BoundedWorker::Ticket &ticket)
{
    if (late())
        return ticket.result();
    const auto from = steady_clock::now();
    const std::optional<int> result = ticket.wait(m_budget.left(from));
    m_budget.spend(from, steady_clock::now());
    if (!result)
        m_late = ticket;
    return result;
}

bool UvcCamera::late() const
{
    return m_late.open();
}

void UvcCamera::request(std::shared_ptr<UvcStream> stream, int framesPerSecond)
{
    m_stream = stream;
    if (m_connection->request({std::move(stream), framesPerSecond}))
        m_worker.post([connection = m_connection] { return connection->stream(); },
                      BoundedWorker::Place::First);
    m_connection->hurry();
}
