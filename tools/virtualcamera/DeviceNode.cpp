#include "tools/virtualcamera/DeviceNode.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

bool DeviceNode::create(const std::string &path, bool denied)
{
    remove();
    m_path = path;
    if (denied) {
        const int file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0);
        if (file < 0)
            return false;
        ::close(file);
        return ::chmod(path.c_str(), 0) == 0;
    }
    char slaveName[128] = {};
    if (::openpty(&m_master, &m_slave, slaveName, nullptr, nullptr) != 0)
        return false;
    ::fcntl(m_master, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_slave, F_SETFD, FD_CLOEXEC);
    termios settings{};
    ::tcgetattr(m_slave, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(m_slave, TCSANOW, &settings);
    m_ready = true;
    setReady(false);
    return ::symlink(slaveName, path.c_str()) == 0;
}

void DeviceNode::setReady(bool ready)
{
    if (m_slave < 0 || m_ready == ready)
        return;
    m_ready = ready;
    ::tcflow(m_slave, ready ? TCOON : TCOOFF);
}

void DeviceNode::hangUp()
{
    for (int *end : {&m_master, &m_slave}) {
        if (*end >= 0)
            ::close(std::exchange(*end, -1));
    }
}

void DeviceNode::remove()
{
    hangUp();
    if (!m_path.empty())
        ::unlink(std::exchange(m_path, {}).c_str());
}
