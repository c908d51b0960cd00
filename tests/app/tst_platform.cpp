#include "app/Platform.h"

#include <QCoreApplication>
#include <QTest>

#include <cstdlib>
#include <malloc.h>

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void choosesWhereNothingIsChosen();
    void leavesTheUsersChoice();
    void drawsSharpOnSharpScreens();
    void largeBlocksGoBackToTheSystem();
};

void TestPlatform::init()
{
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("QT_XCB_GL_INTEGRATION");
}

void TestPlatform::choosesWhereNothingIsChosen()
{
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb;wayland"));
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("none"));
}

void TestPlatform::leavesTheUsersChoice()
{
    qputenv("QT_QPA_PLATFORM", "wayland");
    qputenv("QT_XCB_GL_INTEGRATION", "xcb_egl");
    preparePlatform();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("wayland"));
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("xcb_egl"));
}

void TestPlatform::drawsSharpOnSharpScreens()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    preparePlatform();
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
}

void TestPlatform::largeBlocksGoBackToTheSystem()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("The sanitizer has an allocator of its own.");
#endif
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

QTEST_APPLESS_MAIN(TestPlatform)
#include "tst_platform.moc"
