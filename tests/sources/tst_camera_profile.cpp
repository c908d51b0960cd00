#include "tests/TestProgram.h"

#include "sources/camera/CameraName.h"
#include "sources/camera/CameraProfile.h"

#include <QtTest>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

QString hex(std::uint16_t id)
{
    return QString("%1").arg(id, 4, 16, QChar('0'));
}

QString projectFile(const QString &path)
{
    return QStringLiteral(TEST_SOURCE_DIR) + "/../../" + path;
}

QString textOf(const QString &path)
{
    QFile file(projectFile(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool write(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
}

} // namespace

/// What is no code but has to know the cameras of the table, too.
class CameraProfileTest : public QObject
{
    Q_OBJECT

private slots:
    void theDeviceRuleLetsUsersOpenThatCamera_data() { addCameras(); }
    void theDeviceRuleLetsUsersOpenThatCamera()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        const QStringList rules = textOf("packaging/70-document-camera.rules")
                                      .split('\n')
                                      .filter(QString("ATTR{idVendor}==\"%1\"").arg(vendor))
                                      .filter(QString("ATTR{idProduct}==\"%1\"").arg(product));
        QCOMPARE(rules.size(), 1);
        QVERIFY(rules.first().contains("TAG+=\"uaccess\""));
    }

    void anIdentityIsReadFromWhatItWasWrittenAs()
    {
        for (const QString &serial : {QString(), QString("F1"), QString(" a b:c "), QString("№")}) {
            const CameraIdentity camera{0x04fc, 0x0002, serial};
            const auto read = CameraIdentity::fromText(camera.text());
            QVERIFY(read && *read == camera);
        }
        for (const char *garbage : {"", "04fc", "04fc:", "04fc:63", "04fc-6330", "g4fc:6330",
                                    "04fc:6330x", "04fc:-330", "4294967295", " 04fc:6330"})
            QVERIFY2(!CameraIdentity::fromText(garbage), garbage);
    }

    void aNameIsShownInOneLineOfPrintableCharacters()
    {
        QCOMPARE(shownCameraName("  Desk\tcamera\n2 "), QString("Desk camera 2"));
        QCOMPARE(shownCameraName(QString(10000, 'x')), QString(60, 'x'));
        const QString hidden = QString::fromUtf8("a\u202Eb\u200Fc\u0007d") + QChar::Null + "e";
        QCOMPARE(shownCameraName(hidden), QString("abcde"));
        QCOMPARE(shownCameraName("مصورة"), QString("مصورة"));
        QCOMPARE(shownCameraName("\u200B\u0001"), QString());
        // Not cut in the middle of one.
        const QString pair = QString::fromUtf8("\U0001F4F7");
        QCOMPARE(shownCameraName(pair.repeated(100)), pair.repeated(60));
    }

    void theRuleNamesNoOtherCamera()
    {
        const QStringList lines = textOf("packaging/70-document-camera.rules").split('\n');
        QCOMPARE(lines.filter("ATTR{idProduct}").size(), int(CAMERA_PROFILES.size()));
    }

    void theManualNamesThatCamera_data() { addCameras(); }
    void theManualNamesThatCamera()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        QVERIFY(textOf("README.md").contains(vendor + ':' + product, Qt::CaseInsensitive));
    }

    void thePackageGivesThatCameraItsPermissionAtOnce_data() { addCameras(); }
    void thePackageGivesThatCameraItsPermissionAtOnce()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        const QString trigger =
            QString("--attr-match=idVendor=%1 --attr-match=idProduct=%2").arg(vendor, product);
        QVERIFY(textOf("packaging/debian/document-camera.postinst").contains(trigger));
    }

    void programCataloguesOfferTheProgramForThatCamera_data() { addCameras(); }
    void programCataloguesOfferTheProgramForThatCamera()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        const QString alias = QString("<modalias>usb:v%1p%2d*</modalias>").arg(vendor, product);
        QVERIFY(textOf("packaging/org.quillmark.documentcamera.metainfo.xml.in")
                    .contains(alias, Qt::CaseInsensitive));
    }

    void theStartScriptFindsThatCameraOnTheBus_data() { addCameras(); }
    void theStartScriptFindsThatCameraOnTheBus()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        const QTemporaryDir bus;
        QVERIFY(QDir(bus.path()).mkpath("1-1"));
        const QString script = projectFile("tools/virtualcamera/camera-on-bus");
        QVERIFY(write(bus.filePath("1-1/idVendor"), vendor + '\n'));
        QVERIFY(write(bus.filePath("1-1/idProduct"), "0001\n"));
        QCOMPARE(QProcess::execute(script, {bus.path()}), 1);
        QVERIFY(write(bus.filePath("1-1/idProduct"), product + '\n'));
        QCOMPARE(QProcess::execute(script, {bus.path()}), 0);
    }

private:
    static void addCameras()
    {
        QTest::addColumn<QString>("vendor");
        QTest::addColumn<QString>("product");
        for (const CameraProfile &profile : CAMERA_PROFILES) {
            const QString vendor = hex(profile.vendorId);
            const QString product = hex(profile.productId);
            QTest::newRow(qPrintable(vendor + ':' + product)) << vendor << product;
        }
    }
};

REGISTER_CORE_TEST(CameraProfileTest)
#include "tst_camera_profile.moc"
