#pragma once

#include <QProcess>
#include <QTest>

/// Plugs and pulls the outputs of a display server whose first one, DUMMY0, is on with 1280x1024.
namespace Outputs
{

/// The second call, which changes nothing, makes the server tell its clients.
inline void xrandr(const QStringList &arguments)
{
    QCOMPARE(QProcess::execute("xrandr", arguments), 0);
    QProcess asked;
    asked.start("xrandr", QStringList());
    QVERIFY(asked.waitForFinished(20000));
}

inline void plug(const QString &output, const QString &mode, const QStringList &where)
{
    QProcess::execute("xrandr", {"--addmode", output, mode});
    xrandr(QStringList{"--output", output, "--mode", mode} + where);
}

inline void pull(const QString &output)
{
    xrandr({"--output", output, "--off"});
}

} // namespace Outputs
