#include "tests/SideBySide.h"

#include "tests/Timeout.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <utility>

namespace
{

/// How long a run may take, with the wait for those before it.
constexpr int RUN_TIMEOUT_MS = 200000;
/// These processes mostly wait, so that two suit the two processors of a small machine.
/// One where each takes a processor instead of waiting.
constexpr int FUNCTIONS_AT_ONCE = SLOWER == 1 ? 2 : 1;

QProcessEnvironment environmentWith(const QStringList &variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : variables)
        environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    return environment;
}

} // namespace

void SideBySide::start(std::vector<Run> runs, int atOnce)
{
    m_waiting.assign(std::make_move_iterator(runs.begin()), std::make_move_iterator(runs.end()));
    for (int i = 0; i < atOnce; ++i)
        startNext();
}

SideBySide::~SideBySide()
{
    m_waiting.clear();
    for (auto &[name, run] : m_processes) {
        run.process.disconnect();
        run.process.kill();
        run.process.waitForFinished();
    }
}

QString SideBySide::fault(const QString &name)
{
    const auto ended = [this, &name] { return m_processes[name].ended; };
    if (!QTest::qWaitFor(ended, RUN_TIMEOUT_MS))
        return "still running: " + QString::fromUtf8(m_processes[name].process.readAll());
    QProcess &process = m_processes[name].process;
    if (process.error() == QProcess::FailedToStart)
        return "not started";
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return QString();
    return QString("exit code %1: ").arg(process.exitCode()) + QString::fromUtf8(process.readAll());
}

void SideBySide::startNext()
{
    if (m_waiting.empty())
        return;
    const Run run = std::move(m_waiting.front());
    m_waiting.pop_front();
    Process &entry = m_processes[run.name];
    const auto end = [this, &entry] {
        if (!std::exchange(entry.ended, true))
            startNext();
    };
    QObject::connect(&entry.process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     end);
    QObject::connect(&entry.process, &QProcess::errorOccurred, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end();
    });
    entry.process.setProcessEnvironment(environmentWith(run.variables));
    entry.process.setProcessChannelMode(QProcess::MergedChannels);
    entry.process.start(QCoreApplication::applicationFilePath(), run.arguments);
}

FunctionsSideBySide::FunctionsSideBySide(const char *file)
    : m_subject(QFileInfo(QString::fromUtf8(file)).completeBaseName().mid(int(sizeof("tst_")) - 1))
{
}

bool FunctionsSideBySide::named()
{
    return QCoreApplication::arguments().size() > 1;
}

void FunctionsSideBySide::initTestCase()
{
    m_functions = listFunctions();
    std::vector<SideBySide::Run> runs;
    for (const QString &function : qAsConst(m_functions))
        runs.push_back({function, {m_subject, function}, {}});
    QVERIFY(!runs.empty());
    m_runs.start(std::move(runs), FUNCTIONS_AT_ONCE);
}

void FunctionsSideBySide::every_data()
{
    QTest::addColumn<QString>("function");
    for (const QString &function : qAsConst(m_functions))
        QTest::newRow(qPrintable(function)) << function;
}

void FunctionsSideBySide::every()
{
    QFETCH(QString, function);
    const QString fault = m_runs.fault(function);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

/// As the class lists them itself: each line holds the name of the class, of a function and of one
/// of its rows.
QStringList FunctionsSideBySide::listFunctions() const
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {m_subject, "-datatags"});
    if (!process.waitForFinished(RUN_TIMEOUT_MS))
        return {};
    QStringList functions;
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split('\n');
    for (const QString &line : lines) {
        const QString row = line.section(' ', 2);
        if (line.contains(' '))
            functions.append(line.section(' ', 1, 1) + (row.isEmpty() ? row : ':' + row));
    }
    return functions;
}
