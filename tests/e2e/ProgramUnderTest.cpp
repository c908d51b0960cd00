#include "tests/e2e/ProgramUnderTest.h"

#include "tests/Timeout.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <QtTest>

#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iterator>

namespace
{

/// A connection to the X server for as long as it lives.
class Display
{
public:
    Display() = default;
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    xcb_connection_t *connection() const { return m_connection; }

    xcb_window_t root() const
    {
        return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }

    xcb_atom_t atom(const QByteArray &name) const
    {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData()),
            nullptr);
        const xcb_atom_t value = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
        std::free(reply);
        return value;
    }

    /// The 32-bit values of a property, none if there is no such property or window.
    QVector<quint32> property(xcb_window_t window, const QByteArray &name) const
    {
        xcb_get_property_reply_t *reply =
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, window, atom(name),
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
                                   nullptr);
        QVector<quint32> values;
        if (reply && reply->format == 32) {
            const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply));
            std::copy_n(first, reply->value_len, std::back_inserter(values));
        }
        std::free(reply);
        return values;
    }

private:
    xcb_connection_t *m_connection = xcb_connect(nullptr, nullptr);
};

/// The windows of that process that the window manager looks after, the main window first.
QVector<xcb_window_t> managedWindows(qint64 pid)
{
    const Display display;
    QVector<xcb_window_t> windows;
    for (const xcb_window_t window : display.property(display.root(), "_NET_CLIENT_LIST")) {
        if (display.property(window, "_NET_WM_PID").value(0) == pid)
            windows.append(window);
    }
    return windows;
}

/// In pixels; empty for a window that is gone.
QSize sizeOf(xcb_window_t window)
{
    const Display display;
    xcb_get_geometry_reply_t *reply = xcb_get_geometry_reply(
        display.connection(), xcb_get_geometry(display.connection(), window), nullptr);
    const QSize size = reply ? QSize(reply->width, reply->height) : QSize();
    std::free(reply);
    return size;
}

/// Tells the window manager what its close button would: _NET_CLOSE_WINDOW at the root window.
void askToClose(xcb_window_t window)
{
    const Display display;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = display.atom("_NET_CLOSE_WINDOW");
    xcb_send_event(display.connection(), 0, display.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    // One answer awaited, so that the server has taken the event before the connection goes.
    std::free(xcb_get_input_focus_reply(display.connection(),
                                        xcb_get_input_focus(display.connection()), nullptr));
}

bool drive(const QStringList &arguments)
{
    QProcess tool;
    // The tool must not see the camera's file system.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    tool.setProcessEnvironment(environment);
    tool.start("xdotool", arguments);
    return tool.waitForFinished(TIMEOUT_MS) && tool.exitCode() == 0;
}

} // namespace

ProgramUnderTest::ProgramUnderTest()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

ProgramUnderTest::~ProgramUnderTest()
{
    if (running()) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

bool ProgramUnderTest::start(const QProcessEnvironment &environment, const QStringList &arguments,
                             const QStringList &before)
{
    const QStringList command = before + QStringList{PROGRAM_FILE} + arguments;
    m_process.setProcessEnvironment(environment);
    m_process.start(command.first(), command.mid(1));
    return m_process.waitForStarted(TIMEOUT_MS);
}

WId ProgramUnderTest::waitForWindow()
{
    const bool settled = QTest::qWaitFor(
        [this] {
            m_window = managedWindows(m_process.processId()).value(0);
            return m_window != 0 || !running();
        },
        TIMEOUT_MS);
    return settled ? m_window : 0;
}

void ProgramUnderTest::pressKeys(const QString &keys)
{
    (void)drive({"windowactivate", "--sync", QString::number(m_window), "key", keys});
}

bool ProgramUnderTest::click(QPoint point)
{
    const QString window = QString::number(m_window);
    return drive({"windowactivate", "--sync", window, "mousemove", "--window", window,
                  QString::number(point.x()), QString::number(point.y()), "click", "1"});
}

bool ProgramUnderTest::acceptSettings()
{
    const WId popup = openSettings();
    return popup != 0 && closeSettings(popup);
}

bool ProgramUnderTest::chooseSeries()
{
    constexpr QPoint CAPTURE_BOX(200, 140);
    const WId popup = openSettings();
    // A turn of the wheel chooses the second of two.
    return popup != 0 &&
           drive({"mousemove", "--window", QString::number(popup), QString::number(CAPTURE_BOX.x()),
                  QString::number(CAPTURE_BOX.y()), "click", "5"}) &&
           closeSettings(popup);
}

WId ProgramUnderTest::openSettings()
{
    constexpr QPoint SETTINGS_BUTTON(72, 663);
    if (!click(SETTINGS_BUTTON) || !waitForWindows(2))
        return 0;
    return managedWindows(m_process.processId()).last();
}

bool ProgramUnderTest::closeSettings(WId popup)
{
    // From the middle of the pop-up's lower edge.
    constexpr QPoint OK_BUTTON(48, -24);
    const QSize size = sizeOf(xcb_window_t(popup));
    return drive({"mousemove", "--window", QString::number(popup),
                  QString::number(size.width() / 2 + OK_BUTTON.x()),
                  QString::number(size.height() + OK_BUTTON.y()), "click", "1"}) &&
           waitForWindows(1);
}

bool ProgramUnderTest::acceptDialog()
{
    if (!waitForWindows(2))
        return false;
    const xcb_window_t dialog = managedWindows(m_process.processId()).last();
    return drive({"windowactivate", "--sync", QString::number(dialog), "key", "Return"}) &&
           waitForWindows(1);
}

bool ProgramUnderTest::answerDialog()
{
    const QVector<xcb_window_t> windows = managedWindows(m_process.processId());
    return windows.size() > 1 &&
           drive({"windowactivate", "--sync", QString::number(windows.last()), "key", "Return"});
}

bool ProgramUnderTest::waitForWindows(int count)
{
    return QTest::qWaitFor(
        [this, count] { return managedWindows(m_process.processId()).size() == count; },
        TIMEOUT_MS);
}

bool ProgramUnderTest::closeAndWait()
{
    askToClose(static_cast<xcb_window_t>(m_window));
    return waitForEnd();
}

bool ProgramUnderTest::waitForEnd()
{
    return QTest::qWaitFor([this] { return !running(); }, TIMEOUT_MS) &&
           m_process.exitStatus() == QProcess::NormalExit;
}

void ProgramUnderTest::sendSignal(int number) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

bool ProgramUnderTest::waitForOutput(const QByteArray &text)
{
    (void)QTest::qWaitFor([this, &text] { return output().contains(text) || !running(); },
                          TIMEOUT_MS);
    return output().contains(text);
}

qint64 ProgramUnderTest::processId() const
{
    return m_process.processId();
}

int ProgramUnderTest::exitCode() const
{
    return m_process.exitCode();
}

bool ProgramUnderTest::running() const
{
    return m_process.state() != QProcess::NotRunning;
}

QByteArray ProgramUnderTest::mappedFiles() const
{
    QFile maps(QString("/proc/%1/maps").arg(m_process.processId()));
    return maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
}

QByteArray ProgramUnderTest::output()
{
    m_output += m_process.readAll();
    return m_output;
}

bool ProgramUnderTest::waitForWindowManager()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < TIMEOUT_MS) {
        QWidget probe;
        probe.show();
        const qint64 pid = QCoreApplication::applicationPid();
        if (QTest::qWaitFor([pid] { return !managedWindows(pid).isEmpty(); }, 2000))
            return true;
    }
    return false;
}

QImage ProgramUnderTest::screenshot()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}
