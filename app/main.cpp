#include "LocaleCatalogue.h"
#include "mainwindow/MainWindow.h"
#include "resources/Skin.h"
#include "resources/translations/Translations.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

namespace
{

/// Window moves, global positions and the placing of tool windows beside their buttons do nothing
/// under Wayland: X11 comes first unless the user has chosen.
void preferX11()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
}

} // namespace

int main(int argc, char **argv)
{
    initialiseSkin();
    initialiseTranslations();
    preferX11();
    // On a sharp screen layouts keep their sizes and the images come at twice theirs.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    // The scope of the settings; before anything reads them.
    QCoreApplication::setOrganizationName("Quillmark");
    QCoreApplication::setApplicationName("Document Camera");

    QTranslator translator;
    // A catalogue that is not there is no error: the interface then shows its English source texts.
    // Empty rather than null suffix and delimiters: the name is the whole name.
    (void)translator.load(catalogueForLocale(QLocale::system().name()), ":/translations",
                          QStringLiteral(""), QStringLiteral(""));
    QCoreApplication::installTranslator(&translator);

    MainWindow window;
    window.show();
    return QApplication::exec();
}
