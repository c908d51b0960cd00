#include "app/Platform.h"
#include "app/ScreenScale.h"

#include <QtTest>

#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QWidget>

#include <cstdio>
#include <xcb/xcb.h>

namespace
{

/// Tells every program that starts from now on the dots an inch, as a desktop does.
void setDesktopDpi(const QByteArray &dpi)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const QByteArray resources = "Xft.dpi:\t" + dpi + "\n";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, XCB_ATOM_RESOURCE_MANAGER,
                        XCB_ATOM_STRING, 8, quint32(resources.size()), resources.constData());
    xcb_flush(connection);
    // The answer comes after the property is set.
    free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

/// What the program does before its window, and a window as large as its smallest: prints the scale
/// and the size of the window with its frame in device pixels.
int showWindow(int argc, char **argv)
{
    preparePlatform();
    QApplication application(argc, argv);
    fitScaleToScreen();
    QWidget window;
    window.setMinimumSize(800, 768);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window) ||
        !QTest::qWaitFor([&] { return window.frameGeometry() != window.geometry(); }))
        return 1;
    const double ratio = window.devicePixelRatioF();
    std::printf("%g %d %d %d\n", ratio, qRound(window.frameGeometry().width() * ratio),
                qRound(window.frameGeometry().height() * ratio),
                QFontInfo(QFont("Arial", 12)).pixelSize());
    return 0;
}

} // namespace

/// The scale on a real X server of 1920 x 1080 with a window manager; each program of its own.
class ScreenScaleTest : public QObject
{
    Q_OBJECT

private slots:
    void theWindowFitsAtEveryDpi_data();
    void theWindowFitsAtEveryDpi();
    void theEnvironmentStands();

private:
    static QStringList answers(const QProcessEnvironment &environment);
};

QStringList ScreenScaleTest::answers(const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {"--show-window"});
    if (!process.waitForFinished() || process.exitCode() != 0)
        return {};
    return QString::fromLatin1(process.readAllStandardOutput()).trimmed().split(' ');
}

void ScreenScaleTest::theWindowFitsAtEveryDpi_data()
{
    QTest::addColumn<QByteArray>("dpi");
    QTest::addColumn<double>("scale");
    QTest::newRow("96") << QByteArray("96") << 1.0;
    QTest::newRow("120") << QByteArray("120") << 1.25;
    QTest::newRow("144") << QByteArray("144") << 1.3125;
    QTest::newRow("168") << QByteArray("168") << 1.3125;
    QTest::newRow("192") << QByteArray("192") << 1.3125;
    QTest::newRow("absurd") << QByteArray("960") << 1.0;
    QTest::newRow("few") << QByteArray("48") << 1.0;
}

void ScreenScaleTest::theWindowFitsAtEveryDpi()
{
    QFETCH(QByteArray, dpi);
    QFETCH(double, scale);
    setDesktopDpi(dpi);
    const QStringList shown = answers(QProcessEnvironment::systemEnvironment());
    QCOMPARE(shown.size(), 4);
    QCOMPARE(shown[0].toDouble(), scale);
    QVERIFY2(shown[1].toInt() <= 1920, qPrintable(shown[1]));
    QVERIFY2(shown[2].toInt() <= 1080, qPrintable(shown[2]));
    // Letters grow with the layout, not beside it: 12 points are 16 units of it.
    QCOMPARE(shown[3].toInt(), 16);
}

void ScreenScaleTest::theEnvironmentStands()
{
    setDesktopDpi("144");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCREEN_SCALE_FACTORS", "1.75");
    QCOMPARE(answers(environment).value(0).toDouble(), 1.75);
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--show-window") == 0)
        return showWindow(argc, argv);
    QCoreApplication application(argc, argv);
    ScreenScaleTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_screen_scale.moc"
