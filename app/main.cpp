#include "app/CommandLine.h"
#include "app/ExitSignals.h"
#include "app/FatalMessages.h"
#include "app/LocaleCatalogue.h"
#include "app/LostDisplay.h"
#include "app/Platform.h"
#include "app/ScreenScale.h"
#include "app/UrgentThreads.h"
#include "diagnostics/TerminalLines.h"
#include "mainwindow/MainWindow.h"
#include "resources/ApplicationIcon.h"
#include "resources/Skin.h"
#include "resources/SkinStyle.h"
#include "resources/translations/Translations.h"
#include "settings/StoredSettings.h"
#include "sources/gst/MediaPreloader.h"
#include "sources/threads/DetachedThreads.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QRawFont>
#include <QSettings>
#include <QTranslator>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

using TerminalLines::Line;

namespace
{

/// By then the window is painted, and the camera is not opened before two seconds have passed.
constexpr std::chrono::milliseconds WARM_UP_DELAY(300);

/// The part of the two seconds for closing that is left when every other step took all of its own.
constexpr std::chrono::milliseconds END_TIMEOUT(200);

/// The exit code for a command line that makes no sense.
constexpr int REFUSED = 2;
/// The exit code when the display server ends.
constexpr int DISPLAY_LOST = 1;

std::unique_ptr<QApplication> makeApplication(int &argc, char **argv, const std::string &display)
{
    const FatalMessages fatalMessages(display);
    return std::make_unique<QApplication>(argc, argv);
}

/// Reports what is wrong with the settings file. Returns whether it can be read.
bool checkSettings()
{
    const QSettings settings;
    // A fault in the file is only found when its keys are read.
    (void)settings.allKeys();
    if (settings.status() != QSettings::NoError || QFileInfo(settings.fileName()).isDir()) {
        TerminalLines::tell(Line::SettingsUnreadable, {settings.fileName()});
        return false;
    }
    const QStringList odd = StoredSettings::outOfRange(settings);
    if (!odd.isEmpty())
        TerminalLines::tell(Line::SettingsOutOfRange, {settings.fileName(), odd.join(", ")});
    return true;
}

void tellWhatIsMissing()
{
    // The toolkit lists font families even where no font file is installed.
    if (QRawFont::fromFont(QApplication::font()).fontTable("cmap").isEmpty())
        TerminalLines::tell(Line::NoFont);
}

/// Settings that were changed a moment ago are not on the disk yet.
void writeSettings()
{
    QSettings settings;
    settings.sync();
    if (settings.status() == QSettings::AccessError)
        TerminalLines::tell(Line::SettingsNotWritten, {settings.fileName()});
}

int showWindow(bool settingsAreReadable)
{
    auto window = std::make_unique<MainWindow>();
    const LostDisplay lostDisplay([&window, settingsAreReadable] {
        window.reset();
        if (settingsAreReadable)
            writeSettings();
        DetachedThreads::exitProcess(DISPLAY_LOST, END_TIMEOUT);
    });
    const UrgentThreads urgentThreads;
    window->show();
    const MediaPreloader warmUp(WARM_UP_DELAY);
    return QApplication::exec();
}

int runProgram(int argc, char **argv, const std::string &display)
{
    initialiseSkin();
    initialiseTranslations();
    dropUnusableSettings();
    preparePlatform();
    const std::unique_ptr<QApplication> application = makeApplication(argc, argv, display);
    const ExitSignals exitSignals;
    fitScaleToScreen();
    // All languages of the program are written from left to right, and its layout cannot be
    // mirrored.
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    StoredSettings::nameFiles();
    QGuiApplication::setDesktopFileName("document-camera");
    const bool settingsAreReadable = checkSettings();
    tellWhatIsMissing();

    QTranslator translator;
    // A missing catalogue is no error: the interface then shows its English source texts. The
    // suffix and the delimiters are empty, not null, so that the name is taken as it is.
    (void)translator.load(catalogueForLocale(QLocale::system().name()), ":/translations",
                          QStringLiteral(""), QStringLiteral(""));
    QCoreApplication::installTranslator(&translator);

    SkinStyle::install();
    QApplication::setWindowIcon(applicationIcon());
    const int code = showWindow(settingsAreReadable);
    // A file that cannot be read cannot be written either, and that was reported at the start.
    if (settingsAreReadable)
        writeSettings();
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    const CommandLine commandLine = CommandLine::parse({argv + 1, argv + argc});
    if (commandLine.action != CommandLine::Action::Run) {
        const bool refused = commandLine.action == CommandLine::Action::Refuse;
        std::fputs(commandLine.text.c_str(), refused ? stderr : stdout);
        return refused ? REFUSED : 0;
    }
    DetachedThreads::exitProcess(runProgram(argc, argv, commandLine.display), END_TIMEOUT);
}
