#include "tests/mainwindow/InputDevice.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xorg/xf86-input-inputtest-protocol.h>

namespace
{

// As in the X Input protocol.
constexpr unsigned TOUCH_BEGIN = 18;
constexpr unsigned TOUCH_UPDATE = 19;
constexpr unsigned TOUCH_END = 20;
/// The axes of a device, and what the positions and the pressure of the driver go up to.
constexpr int X_AXIS = 0;
constexpr int Y_AXIS = 1;
constexpr int PRESSURE_AXIS = 4;
constexpr double FAR_END = 65535.0;
constexpr double FULL_PRESSURE = 2047.0;

void set(xf86ITValuatorData &data, int axis, double value)
{
    data.mask[axis / 8] = static_cast<std::uint8_t>(data.mask[axis / 8] | 1U << (axis % 8));
    data.valuators[axis] = value;
}

void setPoint(xf86ITValuatorData &data, QPoint screenPoint)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    set(data, X_AXIS, (screenPoint.x() + 0.5) * FAR_END / screen.width());
    set(data, Y_AXIS, (screenPoint.y() + 0.5) * FAR_END / screen.height());
}

} // namespace

InputDevice::InputDevice(const char *name)
    : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const QByteArray path = qgetenv("INPUT_SOCKETS") + '/' + name;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    if (connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        qFatal("%s: %s", path.constData(), strerror(errno));
    xf86ITEventClientVersion version{};
    version.header = {sizeof version, XF86IT_EVENT_CLIENT_VERSION};
    version.major = XF86IT_PROTOCOL_VERSION_MAJOR;
    version.minor = XF86IT_PROTOCOL_VERSION_MINOR;
    xf86ITResponseServerVersion answer;
    if (write(m_socket, &version, sizeof version) != sizeof version ||
        read(m_socket, &answer, sizeof answer) != sizeof answer)
        qFatal("%s does not answer", path.constData());
}

InputDevice::~InputDevice()
{
    close(m_socket);
}

template <typename Event>
void InputDevice::send(Event event)
{
    xf86ITEventWaitForSync wait{};
    wait.header = {sizeof wait, XF86IT_EVENT_WAIT_FOR_SYNC};
    xf86ITResponseSyncFinished answer;
    if (write(m_socket, &event, sizeof event) != sizeof event ||
        write(m_socket, &wait, sizeof wait) != sizeof wait ||
        read(m_socket, &answer, sizeof answer) != sizeof answer)
        qFatal("The input device does not answer");
}

void InputDevice::touch(unsigned finger, unsigned type, QPoint screenPoint)
{
    xf86ITEventTouch event{};
    event.header = {sizeof event, XF86IT_EVENT_TOUCH};
    event.touchid = finger;
    event.touch_type = type;
    setPoint(event.valuators, screenPoint);
    send(event);
}

void InputDevice::press(unsigned finger, QPoint screenPoint)
{
    touch(finger, TOUCH_BEGIN, screenPoint);
}

void InputDevice::slide(unsigned finger, QPoint screenPoint)
{
    touch(finger, TOUCH_UPDATE, screenPoint);
}

void InputDevice::lift(unsigned finger, QPoint screenPoint)
{
    touch(finger, TOUCH_END, screenPoint);
}

void InputDevice::come()
{
    xf86ITEventProximity event{};
    event.header = {sizeof event, XF86IT_EVENT_PROXIMITY};
    event.is_prox_in = 1;
    send(event);
}

void InputDevice::go()
{
    xf86ITEventProximity event{};
    event.header = {sizeof event, XF86IT_EVENT_PROXIMITY};
    send(event);
}

void InputDevice::move(QPoint screenPoint, double pressure)
{
    xf86ITEventMotion event{};
    event.header = {sizeof event, XF86IT_EVENT_MOTION};
    event.is_absolute = 1;
    setPoint(event.valuators, screenPoint);
    set(event.valuators, PRESSURE_AXIS, pressure * FULL_PRESSURE);
    send(event);
}

void InputDevice::button(int number, bool pressed, QPoint screenPoint, double pressure)
{
    xf86ITEventButton event{};
    event.header = {sizeof event, XF86IT_EVENT_BUTTON};
    event.is_absolute = 1;
    event.button = number;
    event.is_press = pressed ? 1 : 0;
    setPoint(event.valuators, screenPoint);
    set(event.valuators, PRESSURE_AXIS, pressure * FULL_PRESSURE);
    send(event);
}

void InputDevice::down(int number, QPoint screenPoint, double pressure)
{
    button(number, true, screenPoint, pressure);
}

void InputDevice::up(int number, QPoint screenPoint)
{
    button(number, false, screenPoint, 0.0);
}

void InputDevice::pushTo(QPoint screenPoint)
{
    const QPoint way = screenPoint - QCursor::pos();
    xf86ITEventMotion event{};
    event.header = {sizeof event, XF86IT_EVENT_MOTION};
    set(event.valuators, X_AXIS, way.x());
    set(event.valuators, Y_AXIS, way.y());
    send(event);
}

void InputDevice::mouseButton(bool pressed)
{
    xf86ITEventButton event{};
    event.header = {sizeof event, XF86IT_EVENT_BUTTON};
    event.button = 1;
    event.is_press = pressed ? 1 : 0;
    send(event);
}

void InputDevice::holdButton()
{
    mouseButton(true);
}

void InputDevice::letGo()
{
    mouseButton(false);
}
