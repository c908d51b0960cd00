#pragma once

#include <cstdint>
#include <memory>
#include <vector>

struct libusb_device_handle;

/// What a control transfer to the camera asks for.
struct ControlRequest {
    bool read = false;
    std::uint8_t selector = 0;
    /// The bytes to write; for a read, as many bytes as are to be read.
    std::vector<std::uint8_t> data;
    /// Whether the camera has answered the request, even with an error. For the sending thread
    /// only.
    bool answered = false;
    /// What a read asks for: GET_CUR, GET_MIN and so on.
    std::uint8_t question = 0x81;
    /// What run() gave for it. Once the request has been sent and answered.
    int result = 0;
};

/// Control transfers to one unit of the camera that end in bounded time: libuvc's own wait for the
/// answer for ever.
///
/// run() belongs to one thread and needs another that handles the library's events; libuvc has one
/// from opening the camera on. hurry() may be called on any thread.
class ControlTransfer
{
public:
    ControlTransfer();
    ~ControlTransfer();
    ControlTransfer(const ControlTransfer &) = delete;
    ControlTransfer &operator=(const ControlTransfer &) = delete;

    /// `unit`: the addressed unit. The bytes transferred, which a read leaves in `request.data`, or
    /// libusb's error; a transfer that is not answered within a second and a half is taken back and
    /// gives LIBUSB_ERROR_TIMEOUT.
    int run(libusb_device_handle *handle, std::uint8_t unit, ControlRequest &request);

    /// Something else waits for the bus: the transfer that is under way gets a short time limit.
    void hurry();

private:
    struct Pending;
    struct Shared;

    int await(const std::shared_ptr<Pending> &pending) const;

    std::shared_ptr<Shared> m_shared;
};
