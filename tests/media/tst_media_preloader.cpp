#include "sources/gst/MediaPreloader.h"

#include <QtTest>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>

namespace
{

constexpr std::chrono::seconds TIMEOUT(60);

/// Whether a library of that name is in this process.
bool loaded(const QByteArray &name)
{
    QFile maps("/proc/self/maps");
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(name);
}

int threads()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// The list of plugins that was made in this home.
bool listMade()
{
    QDirIterator files(QDir::homePath() + "/.cache", {"registry.*.bin"}, QDir::Files,
                       QDirIterator::Subdirectories);
    return files.hasNext();
}

} // namespace

/// In a home that the media library has never seen.
class MediaPreloaderTest : public QObject
{
    Q_OBJECT

private slots:
    void givenUpBeforeItBeginsItLeavesNoTrace()
    {
        QElapsedTimer clock;
        clock.start();
        {
            const MediaPreloader warmUp(std::chrono::seconds(50));
        }
        QVERIFY(clock.elapsed() < 10000);
        QVERIFY(!listMade());
    }

    void aProcessThatEndsMeanwhileEndsWell()
    {
        for (const char *ms : {"0", "5", "20", "80", "300", "900"})
            QCOMPARE(
                QProcess::execute(QCoreApplication::applicationFilePath(), {"--end-after", ms}), 0);
    }

    void thePluginsOfFilmsAndMoviesAreThereAfterwards()
    {
        for (const char *library : {"libgstisomp4", "libgstx264", "libgstlibav", "libgstplayback"})
            QVERIFY2(!loaded(library), library);
        const int before = threads();
        {
            MediaPreloader warmUp(std::chrono::milliseconds(0));
            QVERIFY(warmUp.waitUntilDone(TIMEOUT));
        }
        QVERIFY(listMade());
        for (const char *library :
             {"libgstisomp4", "libgstx264", "libgstlibav", "libgstplayback", "libavcodec",
              "libgstpulseaudio", "libgstvideoconvert", "libgstaudioresample"})
            QVERIFY2(loaded(library), library);
        // No sound server is spoken to, no pipeline stays: at most the library's idle helpers.
        QTRY_VERIFY_WITH_TIMEOUT(threads() <= before + 3, 30000);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--end-after") == 0) {
        const MediaPreloader warmUp(std::chrono::milliseconds(0));
        QTest::qWait(QByteArray(argv[2]).toInt());
        return 0;
    }
    MediaPreloaderTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_media_preloader.moc"
