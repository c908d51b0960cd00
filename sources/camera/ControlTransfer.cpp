#include "sources/camera/ControlTransfer.h"

#include <libusb.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace
{

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds ANSWER_TIMEOUT{1500};
/// The time limit of a transfer that others wait for: many times what a working camera takes.
constexpr milliseconds HURRIED_TIMEOUT{200};
/// The time limit for the library to return a transfer that was cancelled.
constexpr milliseconds TAKE_BACK_TIMEOUT{300};

constexpr std::uint8_t SET_CUR = 0x01;
constexpr std::uint8_t CLASS_REQUEST =
    static_cast<std::uint8_t>(LIBUSB_REQUEST_TYPE_CLASS) | LIBUSB_RECIPIENT_INTERFACE;

/// The number of the camera's control interface, 0 if it cannot be told.
std::uint8_t controlInterface(libusb_device_handle *handle)
{
    constexpr std::uint8_t CONTROL_SUBCLASS = 1;
    libusb_config_descriptor *configuration = nullptr;
    if (libusb_get_active_config_descriptor(libusb_get_device(handle), &configuration) != 0)
        return 0;
    std::uint8_t number = 0;
    for (int i = configuration->bNumInterfaces - 1; i >= 0; --i) {
        const libusb_interface &interface = configuration->interface[i];
        if (interface.num_altsetting > 0 &&
            interface.altsetting[0].bInterfaceClass == LIBUSB_CLASS_VIDEO &&
            interface.altsetting[0].bInterfaceSubClass == CONTROL_SUBCLASS)
            number = interface.altsetting[0].bInterfaceNumber;
    }
    libusb_free_config_descriptor(configuration);
    return number;
}

int errorOf(libusb_transfer_status status)
{
    switch (status) {
    case LIBUSB_TRANSFER_TIMED_OUT:
    case LIBUSB_TRANSFER_CANCELLED:
        return LIBUSB_ERROR_TIMEOUT;
    case LIBUSB_TRANSFER_STALL:
        return LIBUSB_ERROR_PIPE;
    case LIBUSB_TRANSFER_NO_DEVICE:
        return LIBUSB_ERROR_NO_DEVICE;
    case LIBUSB_TRANSFER_OVERFLOW:
        return LIBUSB_ERROR_OVERFLOW;
    default:
        return LIBUSB_ERROR_IO;
    }
}

} // namespace

/// Lives as long as the calls of hurry() and run() that use it.
struct ControlTransfer::Shared {
    /// Guards the members below, and `completed` of each transfer.
    std::mutex mutex;
    std::condition_variable changed;
    bool hurried = false;
};

/// A transfer on its way. It belongs to the library until ended() is called.
struct ControlTransfer::Pending {
    explicit Pending(std::shared_ptr<Shared> owner, std::size_t length)
        : shared(std::move(owner))
        , buffer(LIBUSB_CONTROL_SETUP_SIZE + length)
        , transfer(libusb_alloc_transfer(0))
    {
    }
    ~Pending() { libusb_free_transfer(transfer); }
    Pending(const Pending &) = delete;
    Pending &operator=(const Pending &) = delete;

    static void LIBUSB_CALL ended(libusb_transfer *transfer)
    {
        auto *pending = static_cast<Pending *>(transfer->user_data);
        (void)pending->prepared.load(std::memory_order_acquire);
        const std::shared_ptr<Pending> last = std::move(pending->self);
        const std::lock_guard lock(last->shared->mutex);
        last->completed = true;
        last->shared->changed.notify_all();
    }

    std::shared_ptr<Shared> shared;
    std::vector<std::uint8_t> buffer;
    libusb_transfer *transfer;
    bool completed = false;
    /// Keeps it alive for the library.
    std::shared_ptr<Pending> self;
    /// Hands the members over to the library's thread.
    std::atomic<bool> prepared{false};
};

ControlTransfer::ControlTransfer()
    : m_shared(std::make_shared<Shared>())
{
}

ControlTransfer::~ControlTransfer() = default;

int ControlTransfer::run(libusb_device_handle *handle, std::uint8_t unit, ControlRequest &request)
{
    const auto pending = std::make_shared<Pending>(m_shared, request.data.size());
    if (!pending->transfer)
        return LIBUSB_ERROR_NO_MEM;
    std::uint8_t *payload = pending->buffer.data() + LIBUSB_CONTROL_SETUP_SIZE;
    const auto direction = request.read ? LIBUSB_ENDPOINT_IN : LIBUSB_ENDPOINT_OUT;
    libusb_fill_control_setup(pending->buffer.data(),
                              static_cast<std::uint8_t>(CLASS_REQUEST | direction),
                              request.read ? request.question : SET_CUR,
                              static_cast<std::uint16_t>(request.selector << 8),
                              static_cast<std::uint16_t>(unit << 8 | controlInterface(handle)),
                              static_cast<std::uint16_t>(request.data.size()));
    std::copy(request.data.begin(), request.data.end(), payload);
    libusb_fill_control_transfer(pending->transfer, handle, pending->buffer.data(), &Pending::ended,
                                 pending.get(), 0);
    pending->self = pending;
    pending->prepared.store(true, std::memory_order_release);
    const int submitted = libusb_submit_transfer(pending->transfer);
    if (submitted < 0) {
        pending->self.reset();
        return submitted;
    }
    const int result = await(pending);
    if (result > 0 && request.read)
        std::copy_n(payload,
                    std::min<std::size_t>(request.data.size(), static_cast<std::size_t>(result)),
                    request.data.begin());
    return result;
}

int ControlTransfer::await(const std::shared_ptr<Pending> &pending) const
{
    const auto completed = [&pending] { return pending->completed; };
    const Clock::time_point start = Clock::now();
    std::unique_lock lock(m_shared->mutex);
    m_shared->hurried = false;
    m_shared->changed.wait_until(lock, start + ANSWER_TIMEOUT,
                                 [&] { return completed() || m_shared->hurried; });
    if (!completed() && m_shared->hurried)
        m_shared->changed.wait_until(lock, start + HURRIED_TIMEOUT, completed);
    if (!completed()) {
        lock.unlock();
        libusb_cancel_transfer(pending->transfer);
        lock.lock();
        // A transfer that is not returned belongs to the library for good.
        if (!m_shared->changed.wait_for(lock, TAKE_BACK_TIMEOUT, completed))
            return LIBUSB_ERROR_TIMEOUT;
    }
    const libusb_transfer *transfer = pending->transfer;
    return transfer->status == LIBUSB_TRANSFER_COMPLETED ? transfer->actual_length
                                                         : errorOf(transfer->status);
}

void ControlTransfer::hurry()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->hurried = true;
    m_shared->changed.notify_all();
}
