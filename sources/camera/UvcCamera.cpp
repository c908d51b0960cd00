#include "sources/camera/UvcCamera.h"

#include "sources/camera/UvcConnection.h"
#include "sources/recording/CaptureClock.h"
#include "sources/threads/DetachedThreads.h"
#include "sources/threads/ExitDeadline.h"

#include <libuvc/libuvc.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The time limits for closing a camera. A working one takes a few tens of milliseconds for each.
constexpr milliseconds LAST_ANSWER_TIMEOUT{500};
constexpr milliseconds CLOSE_TIMEOUT{1000};
// After an unplug libuvc may wait for transfers that never come back.
constexpr milliseconds STOP_GONE_TIMEOUT{300};
/// The size of a stream does not depend on the rate that is wanted.
constexpr int ANY_RATE = 30;

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
    const auto listed = m_worker.call(ExitDeadline::capped(LAST_ANSWER_TIMEOUT),
                                      [connection = m_connection] { return connection->listed(); });
    // The camera is closed even after a call that timed out; otherwise its interfaces would stay
    // taken for as long as the process runs.
    const auto running = std::make_shared<DetachedThreads::Running>();
    const BoundedWorker::Ticket closing = m_worker.post(
        [connection = m_connection, running] {
            (void)connection->listed();
            connection->stop();
            return connection->close();
        },
        BoundedWorker::Place::Final);
    if (listed)
        (void)closing.wait(ExitDeadline::capped(*listed ? CLOSE_TIMEOUT : STOP_GONE_TIMEOUT));
}

std::optional<bool> UvcCamera::find(const CameraChoice &choice)
{
    if (!m_search.valid())
        m_search =
            m_worker.post([connection = m_connection, choice] { return connection->find(choice); });
    const std::optional<int> found = wait(m_search);
    if (!found)
        return std::nullopt;
    m_search = {};
    if (*found < 0)
        return false;
    m_identity = m_connection->found();
    return true;
}

std::optional<int> UvcCamera::open()
{
    if (!m_opening.valid())
        m_opening = m_worker.post([connection = m_connection] { return connection->open(); });
    const std::optional<int> result = wait(m_opening);
    if (result)
        noteOpened(*result);
    return result;
}

int UvcCamera::openWithin(std::chrono::milliseconds bound, const BusCamera &camera)
{
    m_identity = camera;
    m_opening = m_worker.post(
        [connection = m_connection, bus = camera.busNumber, address = camera.address] {
            const int found = connection->find(bus, address);
            return found < 0 ? found : connection->open();
        });
    noteOpened(m_opening.wait(bound).value_or(UVC_ERROR_TIMEOUT));
    return m_openResult;
}

void UvcCamera::tellOpenFailure(int error)
{
    m_worker.post([connection = m_connection, error] {
        connection->tellOpenFailure(error);
        return UVC_SUCCESS;
    });
}

void UvcCamera::findExtensionUnit()
{
    m_extensionUnit = 0;
    if (!m_opened)
        return;
    const CameraProfile *row = CameraProfile::of(m_identity);
    const auto &code = (row ? *row : CAMERA_PROFILES[0]).extensionUnit;
    // A walk over what was parsed when the camera was opened; nothing crosses the bus.
    for (const uvc_extension_unit_t *unit = uvc_get_extension_units(m_connection->handle()); unit;
         unit = unit->next) {
        if (std::memcmp(unit->guidExtensionCode, code.data(), code.size()) == 0) {
            m_extensionUnit = unit->bUnitID;
            return;
        }
    }
}

bool UvcCamera::lacksExtensionUnit() const
{
    return m_opened && !m_connection->gone() && m_extensionUnit == 0;
}

StandardUnits UvcCamera::standardUnits() const
{
    return m_opened ? m_connection->units() : StandardUnits();
}

QSize UvcCamera::sizeFor(QSize size) const
{
    const auto choice = choiceFor(size, ANY_RATE);
    return choice ? choice->size : size;
}

std::vector<QSize> UvcCamera::sizes() const
{
    return StreamFormats::sizes(offers(), LARGEST_SIZE);
}

void UvcCamera::startStreaming(QSize size, int framesPerSecond, FrameHandler handler,
                               const FrameMemory &memory)
{
    stopDelivery();
    m_stream.reset();
    if (!m_opened || m_connection->gone()) {
        qDebug("uvc_get_stream_ctrl_format_size() failed.\n");
        return;
    }
    m_wantedSize = size;
    const auto choice = choiceFor(size, framesPerSecond);
    if (choice)
        request(
            std::make_shared<UvcStream>(choice->size, std::move(handler), memory, choice->coding),
            choice);
    else
        request(std::make_shared<UvcStream>(size, std::move(handler), memory), {});
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
    request(nullptr, {});
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
    return send(m_extensionUnit, std::move(controls));
}

BoundedWorker::Ticket UvcCamera::send(std::uint8_t unit,
                                      std::vector<std::shared_ptr<ControlRequest>> controls)
{
    return m_worker.post([connection = m_connection, unit, controls = std::move(controls)] {
        int result = UVC_SUCCESS;
        for (const std::shared_ptr<ControlRequest> &control : controls) {
            if (control->answered)
                continue;
            result = control->result = connection->control(unit, *control);
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

void UvcCamera::report(CameraLink &link) const
{
    const qint64 now = captureMicroseconds();
    link.openResult = m_openResult;
    link.identity = m_identity;
    link.busNumber = m_connection->busNumber();
    link.address = m_connection->address();
    link.gone = m_connection->gone();
    link.streamWanted = streaming();
    link.streamPending = m_streaming.open();
    link.streamResult = m_connection->streamResult();
    if (!m_stream)
        return;
    link.size = m_stream->size();
    link.wantedSize = m_wantedSize;
    link.frames = m_stream->frames();
    link.lost = m_stream->lost();
    link.sinceRequestMs = (now - m_requestedUs) / 1000;
    link.sinceFrameMs = (now - std::max(m_requestedUs, m_stream->lastFrameMicroseconds())) / 1000;
}

void UvcCamera::noteOpened(int result)
{
    m_openResult = result;
    m_opened = result >= 0;
}

std::vector<StreamFormats::Offer> UvcCamera::offers() const
{
    if (!m_opened)
        return {};
    std::vector<StreamFormats::Offer> offers = m_connection->offers();
    if (CameraProfile::of(m_identity))
        offers.erase(std::remove_if(offers.begin(), offers.end(),
                                    [](const StreamFormats::Offer &offer) {
                                        return offer.coding != StreamFormats::Coding::MotionJpeg;
                                    }),
                     offers.end());
    return offers;
}

std::optional<StreamFormats::Choice> UvcCamera::choiceFor(QSize size, int framesPerSecond) const
{
    return StreamFormats::choose(offers(), size, framesPerSecond,
                                 CameraProfile::of(m_identity) ? StreamFormats::Sizes::Exact
                                                               : StreamFormats::Sizes::Nearest);
}

void UvcCamera::request(std::shared_ptr<UvcStream> stream,
                        const std::optional<StreamFormats::Choice> &choice)
{
    m_stream = stream;
    if (m_connection->request({std::move(stream), choice}))
        m_streaming = m_worker.post([connection = m_connection] { return connection->stream(); },
                                    BoundedWorker::Place::First);
    m_requestedUs = captureMicroseconds();
    m_connection->hurry();
}
