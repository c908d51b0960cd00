#include "tools/virtualcamera/run/CameraConsole.h"
#include "tools/virtualcamera/run/Preload.h"
#include "tools/virtualcamera/run/ProgramRunner.h"
#include "tools/virtualcamera/run/RunOptions.h"

#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

namespace
{

int runWithCamera(const RunOptions &options)
{
    Preload::sweepLeftovers();
    VirtualCamera camera(options.camera);
    Preload::markOwner(camera.root().toLocal8Bit().constData());
    return ProgramRunner(options, CameraConsole(camera)).run();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    RunOptions options;
    QString error;
    if (!options.parse(arguments, error)) {
        std::fprintf(stderr, "%s\n\n%s", error.toLocal8Bit().constData(),
                     RunOptions::usage().toLocal8Bit().constData());
        return 2;
    }
    if (options.helpWanted) {
        std::fputs(RunOptions::usage().toLocal8Bit().constData(), stdout);
        return 0;
    }
    if (!Preload::ensure(argv)) {
        std::fputs("virtualcamera-run: the device guard cannot be preloaded\n", stderr);
        return 2;
    }
    if (options.diesWithParent)
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ProgramRunner::blockSignals();

    // The sheet is written with fonts, and these need an application; it shows no window.
    char name[] = "virtualcamera-run", platform[] = "-platform", offscreen[] = "offscreen";
    char *guiArguments[] = {name, platform, offscreen, nullptr};
    int guiCount = 3;
    const QGuiApplication application(guiCount, guiArguments);
    return runWithCamera(options);
}
