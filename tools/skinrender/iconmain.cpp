// iconrender NAME FOLDER OUT: draws the program's icon, FOLDER/NAME.svg, into
// OUT/SIZExSIZE/NAME.png for every size that a desktop shows, and writes OUT/icon.qrc, which names
// those of the window. A drawing FOLDER/NAME-SIZE.svg stands in for the large one at its own size.
// Any fault stops the build with a line that says where.

#include "tools/skinrender/Drawing.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QSvgRenderer>
#include <QTextStream>

#include <cstdio>

namespace
{

const int SIZES[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};
/// A window carries no larger one: window managers show 256 pixels at most.
constexpr int LARGEST_IN_WINDOW = 256;

bool fail(const QString &message)
{
    std::fprintf(stderr, "iconrender: %s\n", qPrintable(message));
    return false;
}

QString fileOf(const QString &name, int size)
{
    return QString("%1x%1/%2.png").arg(size).arg(name);
}

bool drawSize(const QString &name, const QString &folder, const QString &out, int size)
{
    const QString redrawn = QString("%1/%2-%3.svg").arg(folder, name).arg(size);
    const QString source =
        QFile::exists(redrawn) ? redrawn : QString("%1/%2.svg").arg(folder, name);
    QSvgRenderer drawing(source);
    if (!drawing.isValid())
        return fail(source + ": not a drawing");
    const QString path = out + '/' + fileOf(name, size);
    return Drawing::write(drawing, {size, size}, path) || fail(path + ": cannot write");
}

bool writeResourceFile(const QString &name, const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(path + ": " + file.errorString());
    QTextStream text(&file);
    text << "<RCC><qresource prefix=\"/application\">\n";
    for (const int size : SIZES) {
        if (size <= LARGEST_IN_WINDOW)
            text << "<file alias=\"" << size << ".png\">" << fileOf(name, size) << "</file>\n";
    }
    text << "</qresource></RCC>\n";
    text.flush();
    return file.commit() || fail(path + ": " + file.errorString());
}

bool run(const QStringList &arguments)
{
    if (arguments.size() != 4)
        return fail("usage: iconrender NAME FOLDER OUT");
    for (const int size : SIZES) {
        if (!drawSize(arguments[1], arguments[2], arguments[3], size))
            return false;
    }
    return writeResourceFile(arguments[1], arguments[3] + "/icon.qrc");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return run(QCoreApplication::arguments()) ? 0 : 1;
}
