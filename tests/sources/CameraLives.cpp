#include "tests/sources/CameraLives.h"

#include "tests/sources/LiveRig.h"

#include <QCoreApplication>

namespace
{

const QString LIVE = QStringLiteral("--live");

} // namespace

void CameraLives::add(const char *name, bool dirtyToo)
{
    m_clean.push_back({name, {LIVE, name}, {}});
    m_names.append(name);
    if (!dirtyToo)
        return;
    const QString dirtyName = QString("%1, dirty").arg(name);
    m_dirty.push_back({dirtyName, {LIVE, name}, {DIRTY}});
    m_names.append(dirtyName);
}

int CameraLives::exec(int (*live)(const char *name))
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == LIVE)
        return live(arguments[2].toUtf8().constData());
    return QTest::qExec(this, arguments);
}

void CameraLives::initTestCase()
{
    // A life that records takes a processor: it and its dirty kind do not run at once.
    std::vector<SideBySide::Run> runs = m_clean;
    runs.insert(runs.end(), m_dirty.begin(), m_dirty.end());
    m_runs.start(std::move(runs), m_atOnce);
}

void CameraLives::everyLifeEndsWell_data()
{
    QTest::addColumn<QString>("life");
    for (const QString &name : qAsConst(m_names))
        QTest::newRow(qPrintable(name)) << name;
}

void CameraLives::everyLifeEndsWell()
{
    QFETCH(QString, life);
    const QString fault = m_runs.fault(life);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}
