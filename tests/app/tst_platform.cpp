#include "app/Platform.h"

#include "tests/Allocator.h"
#include "tests/TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <cstdlib>
#include <limits>
#include <malloc.h>

class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void choosesWhereNothingIsChosen();
    void triesNoCompositorThatCannotBeReached();
    void leavesTheUsersChoice();
    void drawsSharpOnSharpScreens();
    void drawsAtTheDesktopsScaleUnlessTheScreenIsTooSmall_data();
    void drawsAtTheDesktopsScaleUnlessTheScreenIsTooSmall();
    void theWindowAndItsTitleBarAlwaysFit();
    void aScaleOfTheEnvironmentStands_data();
    void aScaleOfTheEnvironmentStands();
    void onlyScalesThatAreNumbersStandForSeveralScreens_data();
    void onlyScalesThatAreNumbersStandForSeveralScreens();
    void largeBlocksGoBackToTheSystem();
};

void PlatformTest::init()
{
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("QT_XCB_GL_INTEGRATION");
    qunsetenv("QT_SCALE_FACTOR_ROUNDING_POLICY");
}

void PlatformTest::choosesWhereNothingIsChosen()
{
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb;wayland"));
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("none"));
    QCOMPARE(qgetenv("QT_SCALE_FACTOR_ROUNDING_POLICY"), QByteArray("PassThrough"));
}

void PlatformTest::triesNoCompositorThatCannotBeReached()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb"));
    qunsetenv("QT_QPA_PLATFORM");
    qputenv("WAYLAND_DISPLAY", "/run/user/1000/wayland-0");
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb;wayland"));
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("XDG_RUNTIME_DIR", folder);
}

void PlatformTest::leavesTheUsersChoice()
{
    qputenv("QT_QPA_PLATFORM", "wayland");
    qputenv("QT_XCB_GL_INTEGRATION", "xcb_egl");
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("wayland"));
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("xcb_egl"));
}

void PlatformTest::drawsSharpOnSharpScreens()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    preparePlatform();
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
}

void PlatformTest::drawsAtTheDesktopsScaleUnlessTheScreenIsTooSmall_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<QSize>("freeArea");
    QTest::addColumn<double>("scale");
    const QSize fullHd(1920, 1080);
    const QSize fourK(3840, 2160);
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("96 dpi") << 96.0 << fullHd << 1.0;
    QTest::newRow("120 dpi") << 120.0 << fullHd << 1.25;
    QTest::newRow("144 dpi") << 144.0 << fullHd << 1.3125;
    QTest::newRow("168 dpi") << 168.0 << fullHd << 1.3125;
    QTest::newRow("192 dpi") << 192.0 << fullHd << 1.3125;
    QTest::newRow("144 dpi above a panel") << 144.0 << QSize(1920, 1032) << 1.25;
    QTest::newRow("a scale that is no sixteenth stays") << 110.4 << fullHd << 1.15;
    QTest::newRow("96 dpi in whole millimetres") << 96.11 << fullHd << 1.0;
    QTest::newRow("144 dpi in whole millimetres") << 143.86 << fourK << 1.5;
    QTest::newRow("192 dpi on a large screen") << 192.0 << fourK << 2.0;
    QTest::newRow("288 dpi on a large screen") << 288.0 << fourK << 2.6875;
    QTest::newRow("an upright screen") << 144.0 << QSize(1080, 1920) << 1.125;
    QTest::newRow("a projector with a panel") << 96.0 << QSize(1366, 741) << 0.875;
    QTest::newRow("a screen that is just high enough") << 96.0 << QSize(1280, 800) << 1.0;
    QTest::newRow("a tiny screen") << 96.0 << QSize(320, 200) << 0.5;
    QTest::newRow("few dots") << 72.0 << fullHd << 1.0;
    QTest::newRow("no dpi") << 0.0 << fullHd << 1.0;
    QTest::newRow("less than nothing") << -96.0 << fullHd << 1.0;
    QTest::newRow("absurd dpi") << 9600.0 << fourK << 1.0;
    QTest::newRow("no number") << notANumber << fourK << 1.0;
    QTest::newRow("no screen") << 144.0 << QSize() << 1.5;
}

void PlatformTest::drawsAtTheDesktopsScaleUnlessTheScreenIsTooSmall()
{
    QFETCH(double, dpi);
    QFETCH(QSize, freeArea);
    QFETCH(double, scale);
    QCOMPARE(layoutScale({dpi, freeArea}), scale);
}

void PlatformTest::theWindowAndItsTitleBarAlwaysFit()
{
    for (int dpi = 96; dpi <= 288; dpi += 6) {
        for (int height = 600; height <= 2160; height += 13) {
            const double scale = layoutScale({double(dpi), QSize(height * 16 / 9, height)});
            QVERIFY(scale <= dpi / 96.0);
            QVERIFY2(768 * scale + 32 * dpi / 96.0 <= height || scale <= 0.5,
                     qPrintable(QString("%1 dpi, %2 high: %3").arg(dpi).arg(height).arg(scale)));
            QVERIFY(938 * scale <= height * 16.0 / 9);
        }
    }
}

void PlatformTest::aScaleOfTheEnvironmentStands_data()
{
    QTest::addColumn<QByteArray>("variable");
    for (const char *variable :
         {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
          "QT_ENABLE_HIGHDPI_SCALING", "QT_DEVICE_PIXEL_RATIO"})
        QTest::newRow(variable) << QByteArray(variable);
}

void PlatformTest::aScaleOfTheEnvironmentStands()
{
    QFETCH(QByteArray, variable);
    qunsetenv(variable.constData());
    QVERIFY(!scaleIsChosen());
    qputenv(variable.constData(), "2");
    QVERIFY(scaleIsChosen());
    qunsetenv(variable.constData());
}

void PlatformTest::onlyScalesThatAreNumbersStandForSeveralScreens_data()
{
    QTest::addColumn<QByteArray>("scales");
    QTest::addColumn<bool>("stands");
    QTest::newRow("one for all") << QByteArray("1.5") << true;
    QTest::newRow("by place") << QByteArray("1.5;2") << true;
    QTest::newRow("by name") << QByteArray("DP-1=1.5;DP-2=0.1") << true;
    QTest::newRow("none") << QByteArray(";") << false;
    QTest::newRow("no number") << QByteArray("large") << false;
    QTest::newRow("one of them no number") << QByteArray("1.5;large") << false;
    QTest::newRow("a name alone") << QByteArray("DP-1=") << false;
    QTest::newRow("too small") << QByteArray("DP-1=1.5;DP-2=0.09") << false;
    QTest::newRow("too large") << QByteArray("11") << false;
}

void PlatformTest::onlyScalesThatAreNumbersStandForSeveralScreens()
{
    QFETCH(QByteArray, scales);
    QFETCH(bool, stands);
    qputenv("QT_SCREEN_SCALE_FACTORS", scales);
    dropUnusableSettings();
    QCOMPARE(qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS"), stands);
    qunsetenv("QT_SCREEN_SCALE_FACTORS");
}

void PlatformTest::largeBlocksGoBackToTheSystem()
{
    if (!SYSTEM_ALLOCATOR)
        QSKIP("The sanitizer has an allocator of its own.");
    preparePlatform();
    // Volatile, or the compiler leaves out blocks that nobody writes to.
    void *volatile picture = std::malloc(std::size_t{8} << 20);
    std::free(picture); // raises the bound by itself
    const std::size_t before = mallinfo2().hblkhd;
    void *volatile frame = std::malloc(470000);
    const std::size_t mapped = mallinfo2().hblkhd;
    std::free(frame);
    QVERIFY(mapped >= before + 470000);
    QCOMPARE(mallinfo2().hblkhd, before);
}

REGISTER_PLAIN_TEST(PlatformTest)
#include "tst_platform.moc"
