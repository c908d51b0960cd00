#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/media/MovieFile.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

#include <QPainter>

#include <cstdlib>

namespace
{

constexpr QSize PREVIEW(1024, 768);
constexpr QSize RECORDING(1280, 720);

QImage imageOf(const QByteArray &rgb)
{
    return QImage(reinterpret_cast<const uchar *>(rgb.constData()), RECORDING.width(),
                  RECORDING.height(), RECORDING.width() * 3, QImage::Format_RGB888)
        .copy();
}

/// As the canvas fits a picture of another shape into the movie's.
QImage fitted(const QImage &picture)
{
    QImage frame(RECORDING, QImage::Format_RGB888);
    frame.fill(Qt::black);
    const QSize size = picture.size().scaled(RECORDING, Qt::KeepAspectRatio);
    QPainter painter(&frame);
    painter.drawImage(QRect(QPoint((RECORDING.width() - size.width()) / 2,
                                   (RECORDING.height() - size.height()) / 2),
                            size),
                      picture);
    return frame;
}

/// The mean by which the colours of two pictures differ, of 255.
double difference(const QImage &a, const QImage &b)
{
    qint64 sum = 0;
    int count = 0;
    for (int y = 0; y < RECORDING.height(); y += 3) {
        for (int x = 0; x < RECORDING.width(); x += 3, ++count) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) +
                   std::abs(qBlue(p) - qBlue(q));
        }
    }
    return static_cast<double>(sum) / count / 3;
}

} // namespace

/// Camera, source, canvas and writer together; there is no microphone, so the sound is silence.
class LiveRecordingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("PULSE_SERVER", "unix:" + m_folder.path().toLocal8Bit() + "/nobody");
        m_camera = std::make_unique<VirtualCamera>();
        m_canvas = std::make_unique<ImageCanvas>();
        m_canvas->resize(640, 480);
        m_source = std::make_unique<LiveSource>(m_canvas.get(), PREVIEW, RECORDING, nullptr);
        QVERIFY(m_camera->plug());
        QTRY_VERIFY_WITH_TIMEOUT(m_source->running(), TIMEOUT_MS);
        m_file = m_folder.filePath("movie.mov");
    }
    void cleanup()
    {
        QFile::remove(m_file);
        m_canvas->frozen = false;
        m_canvas->effectMode = ImageCanvas::EffectColor;
        m_canvas->maskMode = ImageCanvas::MaskNone;
        m_canvas->clearPainting();
        m_canvas->zoomReset();
        while (m_canvas->rotation() != 0)
            m_canvas->rotate();
        m_source->setResolution(PREVIEW);
    }
    void cleanupTestCase()
    {
        m_source.reset();
        m_camera.reset();
        m_canvas.reset();
    }

    void whatIsShownIsRecorded_data()
    {
        QTest::addColumn<QStringList>("changes");
        const QStringList all{"zoom", "rotation", "drawing", "effect", "mask"};
        for (const QString &change : all)
            QTest::newRow(qPrintable(change)) << QStringList(change);
        QTest::newRow("all together") << all;
    }

    void whatIsShownIsRecorded()
    {
        QFETCH(QStringList, changes);
        m_source->startRecord(m_file);
        QTRY_COMPARE_WITH_TIMEOUT(m_canvas->pictureSize(), RECORDING, TIMEOUT_MS);
        const QImage plain = m_canvas->currentImage();
        for (const QString &change : changes)
            apply(change);
        m_canvas->frozen = true;
        m_canvas->autoRefresh();
        const QImage shown = fitted(m_canvas->currentImage());
        waitForMovie(1.0);
        stopRecording();

        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QCOMPARE(movie.stream("audio")["codec_name"].toString(), QString("aac"));
        const double seen = difference(shown, plain);
        QVERIFY2(seen > 3, qPrintable(QString::number(seen)));
        const QImage recorded = imageOf(movie.pictureAt(movie.duration() - 0.5));
        const double unlike = difference(recorded, shown);
        QVERIFY2(unlike < 3, qPrintable(QString::number(unlike)));
    }

    void thePicturesOfTheCameraFollowEachOtherInTime()
    {
        recordSeconds(2.0);
        const MovieFile movie(m_file);
        const auto first = SheetCounter::read(imageOf(movie.pictureAt(0.3)));
        const auto second = SheetCounter::read(imageOf(movie.pictureAt(1.3)));
        QVERIFY(first && second);
        const int between = static_cast<int>((*second - *first) % SheetCounter::MODULUS);
        QVERIFY2(between >= 10 && between <= 40, qPrintable(QString::number(between)));
    }

    void aFolderThatVanishesIsToldOnceAndTheCameraGoesOn()
    {
        QVERIFY(QDir(m_folder.path()).mkdir("vanishing"));
        QSignalSpy failures(m_source.get(), &LiveSource::recordFailed);
        m_source->startRecord(m_folder.filePath("vanishing/movie.mov"));
        // The movie is being begun: a file may come between the list of the folder and its end.
        QTRY_VERIFY_WITH_TIMEOUT(QDir(m_folder.filePath("vanishing")).removeRecursively(),
                                 TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(int(failures.size()), 1, TIMEOUT_MS);
        QVERIFY(!failures[0][0].toString().isEmpty());
        m_source->stopRecord();
        QVERIFY(m_source->running());
        recordSeconds(1.0);
        QCOMPARE(int(failures.size()), 1);
    }

    void aNewPreviewSizeEndsTheMovieWhole()
    {
        m_source->startRecord(m_file);
        waitForMovie(1.0);
        m_source->setResolution(QSize(1280, 720));
        QVERIFY(!m_source->recording());
        waitUntilCompleted();
        QCOMPARE(MovieFile(m_file).complaints(), QString());
        QVERIFY(MovieFile(m_file).duration() > 0.5);
    }

    void aHundredStartsAndStopsInQuickSuccession()
    {
        for (int n = 0; n < 100; ++n) {
            m_source->startRecord(m_file);
            m_source->stopRecord();
        }
        recordSeconds(1.0);
    }

    // This test is the last one, as it takes the camera away.
    void aCameraThatIsPulledLeavesAWholeMovie()
    {
        m_source->startRecord(m_file);
        waitForMovie(2.0);
        m_camera->unplug();
        QElapsedTimer stopping;
        stopping.start();
        m_source->stopRecord();
        QVERIFY2(stopping.elapsed() < 15000, qPrintable(QString::number(stopping.elapsed())));
        waitUntilCompleted();
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY(movie.duration() > 1.5);
    }

private:
    void apply(const QString &change)
    {
        if (change == "zoom")
            m_canvas->zoomIn();
        if (change == "rotation")
            m_canvas->rotate();
        if (change == "effect")
            m_canvas->effectMode = ImageCanvas::EffectNegative;
        if (change == "mask")
            m_canvas->maskMode = ImageCanvas::MaskLeft;
        if (change == "drawing") {
            m_canvas->setMouseMode(ImageCanvas::Rectangle);
            m_canvas->fillEnabled = true;
            m_canvas->fillColor = Qt::red;
            CanvasMouse::drag(*m_canvas, {{300, 200}, {450, 300}});
        }
    }

    /// Until that much of the movie is surely in the file.
    void waitForMovie(double seconds)
    {
        QElapsedTimer recording;
        recording.start();
        const auto wanted = static_cast<qint64>(seconds * 1000) + 500;
        QTRY_VERIFY_WITH_TIMEOUT(recording.elapsed() > wanted, TIMEOUT_MS);
    }
    static void waitUntilCompleted()
    {
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }
    void stopRecording()
    {
        m_source->stopRecord();
        waitUntilCompleted();
    }
    void recordSeconds(double seconds)
    {
        m_source->startRecord(m_file);
        waitForMovie(seconds);
        stopRecording();
        QVERIFY2(MovieFile(m_file).duration() > seconds / 2,
                 qPrintable(QString::number(MovieFile(m_file).duration())));
    }

    QTemporaryDir m_folder;
    QString m_file;
    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<ImageCanvas> m_canvas;
    std::unique_ptr<LiveSource> m_source;
};

REGISTER_TEST(LiveRecordingTest)
#include "tst_live_recording.moc"
