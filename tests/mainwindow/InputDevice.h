#pragma once

#include <QPoint>

/// A device of the display server's test driver: what is sent reaches programs as from hardware.
/// Each call returns when the server has taken the event. Points are screen pixels.
class InputDevice
{
public:
    /// The device whose socket has that name in the folder INPUT_SOCKETS.
    explicit InputDevice(const char *name);
    ~InputDevice();
    InputDevice(const InputDevice &) = delete;
    InputDevice &operator=(const InputDevice &) = delete;

    // A touch screen
    void press(unsigned finger, QPoint screenPoint);
    void slide(unsigned finger, QPoint screenPoint);
    void lift(unsigned finger, QPoint screenPoint);

    // A pen; pressures are 0 to 1.
    void come();
    void go();
    void move(QPoint screenPoint, double pressure);
    /// Button 1 is the tip.
    void down(int button, QPoint screenPoint, double pressure);
    void up(int button, QPoint screenPoint);

    // A mouse, which only knows how far it is moved.
    void pushTo(QPoint screenPoint);
    void holdButton();
    void letGo();

private:
    void touch(unsigned finger, unsigned type, QPoint screenPoint);
    void button(int number, bool pressed, QPoint screenPoint, double pressure);
    void mouseButton(bool pressed);
    template <typename Event>
    void send(Event event);

    int m_socket;
};
