#include "LocaleCatalogue.h"
#include "Platform.h"
#include "mainwindow/MainWindow.h"
#include "resources/Skin.h"
#include "resources/translations/Translations.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

int main(int argc, char **argv)
{
    initialiseSkin();
    initialiseTranslations();
    preparePlatform();
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
