#pragma once

#include <string>

/// The node under /dev/bus/usb that the program opens: a link to the slave of a pseudo-terminal.
///
/// A regular file is always ready for writing, and that is what the USB library waits for, so it
/// would spin. The terminal's flow control switches readiness on and off, and closing its master is
/// seen as a hang-up, as at a real unplug. Not thread-safe.
class DeviceNode
{
public:
    DeviceNode() = default;
    ~DeviceNode() { remove(); }
    DeviceNode(const DeviceNode &) = delete;
    DeviceNode &operator=(const DeviceNode &) = delete;

    /// Puts the node at `path`; with `denied` it is a file of mode 000 that nobody may open.
    [[nodiscard]] bool create(const std::string &path, bool denied);
    /// Whether poll() reports finished transfers.
    void setReady(bool ready);
    void hangUp();
    void remove();

private:
    std::string m_path;
    int m_master = -1;
    int m_slave = -1;
    bool m_ready = false;
};
