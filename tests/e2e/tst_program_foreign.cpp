#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/LiveProgram.h"
#include "tests/e2e/ProgramUnderTest.h"
#include "tests/media/MovieFile.h"

#include "sources/camera/CameraIdentity.h"
#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QtTest>

#include <memory>
#include <utility>
#include <vector>

using LiveProgram::movies;
using LiveProgram::pictureMoves;
using UsbDescriptors::StreamCoding;
using UsbDescriptors::StreamFormat;

namespace
{

/// For so long a camera that was not chosen is left alone while another one is used.
constexpr int LEFT_ALONE_MS = 10000;
constexpr int RECORDED_MS = 2500;

void choose(const VirtualCameraConfig &camera)
{
    QSettings extras(QSettings::NativeFormat, QSettings::UserScope, "Quillmark",
                     "Document Camera Extras");
    extras.setValue("cameraChosen",
                    CameraIdentity{camera.vendorId, camera.productId, camera.serial}.text());
    extras.sync();
}

bool untouched(const VirtualCamera &camera)
{
    const CameraStatistics statistics = camera.statistics();
    return statistics.openHandles == 0 && statistics.ioctls == 0;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<StreamFormat>)

/// The program with a chosen camera of another make, beside one that was not chosen.
class ProgramForeignTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        m_own = std::make_unique<VirtualCamera>();
        QVERIFY(m_own->plug());
    }
    void cleanupTestCase() { m_own.reset(); }

    void aCameraOfAnotherMakeIsShownAndRecorded_data()
    {
        QTest::addColumn<std::vector<StreamFormat>>("formats");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("rate");
        using Formats = std::vector<StreamFormat>;
        QTest::newRow("YUYV only, 640x480")
            << Formats{{StreamCoding::Yuyv, {{640, 480}}}} << QSize(640, 480) << 30;
        QTest::newRow("Motion-JPEG and YUYV, 1920x1080")
            << Formats{{StreamCoding::MotionJpeg, {{1920, 1080}}},
                       {StreamCoding::Yuyv, {{1920, 1080}}}}
            << QSize(1920, 1080) << 30;
        QTest::newRow("25 a second only")
            << Formats{{StreamCoding::MotionJpeg, {{1280, 720}}, {400000}}} << QSize(1280, 720)
            << 25;
        QTest::newRow("29.97 a second only")
            << Formats{{StreamCoding::MotionJpeg, {{1280, 720}}, {333667}}} << QSize(1280, 720)
            << 30;
    }

    void aCameraOfAnotherMakeIsShownAndRecorded()
    {
        QFETCH(std::vector<StreamFormat>, formats);
        QFETCH(QSize, size);
        QFETCH(int, rate);
        VirtualCameraConfig config;
        ForeignMake::apply(config, "F1", "Foreign camera");
        config.formats = std::move(formats);
        config.framesPerSecond = rate;
        choose(config);
        for (const QString &old : movies())
            QFile::remove(old);
        VirtualCamera camera(config);
        QVERIFY(camera.plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        QElapsedTimer sinceShown;
        sinceShown.start();
        QVERIFY2(pictureMoves(), program.output().constData());
        program.pressKeys("ctrl+r");
        QVERIFY(QTest::qWaitFor([] { return !movies().isEmpty(); }, TIMEOUT_MS));
        QTest::qWait(RECORDED_MS); // what it should hold
        program.pressKeys("ctrl+r");
        QVERIFY(pictureMoves());
        while (sinceShown.elapsed() < LEFT_ALONE_MS) {
            QVERIFY(untouched(*m_own));
            QTest::qWait(50);
        }
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(untouched(*m_own));
        QCOMPARE(movies().size(), 1);
        const MovieFile movie(movies().constFirst());
        QCOMPARE(movie.complaints(), QString());
        const QJsonObject video = movie.stream("video");
        QCOMPARE(QSize(video["width"].toInt(), video["height"].toInt()), size);
        QVERIFY(movie.duration() > 1.0);
        const int pictures = video["nb_frames"].toString().toInt();
        // A machine under load drops some; none is made up.
        QVERIFY2(pictures > 10 && pictures <= movie.duration() * rate + 3,
                 qPrintable(QString("%1 in %2 s").arg(pictures).arg(movie.duration())));
    }

private:
    std::unique_ptr<VirtualCamera> m_own;
};

REGISTER_TEST(ProgramForeignTest)
#include "tst_program_foreign.moc"
