#include "app/Platform.h"
#include "app/ScreenScale.h"

#include <QtTest>

#include <QApplication>
#include <QProcess>
#include <QWidget>

#include <cstdio>
#include <unistd.h>
#include <xcb/xcb.h>

namespace
{

constexpr int DESKTOP_DPI = 96;

/// What tells programs of a desktop its settings, and when they change.
class Settings
{
public:
    ~Settings() { xcb_disconnect(m_connection); }

    bool start(int dpi)
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        tell(dpi);
        xcb_set_selection_owner(m_connection, m_window, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
        return xcb_flush(m_connection) > 0;
    }

    void tell(int dpi)
    {
        ++m_serial;
        // Byte order and three bytes without a meaning, serial, one setting: a number, its name.
        QByteArray data(4, 0);
        append(data, m_serial);
        append(data, 1);
        const QByteArray name("Xft/DPI");
        data.append('\0')
            .append('\0')
            .append(char(name.size()))
            .append('\0')
            .append(name)
            .append('\0');
        append(data, m_serial);
        append(data, quint32(dpi) * 1024);
        const xcb_atom_t property = atom("_XSETTINGS_SETTINGS");
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, property, 8,
                            quint32(data.size()), data.constData());
        xcb_flush(m_connection);
    }

private:
    static void append(QByteArray &data, quint32 number)
    {
        data.append(reinterpret_cast<const char *>(&number), sizeof number);
    }

    xcb_atom_t atom(const char *name)
    {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, quint16(strlen(name)), name), nullptr);
        const xcb_atom_t found = reply->atom;
        free(reply);
        return found;
    }

    xcb_connection_t *m_connection = xcb_connect(nullptr, nullptr);
    xcb_window_t m_window = 0;
    quint32 m_serial = 0;
};

bool xrandr(const QStringList &arguments)
{
    // Who asks for the outputs has the server tell everybody of them.
    return QProcess::execute("xrandr", QStringList{"--output", "DUMMY1"} + arguments) == 0 &&
           QProcess::execute("sh", {"-c", "xrandr >/dev/null"}) == 0;
}

bool plug()
{
    return xrandr({"--mode", "1024x768", "--right-of", "DUMMY0"});
}

/// A window of the program's scale, which prints that scale whenever a line comes: as whole
/// 65536ths, so that nothing is rounded.
int showWindow(int argc, char **argv)
{
    preparePlatform();
    QApplication application(argc, argv);
    fitScaleToScreen();
    QWidget window;
    window.resize(800, 768);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;
    QSocketNotifier asked(0, QSocketNotifier::Read);
    QObject::connect(&asked, &QSocketNotifier::activated, &window, [&window] {
        char question = 0;
        if (::read(0, &question, 1) != 1)
            QApplication::quit();
        std::printf("%d %d\n", qRound(window.devicePixelRatioF() * 65536),
                    int(QGuiApplication::screens().size()));
        std::fflush(stdout);
    });
    return QApplication::exec();
}

/// A process that shows such a window.
class Shown
{
public:
    Shown()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {"--show-window"});
    }

    ~Shown()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    /// The scale in 65536ths, once that many screens are known.
    int scale(int screens)
    {
        QElapsedTimer clock;
        clock.start();
        while (!clock.hasExpired(30000)) {
            m_process.write("?");
            if (!m_process.waitForReadyRead())
                return 0;
            const QList<QByteArray> answer = m_process.readLine().trimmed().split(' ');
            if (answer.value(1).toInt() == screens)
                return answer[0].toInt();
            QTest::qWait(50);
        }
        return 0;
    }

private:
    QProcess m_process;
};

} // namespace

/// The scale while screens are plugged and pulled.
class PluggedScreenScaleTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void theScaleStaysWhenAScreenIsPlugged();
    void theScaleFollowsTheDesktop();
};

void PluggedScreenScaleTest::initTestCase()
{
    // After a screen has come and gone, the first one has a millimetre less.
    QCOMPARE(QProcess::execute("xrandr", {"--addmode", "DUMMY1", "1024x768"}), 0);
    QVERIFY(plug());
    QVERIFY(xrandr({"--off"}));
}

void PluggedScreenScaleTest::cleanup()
{
    QVERIFY(xrandr({"--off"}));
}

void PluggedScreenScaleTest::theScaleStaysWhenAScreenIsPlugged()
{
    Shown window;
    QCOMPARE(window.scale(1), 65536);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(plug());
        QCOMPARE(window.scale(2), 65536);
        QVERIFY(xrandr({"--off"}));
        QCOMPARE(window.scale(1), 65536);
    }
}

void PluggedScreenScaleTest::theScaleFollowsTheDesktop()
{
    Settings settings;
    QVERIFY(settings.start(DESKTOP_DPI));
    Shown window;
    QCOMPARE(window.scale(1), 65536);
    settings.tell(2 * DESKTOP_DPI);
    QTRY_COMPARE_WITH_TIMEOUT(window.scale(1), 2 * 65536, 30000);
    QVERIFY(plug());
    QCOMPARE(window.scale(2), 2 * 65536);
    QVERIFY(xrandr({"--off"}));
    settings.tell(DESKTOP_DPI);
    QTRY_COMPARE_WITH_TIMEOUT(window.scale(1), 65536, 30000);
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--show-window") == 0)
        return showWindow(argc, argv);
    QCoreApplication application(argc, argv);
    PluggedScreenScaleTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_plugged_screen_scale.moc"
