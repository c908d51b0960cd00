#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

#include <QDir>
#include <QTemporaryDir>

#include <memory>

/// The camera's picture in the canvas, from the bus to the file.
class LiveCanvasTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        VirtualCameraConfig config;
        if (qgetenv("CAMERA_TRANSPORT") == "isochronous")
            config.transport = VirtualCameraConfig::Transport::Isochronous;
        m_camera = std::make_unique<VirtualCamera>(config);
        QVERIFY(m_camera->plug());
        m_canvas = std::make_unique<ImageCanvas>();
        m_canvas->resize(1000, 670);
        m_source = std::make_unique<LiveSource>(m_canvas.get(), QSize(1920, 1080),
                                                QSize(1920, 1080), nullptr);
        m_canvas->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_canvas.get()));
        QVERIFY(QTest::qWaitFor([this] { return counter().has_value(); }, TIMEOUT_MS));
    }

    void cleanupTestCase()
    {
        m_source.reset();
        m_canvas.reset();
        m_camera.reset();
    }

    void aSnapshotIsAFrameOfTheCamera()
    {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const quint32 before = m_camera->statistics().lastFrame;
        m_canvas->snapshotFolder = folder.path();
        m_canvas->snapshotMode = CanvasModes::Single;
        m_canvas->snapshot();
        const QDir files(folder.path(), "*.jpg");
        QVERIFY(QTest::qWaitFor(
            [this, &files] {
                files.refresh();
                return files.count() == 1 && !QImage(files.filePath(files[0])).isNull();
            },
            TIMEOUT_MS));
        const QImage picture(files.filePath(files[0]));
        QCOMPARE(picture.size(), QSize(1920, 1080));
        const auto shown = SheetCounter::read(picture);
        QVERIFY(shown);
        const quint32 after = m_camera->statistics().lastFrame;
        // One of the frames on their way or sent while the snapshot was armed.
        const quint32 age = (after - *shown) % SheetCounter::MODULUS;
        QVERIFY2(age <= after - before + 30, qPrintable(QString::number(age)));
    }

    void theCounterGoesOnThroughRotationAndEffects()
    {
        for (int turn = 0; turn < 4; ++turn) {
            m_canvas->rotate();
            QVERIFY(moves());
        }
        m_canvas->effectMode = CanvasModes::EffectBW;
        QVERIFY(moves());
        m_canvas->effectMode = CanvasModes::EffectNegative;
        QVERIFY(moves());
        m_canvas->effectMode = CanvasModes::EffectColor;
    }

    void aFrozenPictureStands()
    {
        m_canvas->frozen = true;
        const auto frozen = counter();
        QVERIFY(frozen);
        const auto sent = m_camera->statistics().framesSent;
        QVERIFY(QTest::qWaitFor(
            [this, sent] { return m_camera->statistics().framesSent > sent + 10; }, TIMEOUT_MS));
        const auto standing = counter();
        QVERIFY(standing && (*standing - *frozen) % SheetCounter::MODULUS <= 1);
        m_canvas->frozen = false;
        QVERIFY(moves());
    }

    void aChangeOfResolutionComesThrough()
    {
        m_source->setResolution({1024, 768});
        QVERIFY(QTest::qWaitFor([this] { return m_canvas->pictureSize() == QSize(1024, 768); },
                                TIMEOUT_MS));
        QVERIFY(moves());
    }

    void theCanvasStaysUsableWhenTheCameraLeaves()
    {
        m_camera->unplug();
        QTRY_VERIFY_WITH_TIMEOUT(m_source->brightness() == 0, TIMEOUT_MS);
        m_canvas->zoomIn();
        m_canvas->rotate();
        QVERIFY(!m_canvas->grab().isNull());
        QVERIFY(!m_canvas->currentImage().isNull());
    }

private:
    std::optional<quint32> counter() const
    {
        const QImage picture = m_canvas->currentImage();
        return picture.isNull() ? std::nullopt : SheetCounter::read(picture);
    }

    bool moves() const
    {
        std::optional<quint32> first;
        return QTest::qWaitFor(
            [this, &first] {
                const auto now = counter();
                if (!first)
                    first = now;
                return now && *now != *first;
            },
            TIMEOUT_MS);
    }

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<ImageCanvas> m_canvas;
    std::unique_ptr<LiveSource> m_source;
};

REGISTER_TEST(LiveCanvasTest)
#include "tst_live_canvas.moc"
