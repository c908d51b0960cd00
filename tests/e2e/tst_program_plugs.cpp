#include "tests/Allocator.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/LiveProgram.h"
#include "tests/e2e/ProgramUnderTest.h"
#include "tests/media/MovieFile.h"

#include "tools/virtualcamera/VirtualCamera.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <vector>

namespace
{

constexpr int SHORTEST_MS = 50;
constexpr int LONGEST_MS = 5000;
/// For each kind of pull, the clean and the dirty one, and for each of the five things that the
/// program does meanwhile.
constexpr int PULLS = 1;
constexpr int ENDS_WITHIN_MS = 20000;

/// What a pull may cost, and what the work itself may have grown by since it was done first.
struct Allowance {
    long kilobytes = 0;
    int descriptors = 0;
};
constexpr Allowance CLEAN{1024, 2};
constexpr Allowance DIRTY{30L * 1024, 2};
constexpr Allowance WORK{24L * 1024, 8};

/// What the program holds.
struct Holding {
    long kilobytes = 0;
    int descriptors = 0;
    int threads = 0;
};

Holding holdingOf(qint64 process)
{
    const QString folder = QString("/proc/%1").arg(process);
    const auto entries = [&folder](const char *name) {
        const QDir::Filters any = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
        return static_cast<int>(QDir(folder + name).entryList(any).size());
    };
    Holding now{0, entries("/fd"), entries("/task")};
    QFile status(folder + "/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                now.kilobytes = line.mid(6).trimmed().split(' ').first().toLong();
        }
    }
    return now;
}

} // namespace

/// A camera with a loose plug, whatever the program is doing. PULLS in the environment has it
/// pulled that many times for each of ten rows, PULLS_SEED at other times.
class ProgramPlugsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        const int pulls = qEnvironmentVariableIntValue("PULLS");
        m_pulls = pulls > 0 ? pulls : PULLS;
        m_random.seed(static_cast<unsigned>(qEnvironmentVariableIntValue("PULLS_SEED")) + 1);
        m_camera = std::make_unique<VirtualCamera>();
    }
    void cleanupTestCase() { m_camera.reset(); }
    void init() { QVERIFY(m_camera->plug()); }

    void theProgramOutlivesALoosePlug_data() { kinds(); }
    void theProgramOutlivesALoosePlug();
    void theProgramEndsWhateverThePlugDoes_data() { kinds(); }
    void theProgramEndsWhateverThePlugDoes();

private:
    /// What the program does while the plug is pulled.
    struct Work {
        const char *name;
        std::function<bool()> begin;
        std::function<void()> between;
        std::function<bool()> end;
    };

    static void kinds()
    {
        QTest::addColumn<bool>("dirty");
        QTest::newRow("clean") << false;
        QTest::newRow("dirty") << true;
    }

    void waitAtRandom()
    {
        QTest::qWait(std::uniform_int_distribution<int>(SHORTEST_MS, LONGEST_MS)(m_random));
    }
    void pull(bool dirty) { dirty ? m_camera->unplugDirty() : m_camera->unplug(); }
    [[nodiscard]] std::vector<Work> worksOf(ProgramUnderTest &program);
    /// Pulls that many times; the picture comes back in the end.
    [[nodiscard]] bool pullDuring(ProgramUnderTest &program, const Work &work, bool dirty,
                                  int pulls);
    /// A recording that got no picture says so over the picture; that is closed.
    [[nodiscard]] bool pictureMoves(ProgramUnderTest &program);

    int m_pulls = PULLS;
    std::mt19937 m_random;
    std::unique_ptr<VirtualCamera> m_camera;
    WId m_settings = 0;
    int m_mode = 0;
    int m_told = 0; ///< recordings that got no picture
};

std::vector<ProgramPlugsTest::Work> ProgramPlugsTest::worksOf(ProgramUnderTest &program)
{
    const auto press = [&program](const char *keys) {
        return [&program, keys] {
            program.pressKeys(keys);
            return true;
        };
    };
    const auto nothing = [] {};
    const auto none = [] { return true; };
    return {
        {"preview", none, nothing, none},
        {"recording",
         [&program] {
             const QStringList before = LiveProgram::movies();
             program.pressKeys("ctrl+r");
             // Until there is a picture in it, as the end of an empty one would be told of later.
             return QTest::qWaitFor(
                 [&before] {
                     const QStringList now = LiveProgram::movies();
                     return std::any_of(now.begin(), now.end(), [&before](const QString &movie) {
                         return !before.contains(movie) && QFileInfo(movie).size() > 0;
                     });
                 },
                 TIMEOUT_MS);
         },
         nothing, press("ctrl+r")},
        {"settings",
         [this, &program] {
             m_settings = program.openSettings();
             return m_settings != 0;
         },
         nothing, [this, &program] { return program.closeSettings(m_settings); }},
        {"modes", none,
         [this, &program] {
             const char *const modes[] = {"ctrl+2", "ctrl+1", "ctrl+3", "ctrl+1", "ctrl+4"};
             program.pressKeys(modes[static_cast<std::size_t>(m_mode++) % std::size(modes)]);
         },
         press("ctrl+1")},
    };
}

bool ProgramPlugsTest::pictureMoves(ProgramUnderTest &program)
{
    std::optional<quint32> first;
    return QTest::qWaitFor(
        [this, &program, &first] {
            m_told += program.answerDialog();
            const std::optional<quint32> now = LiveProgram::counterOnScreen();
            if (!first)
                first = now;
            return now && *now != *first;
        },
        TIMEOUT_MS);
}

bool ProgramPlugsTest::pullDuring(ProgramUnderTest &program, const Work &work, bool dirty,
                                  int pulls)
{
    const auto failed = [&work](const char *what) {
        std::printf("%s: %s\n", work.name, what);
        return false;
    };
    if (!work.begin())
        return failed("did not begin");
    for (int i = 0; i < pulls; ++i) {
        waitAtRandom();
        work.between();
        pull(dirty);
        waitAtRandom();
        work.between();
        if (!m_camera->plug())
            return failed("not plugged in");
    }
    if (!work.end())
        return failed("did not end");
    return pictureMoves(program) || failed("the picture stayed away");
}

void ProgramPlugsTest::theProgramOutlivesALoosePlug()
{
    QFETCH(bool, dirty);
    ProgramUnderTest program;
    QVERIFY(program.start());
    QVERIFY(program.waitForWindow());
    QVERIFY2(pictureMoves(program), program.output().constData());
    const std::vector<Work> works = worksOf(program);
    // Each once, so that what is made for it for good is there.
    for (const Work &work : works)
        QVERIFY2(pullDuring(program, work, false, 0), program.output().constData());

    const Holding before = holdingOf(program.processId());
    for (const Work &work : works) {
        const Holding then = holdingOf(program.processId());
        QVERIFY2(pullDuring(program, work, dirty, m_pulls), program.output().constData());
        const Holding now = holdingOf(program.processId());
        std::printf("%s, %d %s: %+ld kB, %+d descriptors, %+d threads\n", work.name, m_pulls,
                    dirty ? "dirty pulls" : "clean pulls", now.kilobytes - then.kilobytes,
                    now.descriptors - then.descriptors, now.threads - then.threads);
    }
    const Holding after = holdingOf(program.processId());
    const Allowance &each = dirty ? DIRTY : CLEAN;
    const int pulls = m_pulls * static_cast<int>(works.size());
    std::printf("%d pulls: %+ld kB, %+d descriptors, %+d threads\n", pulls,
                after.kilobytes - before.kilobytes, after.descriptors - before.descriptors,
                after.threads - before.threads);
    QVERIFY(!SYSTEM_ALLOCATOR ||
            after.kilobytes - before.kilobytes <= WORK.kilobytes + pulls * each.kilobytes);
    QVERIFY(after.descriptors - before.descriptors <= WORK.descriptors + pulls * each.descriptors);
    QVERIFY(program.closeAndWait());
    QCOMPARE(program.exitCode(), 0);
    const QStringList movies = LiveProgram::movies();
    QVERIFY(!movies.isEmpty() || m_told > 0);
    for (const QString &file : movies) {
        const MovieFile movie(file);
        QVERIFY2(movie.complaints().isEmpty(), qPrintable(file));
        QVERIFY(movie.duration() > 0);
    }
}

void ProgramPlugsTest::theProgramEndsWhateverThePlugDoes()
{
    QFETCH(bool, dirty);
    for (int i = 0; i < m_pulls; ++i) {
        ProgramUnderTest program;
        QVERIFY(m_camera->plug());
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        waitAtRandom();
        pull(dirty);
        waitAtRandom();
        QVERIFY(m_camera->plug());
        waitAtRandom();
        if (i % 2)
            pull(dirty);
        QElapsedTimer sinceAsked;
        sinceAsked.start();
        QVERIFY2(program.closeAndWait(), program.output().constData());
        std::printf("ended within %lld ms\n", static_cast<long long>(sinceAsked.elapsed()));
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(sinceAsked.elapsed() < ENDS_WITHIN_MS);
    }
}

REGISTER_TEST(ProgramPlugsTest)
#include "tst_program_plugs.moc"
