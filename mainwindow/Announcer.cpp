#include "mainwindow/Announcer.h"

#include "canvas/OSDProcessor.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Commands.h"

#include <QAccessible>
#include <QCoreApplication>

Announcer::Announcer(const CanvasDeck *deck, QWidget *window)
    : QWidget(window)
{
    hide();
    for (const OSDProcessor *indications : deck->allIndications())
        connect(indications, &OSDProcessor::indicated, this, &Announcer::say);
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
}
