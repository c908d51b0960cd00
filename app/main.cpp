#include "LocaleCatalogue.h"
#include "mainwindow/MainWindow.h"
#include "resources/translations/Translations.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Quillmark");
    QCoreApplication::setApplicationName("Document Camera");

    initialiseTranslations();
    QTranslator translator;
    const QString file = catalogueForLocale(QLocale::system().name());
    // A failed load is no error: the interface then shows its English source texts.
    if (!translator.load(file, ":/translations"))
        qDebug("no catalogue %s", qPrintable(file));
    QCoreApplication::installTranslator(&translator);

    MainWindow window;
    window.show();
    return QApplication::exec();
}
