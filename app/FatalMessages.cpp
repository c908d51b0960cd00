#include "app/FatalMessages.h"

#include "diagnostics/TerminalLines.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace
{

QtMessageHandler keptHandler = nullptr;
std::vector<std::pair<QtMsgType, QString>> kept;
QString chosenDisplay;

QString triedDisplays()
{
    QStringList tried;
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const QString name = QLatin1String(variable);
        if (name == QLatin1String("DISPLAY") && !chosenDisplay.isEmpty())
            tried += QLatin1String("-display ") + chosenDisplay;
        else if (qEnvironmentVariableIsEmpty(variable))
            tried += name + QLatin1String(" is not set");
        else
            tried += name + QLatin1Char('=') + qEnvironmentVariable(variable);
    }
    return tried.join(QLatin1String(", "));
}

void keep(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtFatalMsg) {
        kept.emplace_back(type, message);
        return;
    }
    const QString line =
        TerminalLines::text(TerminalLines::Line::NoDisplay, {triedDisplays()}) + QLatin1Char('\n');
    std::fputs(line.toLocal8Bit().constData(), stderr);
    // Nothing is built yet that would have to be torn down.
    std::_Exit(1);
}

} // namespace

FatalMessages::FatalMessages(const std::string &display)
{
    chosenDisplay = QString::fromLocal8Bit(display.c_str());
    keptHandler = qInstallMessageHandler(keep);
}

FatalMessages::~FatalMessages()
{
    qInstallMessageHandler(keptHandler);
    const QMessageLogContext nowhere;
    for (const auto &[type, message] : std::exchange(kept, {}))
        qt_message_output(type, nowhere, message);
}
