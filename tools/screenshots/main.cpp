#include "tools/screenshots/Tour.h"

#include "app/LocaleCatalogue.h"
#include "app/Platform.h"
#include "app/ScreenScale.h"
#include "mainwindow/MainWindow.h"
#include "resources/SkinStyle.h"
#include "resources/translations/Translations.h"
#include "settings/StoredSettings.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>
#include <QLocale>
#include <QScreen>
#include <QTimer>
#include <QTranslator>

/// screenshots FOLDER [--language | --recording] [--film FILE] [--photograph FILE]: on a display of
/// 1920 x 1080 with a window manager and a camera; see make-screenshots. The language follows the
/// locale, as the program's.
int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    preparePlatform();
    QApplication application(argc, argv);
    fitScaleToScreen();
    StoredSettings::nameFiles();
    QCommandLineParser parser;
    parser.addOption({"film", "a film to show", "file"});
    parser.addOption({"photograph", "a photograph to show with its folder", "file"});
    parser.addOption({"language", "take only what a language has to fit"});
    parser.addOption({"recording", "take only what is seen of a recording"});
    parser.addPositionalArgument("folder", "where the pictures go");
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    initialiseTranslations();
    QTranslator translator;
    if (!translator.load(catalogueForLocale(QLocale::system().name()), ":/translations"))
        qDebug("in English");
    QCoreApplication::installTranslator(&translator);
    SkinStyle::install();

    QWidget desktop;
    desktop.setAttribute(Qt::WA_X11NetWmWindowTypeDesktop);
    desktop.setAttribute(Qt::WA_QuitOnClose, false);
    desktop.setPalette(QColor(0x8A, 0x93, 0x9E));
    desktop.setGeometry(QGuiApplication::primaryScreen()->geometry());
    desktop.show();

    MainWindow window;
    // A display of more dots an inch has fewer units: the window then stands at its top.
    const QSize room = QGuiApplication::primaryScreen()->size() - window.size();
    window.move(qMin(200, room.width()), qBound(0, room.height() - 60, 100));
    window.show();
    Tour tour(&window, QDir(parser.positionalArguments().first()), parser.value("film"),
              parser.value("photograph"));
    QTimer::singleShot(0, &window, [&] {
        tour.prepare();
        if (parser.isSet("recording")) {
            tour.takeRecording();
            window.close();
            return;
        }
        if (parser.isSet("language")) {
            tour.runLanguage();
            window.close();
            return;
        }
        tour.run("938x768", true);
        tour.runHighlights();
        window.expand();
        Photographer::waitFor([&] { return window.width() == 800; });
        tour.run("800x768", false);
        window.expand();
        window.showMaximized();
        Photographer::waitFor([&] { return window.isMaximized() && window.width() > 1900; });
        tour.run("maximised", true);
        window.close();
    });
    return QApplication::exec();
}
