#include "tools/virtualcamera/run/RunOptions.h"

#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/run/ForeignCamera.h"

#include <algorithm>

bool RunOptions::parse(const QStringList &arguments, QString &error)
{
    bool startsPlugged = true;
    int i = 0;
    for (; i < arguments.size() && arguments[i] != QLatin1String("--"); ++i) {
        const QString &name = arguments[i];
        if (name == QLatin1String("--help")) {
            helpWanted = true;
            return true;
        }
        if (name == QLatin1String("--die-with-parent")) {
            diesWithParent = true;
            continue;
        }
        if (name == QLatin1String("--unplugged")) {
            startsPlugged = false;
            continue;
        }
        if (name == QLatin1String("--controls")) {
            camera.controls = ForeignMake::usualControls();
            continue;
        }
        if (i + 1 == arguments.size()) {
            error = QStringLiteral("%1 is unknown or lacks its value").arg(name);
            return false;
        }
        if (!parseOption(name, arguments[++i], error))
            return false;
    }
    program = arguments.mid(i + 1);
    if (program.isEmpty()) {
        error = QStringLiteral("no program to run");
        return false;
    }
    if (startsPlugged && script.empty())
        firstCommands.append(QStringLiteral("plug"));
    return true;
}

bool RunOptions::parseOption(const QString &name, const QString &value, QString &error)
{
    if (name == QLatin1String("--transport")) {
        const bool isochronous = value == QLatin1String("iso");
        camera.transport = isochronous ? VirtualCameraConfig::Transport::Isochronous
                                       : VirtualCameraConfig::Transport::Bulk;
        if (!isochronous && value != QLatin1String("bulk")) {
            error = QStringLiteral("the transport is iso or bulk, not %1").arg(value);
            return false;
        }
    } else if (name == QLatin1String("--banner")) {
        camera.banner = value;
    } else if (name == QLatin1String("--serial")) {
        camera.serial = value;
    } else if (name == QLatin1String("--fps")) {
        camera.framesPerSecond = value.toInt();
        if (camera.framesPerSecond < 1 || camera.framesPerSecond > 240) {
            error = QStringLiteral("the frames a second are 1 to 240, not %1").arg(value);
            return false;
        }
    } else if (name == QLatin1String("--make") || name == QLatin1String("--formats")) {
        const bool made = name == QLatin1String("--make")
                              ? ForeignCamera::setMake(camera, value)
                              : ForeignCamera::setFormats(camera, value);
        if (!made)
            error = QStringLiteral("%1 does not take %2").arg(name, value);
        return made;
    } else if (name == QLatin1String("--product")) {
        camera.product = value;
    } else if (name == QLatin1String("--fault")) {
        firstCommands.append(QStringLiteral("fault ") + QString(value).replace('=', ' '));
    } else if (name == QLatin1String("--commands")) {
        commandPath = value;
    } else if (name == QLatin1String("--script")) {
        return parseScript(value, error);
    } else {
        error = QStringLiteral("unknown option %1").arg(name);
        return false;
    }
    return true;
}

bool RunOptions::parseScript(const QString &text, QString &error)
{
    for (const QString &part : text.split(';', Qt::SkipEmptyParts)) {
        bool isNumber = false;
        ScriptStep step;
        step.seconds = part.section(':', 0, 0).toDouble(&isNumber);
        step.command = part.section(':', 1).trimmed();
        if (!isNumber || step.command.isEmpty()) {
            error = QStringLiteral("a step of the script is seconds:command, not %1").arg(part);
            return false;
        }
        script.push_back(step);
    }
    std::stable_sort(script.begin(), script.end(), [](const ScriptStep &a, const ScriptStep &b) {
        return a.seconds < b.seconds;
    });
    return true;
}

QString RunOptions::usage()
{
    return QStringLiteral(
        "virtualcamera-run [OPTION...] -- PROGRAM [ARGUMENT...]\n"
        "Runs a program that finds an emulated document camera on its USB bus.\n"
        "\n"
        "  --transport bulk|iso   how the pictures travel (bulk)\n"
        "  --banner TEXT          the heading of the sheet under the camera\n"
        "  --serial TEXT          the camera's serial number\n"
        "  --fps NUMBER           frames a second (30)\n"
        "  --make VENDOR:PRODUCT  the numbers of another make, which has no vendor's unit\n"
        "  --product TEXT         what the camera is called\n"
        "  --formats FORMATS      \"mjpeg:1920x1080,3840x2160@25;yuyv:640x480\"\n"
        "  --controls             with the controls of the class, from brightness to zoom\n"
        "  --unplugged            start with the camera unplugged\n"
        "  --script STEPS         \"SECONDS:COMMAND;...\" from the program's start; the camera is\n"
        "                         then unplugged until the script plugs it in\n"
        "  --fault NAME[=COUNT]   a fault that is there from the start\n"
        "  --commands FIFO        take commands, one a line, from there; - is the standard input\n"
        "  --die-with-parent      end the program when the parent of this one ends\n"
        "\n"
        "Commands: plug, unplug, unplug dirty, fault NAME [COUNT], parameter ID VALUE,\n"
        "stats [FILE], quit\n");
}
