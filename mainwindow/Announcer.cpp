#include "mainwindow/Announcer.h"

#include "canvas/OSDProcessor.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/CanvasMessage.h"
#include "mainwindow/Commands.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>

namespace
{

QAccessibleInterface *notificationOf(const QString &className, QObject *object)
{
    if (className != QLatin1String("Announcer"))
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Notification);
}

} // namespace

Announcer::Announcer(const CanvasDeck *deck, QWidget *window)
    : QWidget(window)
{
    static const bool known = [] {
        QAccessible::installFactory(notificationOf);
        return true;
    }();
    Q_UNUSED(known)
    hide();
    for (const OSDProcessor *indications : deck->allIndications())
        connect(indications, &OSDProcessor::indicated, this, &Announcer::say);
    for (const CanvasMessage *message : window->findChildren<CanvasMessage *>())
        connect(message, &CanvasMessage::said, this, &Announcer::say);
    connect(deck, &CanvasDeck::currentChanged, this, [this](int mode) {
        const Command command = Command(int(Command::LiveMode) + mode);
        say(QCoreApplication::translate("MainWindow", Commands::row(command).text));
    });
}

void Announcer::say(const QString &text)
{
    setAccessibleName(text);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    // The toolkit's bridge to the screen readers of this desktop passes no alert on. They read a
    // notification when they are told that it is shown.
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}
