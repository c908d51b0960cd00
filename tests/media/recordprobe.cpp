// recordprobe FILE: records synthetic pictures and the camera microphone of the sound server, at
// 30 pictures a second in real time, for tests that kill, starve or disturb a recording.
#include "tests/media/MicrophoneFeed.h"
#include "tests/media/SoundServer.h"
#include "tests/media/SyntheticPictures.h"

#include "sources/gst/GstRuntime.h"
#include "sources/recording/CaptureClock.h"
#include "sources/recording/MovieRecorder.h"
#include "sources/threads/DetachedThreads.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <optional>
#include <thread>

namespace
{

constexpr qint64 PERIOD_US = 1000000;

/// A file then grows no further than that, as on a full disk but for the error number.
void limitFileSize(rlim_t bytes)
{
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// Makes file modes bind the superuser as they bind everybody.
void giveUpFileRights()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    syscall(SYS_capget, &header, data);
    const __u32 gone = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);
    data[0].effective &= ~gone;
    data[0].permitted &= ~gone;
    data[0].inheritable &= ~gone;
    syscall(SYS_capset, &header, data);
}

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

long residentKb()
{
    long pages = 0;
    long resident = 0;
    if (FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

struct Options {
    QString file;
    QSize size;
    double seconds;
    double framesPerSecond;
    /// After that many seconds the camera delivers nothing any more.
    double cameraSeconds;
    QStringList encoders;
    QString pipe;
    int partsPerMillion;
    double silentSeconds;
    /// What the microphone keeps until it is read; 0 for everything.
    qint64 unreadMs;
    /// From when to when it is paused, in seconds; without an end for as long as it lasts.
    std::vector<std::pair<double, double>> pauses;
    qint64 leastFree;
    MicrophoneChoice microphone;
};

std::vector<std::pair<double, double>> toPauses(const QStringList &texts)
{
    std::vector<std::pair<double, double>> pauses;
    for (const QString &text : texts) {
        const QStringList ends = text.split('-');
        pauses.emplace_back(ends.value(0).toDouble(),
                            ends.value(1).isEmpty() ? 1e9 : ends.value(1).toDouble());
    }
    return pauses;
}

/// Pauses and resumes when it is time, and says when that was.
class Pauses
{
public:
    Pauses(MovieRecorder &recorder, const Options &options, qint64 startUs)
        : m_recorder(recorder)
        , m_pauses(options.pauses)
        , m_startUs(startUs)
    {
    }

    void lookAt(double second)
    {
        if (m_next == m_pauses.size())
            return;
        const bool within = second >= m_pauses[m_next].first && second < m_pauses[m_next].second;
        if (within == m_paused)
            return;
        m_paused = within;
        const qint64 beforeUs = captureMicroseconds();
        m_recorder.setPaused(within);
        slowestUs = std::max(slowestUs, captureMicroseconds() - beforeUs);
        say(QString("%1 %2 us").arg(within ? "paused" : "resumed").arg(beforeUs - m_startUs));
        if (!within)
            ++m_next;
    }

    qint64 slowestUs = 0;

private:
    MovieRecorder &m_recorder;
    const std::vector<std::pair<double, double>> m_pauses;
    const qint64 m_startUs;
    std::size_t m_next = 0;
    bool m_paused = false;
};

std::optional<Options> parse(const QCoreApplication &app)
{
    QCommandLineParser parser;
    parser.addPositionalArgument("file", "the movie");
    parser.addOptions(
        {{"size", "", "size", "640x360"},
         {"seconds", "", "s", "1e9"},
         {"fps", "", "n", "30"},
         {"camera-seconds", "", "s", "1e9"},
         {"encoders", "", "names", ""},
         {"claps", "", "pipe", ""},
         {"ppm", "", "n", "0"},
         {"microphone-silent", "", "s", "0"},
         {"unread", "", "ms", "0"},
         {"pauses", "", "from-to,...", ""},
         {"microphone", "", "source", ""},
         {"least-free", "", "bytes", QString::number(RecordingRules::LEAST_FREE_BYTES)},
         {"file-limit", "", "bytes", ""},
         {"no-rights", ""}});
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        return {};
    if (parser.isSet("file-limit"))
        limitFileSize(parser.value("file-limit").toULong());
    if (parser.isSet("no-rights"))
        giveUpFileRights();
    const QStringList size = parser.value("size").split('x');
    return Options{parser.positionalArguments().constFirst(),
                   {size.value(0).toInt(), size.value(1).toInt()},
                   parser.value("seconds").toDouble(),
                   parser.value("fps").toDouble(),
                   parser.value("camera-seconds").toDouble(),
                   parser.value("encoders").split(',', Qt::SkipEmptyParts),
                   parser.value("claps"),
                   parser.value("ppm").toInt(),
                   parser.value("microphone-silent").toDouble(),
                   parser.value("unread").toLongLong(),
                   toPauses(parser.value("pauses").split(',', Qt::SkipEmptyParts)),
                   parser.value("least-free").toLongLong(),
                   parser.isSet("microphone")
                       ? MicrophoneChoice::ofSource(parser.value("microphone"))
                       : MicrophoneChoice(SoundServer::CAMERA_ID)};
}

int record(const Options &options)
{
    // As the program does soon after its start.
    GstRuntime::loadMovieElements();
    GstRuntime::runWarmUpPipelines();
    SyntheticPictures pictures(options.size);
    const time_t startDate = time(nullptr);
    const qint64 startUs = captureMicroseconds();
    std::optional<MicrophoneFeed> feed;
    if (!options.pipe.isEmpty())
        feed.emplace(options.pipe, startUs, PERIOD_US, options.partsPerMillion,
                     static_cast<qint64>(options.silentSeconds * 1e6), options.unreadMs * 1000);

    std::atomic<bool> failed{false};
    MovieWriter::Settings settings{options.file, options.size, options.encoders};
    settings.leastFreeBytes = options.leastFree;
    auto writer = MovieWriter::create(settings, [&](const QString &sentence) {
        say("failed: " + sentence);
        failed = true;
    });
    MovieRecorder recorder(std::move(writer), SoundCapture::create(options.microphone),
                           options.size);
    say("recording");
    Pauses pauses(recorder, options, startUs);
    qint64 slowestUs = 0;
    const auto count = static_cast<qint64>(options.seconds * options.framesPerSecond);
    for (qint64 n = 0; n < count && !failed; ++n) {
        const auto dueUs =
            startUs + static_cast<qint64>(static_cast<double>(n) * 1e6 / options.framesPerSecond);
        const double second = static_cast<double>(n) / options.framesPerSecond;
        const bool flash = dueUs - startUs >= PERIOD_US && (dueUs - startUs) % PERIOD_US < 100000;
        const std::uint8_t *rgb = pictures.picture(static_cast<int>(n), flash);
        std::this_thread::sleep_until(
            std::chrono::steady_clock::time_point(std::chrono::microseconds(dueUs)));
        if (second >= options.cameraSeconds) {
            if (n % 30 == 0)
                say(QString("silent %1 s").arg(second));
            continue;
        }
        pauses.lookAt(second);
        const qint64 beforeUs = captureMicroseconds();
        recorder.pictureCaptured(rgb, options.size.width(), options.size.height(), dueUs);
        slowestUs = std::max(slowestUs, captureMicroseconds() - beforeUs);
        if (n == 0)
            say("first picture");
        if (n % 30 == 0) {
            say(QString("second %1 resident %2 kB").arg(second).arg(residentKb()));
            const RecordingState state = recorder.state();
            say(QString("heard \"%1\" at %2 dB").arg(state.heard).arg(state.level.rms));
        }
    }
    say("finishing");
    recorder.finish();
    // A slow disk leaves the rest to the background.
    (void)DetachedThreads::allEnded(std::chrono::seconds(30));
    if (time(nullptr) < startDate)
        say("date stepped");
    say(QString("finished dropped %1 slowest %2 us")
            .arg(recorder.droppedPictures())
            .arg(slowestUs));
    if (!options.pauses.empty())
        say(QString("slowest pause %1 us").arg(pauses.slowestUs));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const std::optional<Options> options = parse(app);
    return options ? record(*options) : 2;
}
