#include "app/LocaleCatalogue.h"
#include "app/Platform.h"
#include "app/ScreenScale.h"
#include "mainwindow/MainWindow.h"
#include "resources/ApplicationIcon.h"
#include "resources/Skin.h"
#include "resources/translations/Translations.h"
#include "sources/gst/MediaPreloader.h"
#include "sources/threads/DetachedThreads.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

#include <chrono>

namespace
{

/// The window is painted by then, and the camera is given two seconds before it is opened.
constexpr std::chrono::milliseconds WARM_UP_DELAY(300);

/// What is left of the two seconds that closing may take, when all else has had its own bound.
constexpr std::chrono::milliseconds END_BOUND(200);

int runProgram(int argc, char **argv)
{
    initialiseSkin();
    initialiseTranslations();
    preparePlatform();
    QApplication application(argc, argv);
    fitScaleToScreen();
    // The scope of the settings; before anything reads them.
    QCoreApplication::setOrganizationName("Quillmark");
    QCoreApplication::setApplicationName("Document Camera");

    QTranslator translator;
    // A catalogue that is not there is no error: the interface then shows its English source texts.
    // Empty rather than null suffix and delimiters: the name is the whole name.
    (void)translator.load(catalogueForLocale(QLocale::system().name()), ":/translations",
                          QStringLiteral(""), QStringLiteral(""));
    QCoreApplication::installTranslator(&translator);

    QApplication::setWindowIcon(applicationIcon());
    MainWindow window;
    window.show();
    const MediaPreloader warmUp(WARM_UP_DELAY);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    DetachedThreads::exitProcess(runProgram(argc, argv), END_BOUND);
}
