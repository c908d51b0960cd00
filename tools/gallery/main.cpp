// gallery: shows the skin in place, for a person to look at.
//   gallery [--mode live|film|photograph] [--picture FILE] [--save FILE]
//   gallery --widgets [--save FILE]
//   gallery --contact-sheet FILE --table TABLE

#include "resources/SkinStyle.h"
#include "tools/gallery/ContactSheet.h"
#include "tools/gallery/DemoWindow.h"
#include "tools/gallery/WidgetPage.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

namespace
{

bool fail(const QString &message)
{
    std::fprintf(stderr, "gallery: %s\n", qPrintable(message));
    return false;
}

bool saveSheet(const QString &table, const QString &path)
{
    QString error;
    const QList<SkinImage> images = SkinTable::readTable(table, &error);
    if (!error.isEmpty())
        return fail(error);
    return ContactSheet(images, qApp->devicePixelRatio()).draw().save(path) ||
           fail(path + ": cannot write");
}

// Shows the widget, or writes its picture and ends.
int present(QWidget &widget, const QString &path)
{
    if (!path.isEmpty()) {
        widget.ensurePolished();
        return widget.grab().save(path) ? 0 : 1;
    }
    widget.show();
    return QApplication::exec();
}

DemoWindow::Mode modeNamed(const QString &name)
{
    if (name == "film")
        return DemoWindow::Mode::Film;
    return name == "photograph" ? DemoWindow::Mode::Photograph : DemoWindow::Mode::Live;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    SkinStyle::install();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"contact-sheet", "Write every image in every state.", "file"},
                       {"table", "The table of the skin.", "file"},
                       {"widgets", "Show every widget by itself."},
                       {"mode", "Which mode to show.", "name", "live"},
                       {"picture", "What the camera sees.", "file"},
                       {"save", "Write the window instead of showing it.", "file"}});
    parser.process(application);

    if (parser.isSet("contact-sheet"))
        return saveSheet(parser.value("table"), parser.value("contact-sheet")) ? 0 : 1;
    const QString path = parser.value("save");
    if (parser.isSet("widgets")) {
        WidgetPage page;
        return present(page, path);
    }
    const QImage picture = parser.isSet("picture") ? QImage(parser.value("picture")) : QImage();
    DemoWindow window(modeNamed(parser.value("mode")), picture);
    return present(window, path);
}
