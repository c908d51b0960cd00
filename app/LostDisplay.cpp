#include "app/LostDisplay.h"

#include <QCoreApplication>
#include <QString>
#include <QThread>

#include <utility>

namespace
{

QtMessageHandler handlerBefore = nullptr;
std::function<void()> endOnce;

/// The toolkit announces it by no other means.
bool tellsTheEnd(const QString &message)
{
    return message.startsWith(QLatin1String("The X11 connection broke")) ||
           message.startsWith(QLatin1String("The Wayland connection broke"));
}

void look(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (handlerBefore)
        handlerBefore(type, context, message);
    if (!tellsTheEnd(message) || QThread::currentThread() != QCoreApplication::instance()->thread())
        return;
    // Closing the windows may cause the same message again.
    if (const auto end = std::exchange(endOnce, {}))
        end();
}

} // namespace

LostDisplay::LostDisplay(std::function<void()> end)
{
    endOnce = std::move(end);
    handlerBefore = qInstallMessageHandler(look);
}

LostDisplay::~LostDisplay()
{
    qInstallMessageHandler(handlerBefore);
    endOnce = {};
}
