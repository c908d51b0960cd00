#include "tests/mainwindow/Pointer.h"

#include <QEventLoop>
#include <QProcess>
#include <QProcessEnvironment>
#include <QWidget>

void Pointer::run(const QStringList &arguments)
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    tool.setProcessEnvironment(environment);
    QEventLoop loop;
    QObject::connect(&tool, SIGNAL(finished(int, QProcess::ExitStatus)), &loop, SLOT(quit()));
    tool.start("xdotool", arguments);
    if (!tool.waitForStarted())
        qFatal("xdotool does not start");
    loop.exec();
    if (tool.exitCode() != 0)
        qFatal("xdotool: %s", tool.readAllStandardError().constData());
}

namespace
{

QString number(int value)
{
    return QString::number(value);
}

} // namespace

QPoint Pointer::middle(const QWidget *widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

void Pointer::moveTo(QPoint global)
{
    run({"mousemove", number(global.x()), number(global.y())});
}

void Pointer::press()
{
    run({"mousedown", "1"});
}

void Pointer::release()
{
    run({"mouseup", "1"});
}

void Pointer::click(QPoint global)
{
    run({"mousemove", number(global.x()), number(global.y()), "mousedown", "1", "mouseup", "1"});
}

void Pointer::click(const QWidget *widget)
{
    click(middle(widget));
}

void Pointer::drag(QPoint from, QPoint to)
{
    moveTo(from);
    press();
    constexpr int STEPS = 4;
    for (int i = 1; i <= STEPS; ++i)
        moveTo(from + (to - from) * i / STEPS);
    release();
}

void Pointer::key(const QString &name)
{
    run({"key", name});
}

void Pointer::keyDown(const QString &name)
{
    run({"keydown", name});
}

void Pointer::keyUp(const QString &name)
{
    run({"keyup", name});
}

void Pointer::type(const QString &text)
{
    run({"type", text});
}
