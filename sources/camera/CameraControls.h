#pragma once

#include "sources/threads/BoundedWorker.h"

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class UvcCamera;
struct ControlRequest;

/// The two registers of the camera's parameters, for a caller that must not be held up: the
/// register with the number of the parameter, and the one with its value.
///
/// While the camera answers in time, every call is one transfer and gives its result. A camera that
/// does not is not waited for: what is written follows in order when it answers again, each value
/// together with the number of its parameter, and what is read is the value that was read last.
/// GUI thread.
class CameraControls
{
public:
    explicit CameraControls(UvcCamera &camera);
    /// For a camera that replaces another one: as long as a value is not known of it, the one known
    /// of the camera before is used.
    CameraControls(UvcCamera &camera, const CameraControls &before);

    /// Writes / reads `length` bytes: the bytes transferred, or an error of libuvc, which is
    /// UVC_ERROR_TIMEOUT for what is still on its way. `data` is written by a successful read only.
    int write(std::uint8_t selector, const void *data, std::size_t length);
    int read(std::uint8_t selector, void *data, std::size_t length);

private:
    using Bytes = std::vector<std::uint8_t>;
    using Control = std::shared_ptr<ControlRequest>;

    /// A read that was not answered in time.
    struct LateRead {
        BoundedWorker::Ticket ticket;
        Control control;
    };
    struct Value {
        Bytes known;
        LateRead late;
    };

    [[nodiscard]] static Control numberControl(const Bytes &number);
    int selectParameter(const Bytes &number);
    [[nodiscard]] std::vector<Control> withParameter(Control control) const;
    static void copyKnown(const Value &value, void *data, std::size_t length);
    int takeAnswer(Value &value, int result, const Bytes &answer, void *data, std::size_t length);
    static int lastKnown(const Value &value, void *data, std::size_t length);

    UvcCamera &m_camera;
    Bytes m_parameter;
    /// Writes the number of that parameter, before any value.
    Control m_number;
    /// By parameter and selector.
    std::map<std::pair<Bytes, std::uint8_t>, Value> m_values;
};
