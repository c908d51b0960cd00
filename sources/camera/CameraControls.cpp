#include "sources/camera/CameraControls.h"

#include "sources/camera/CameraParameters.h"
#include "sources/camera/ControlTransfer.h"
#include "sources/camera/UvcCamera.h"

#include <libuvc/libuvc.h>

#include <algorithm>
#include <optional>

CameraControls::CameraControls(UvcCamera &camera)
    : m_camera(camera)
{
}

CameraControls::CameraControls(UvcCamera &camera, const CameraControls &before)
    : m_camera(camera)
    , m_parameter(before.m_parameter)
    , m_number(before.m_number ? numberControl(m_parameter) : nullptr)
{
    for (const auto &[place, value] : before.m_values)
        m_values[place].known = value.known;
}

int CameraControls::write(std::uint8_t selector, const void *data, std::size_t length)
{
    if (const int error = m_camera.controlError())
        return error;
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    const Bytes value(bytes, bytes + length);
    if (selector == CameraParameter::ID_SELECTOR)
        return selectParameter(value);
    const auto control = std::make_shared<ControlRequest>(ControlRequest{false, selector, value});
    return m_camera.wait(m_camera.send(withParameter(control))).value_or(UVC_ERROR_TIMEOUT);
}

int CameraControls::read(std::uint8_t selector, void *data, std::size_t length)
{
    if (const int error = m_camera.controlError())
        return error;
    Value &value = m_values[{m_parameter, selector}];
    if (value.late.ticket.open())
        return lastKnown(value, data, length);
    if (const std::optional<int> result = std::exchange(value.late.ticket, {}).result())
        takeAnswer(value, *result, value.late.control->data, nullptr, 0);

    const auto control =
        std::make_shared<ControlRequest>(ControlRequest{true, selector, Bytes(length)});
    const BoundedWorker::Ticket ticket = m_camera.send(withParameter(control));
    if (const std::optional<int> result = m_camera.wait(ticket))
        return takeAnswer(value, *result, control->data, data, length);
    value.late = {ticket, control};
    return lastKnown(value, data, length);
}

CameraControls::Control CameraControls::numberControl(const Bytes &number)
{
    return std::make_shared<ControlRequest>(
        ControlRequest{false, static_cast<std::uint8_t>(CameraParameter::ID_SELECTOR), number});
}

int CameraControls::selectParameter(const Bytes &number)
{
    m_parameter = number;
    m_number = numberControl(number);
    if (m_camera.late())
        return UVC_ERROR_TIMEOUT; // goes with its value
    return m_camera.wait(m_camera.send({m_number})).value_or(UVC_ERROR_TIMEOUT);
}

std::vector<CameraControls::Control> CameraControls::withParameter(Control control) const
{
    // A camera that refuses the number still gets the value; one that has not answered it must not,
    // as the value would go to another parameter.
    if (!m_number)
        return {std::move(control)};
    return {m_number, std::move(control)};
}

void CameraControls::copyKnown(const Value &value, void *data, std::size_t length)
{
    if (data)
        std::copy_n(value.known.begin(), std::min(length, value.known.size()),
                    static_cast<std::uint8_t *>(data));
}

int CameraControls::takeAnswer(Value &value, int result, const Bytes &answer, void *data,
                               std::size_t length)
{
    if (result == UVC_ERROR_TIMEOUT)
        return lastKnown(value, data, length);
    const auto bytes = static_cast<std::size_t>(std::max(result, 0));
    value.known.assign(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(
                                                            std::min(bytes, answer.size())));
    copyKnown(value, data, length);
    return result;
}

int CameraControls::lastKnown(const Value &value, void *data, std::size_t length)
{
    if (value.known.empty())
        return UVC_ERROR_TIMEOUT;
    copyKnown(value, data, length);
    return static_cast<int>(value.known.size());
}
