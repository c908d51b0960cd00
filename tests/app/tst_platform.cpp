#include "app/Platform.h"

#include <QCoreApplication>
#include <QTest>

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void choosesWhereNothingIsChosen();
    void leavesTheUsersChoice();
    void drawsSharpOnSharpScreens();
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

QTEST_APPLESS_MAIN(TestPlatform)
#include "tst_platform.moc"
