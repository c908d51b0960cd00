#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "tests/media/MovieFile.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

namespace
{

constexpr QSize PREVIEW(1024, 768);
constexpr QSize RECORDING(1280, 720);
constexpr int PATIENCE_MS = 30000;

QImage imageOf(const QByteArray &rgb)
{
    return QImage(reinterpret_cast<const uchar *>(rgb.constData()), RECORDING.width(),
                  RECORDING.height(), RECORDING.width() * 3, QImage::Format_RGB888)
        .copy();
}

/// Mean grey of a part of a picture.
int brightness(const QImage &picture, const QRect &part)
{
    qint64 sum = 0;
    for (int y = part.top(); y <= part.bottom(); y += 4)
        for (int x = part.left(); x <= part.right(); x += 4)
            sum += qGray(picture.pixel(x, y));
    return static_cast<int>(sum / ((part.width() + 3) / 4) / ((part.height() + 3) / 4));
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
        QTRY_VERIFY_WITH_TIMEOUT(m_source->running(), PATIENCE_MS);
        m_file = m_folder.filePath("movie.mov");
    }
    void cleanup()
    {
        QFile::remove(m_file);
        m_canvas->effectMode = ImageCanvas::EffectColor;
        m_canvas->maskMode = ImageCanvas::MaskNone;
        m_source->setResolution(PREVIEW);
    }
    void cleanupTestCase()
    {
        m_source.reset();
        m_camera.reset();
        m_canvas.reset();
    }

    void whatIsShownIsRecorded()
    {
        m_canvas->effectMode = ImageCanvas::EffectNegative;
        m_canvas->maskMode = ImageCanvas::MaskLeft;
        recordSeconds(2.0);

        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QCOMPARE(movie.stream("audio")["codec_name"].toString(), QString("aac"));
        const QImage picture = imageOf(movie.pictureAt(1.0));
        const QRect left(0, 0, RECORDING.width() / 2 - 8, RECORDING.height());
        const QRect right = left.translated(RECORDING.width() / 2 + 8, 0);
        QVERIFY2(brightness(picture, left) < 8,
                 qPrintable(QString::number(brightness(picture, left))));
        // The sheet is white, its negative is dark, but not black.
        const int shown = brightness(picture, right);
        QVERIFY2(shown > 10 && shown < 120, qPrintable(QString::number(shown)));
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
        QVERIFY(QDir(m_folder.filePath("vanishing")).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(int(failures.size()), 1, PATIENCE_MS);
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
        QCOMPARE(MovieFile(m_file).complaints(), QString());
        QVERIFY(MovieFile(m_file).duration() > 0.5);
    }

    void aHundredStartsAndStopsInQuickSuccession()
    {
        for (int n = 0; n < 100; ++n) {
            m_source->startRecord(m_file);
            m_source->stopRecord();
        }
        QFile::remove(m_file);
        recordSeconds(1.0);
    }

    // The last: it takes the camera away.
    void aCameraThatIsPulledLeavesAWholeMovie()
    {
        m_source->startRecord(m_file);
        waitForMovie(2.0);
        m_camera->unplug();
        QElapsedTimer stopping;
        stopping.start();
        m_source->stopRecord();
        QVERIFY2(stopping.elapsed() < 15000, qPrintable(QString::number(stopping.elapsed())));
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY(movie.duration() > 1.5);
    }

private:
    /// Until that much of the movie is surely in the file.
    void waitForMovie(double seconds)
    {
        QElapsedTimer recording;
        recording.start();
        const auto wanted = static_cast<qint64>(seconds * 1000) + 500;
        QTRY_VERIFY_WITH_TIMEOUT(recording.elapsed() > wanted, PATIENCE_MS);
    }
    void recordSeconds(double seconds)
    {
        m_source->startRecord(m_file);
        waitForMovie(seconds);
        m_source->stopRecord();
        QVERIFY2(MovieFile(m_file).duration() > seconds / 2,
                 qPrintable(QString::number(MovieFile(m_file).duration())));
    }

    QTemporaryDir m_folder;
    QString m_file;
    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<ImageCanvas> m_canvas;
    std::unique_ptr<LiveSource> m_source;
};

QTEST_MAIN(LiveRecordingTest)
#include "tst_live_recording.moc"
