// skinrender TABLE PALETTE OUT: draws every picture of the table into OUT, once at its own size and
// once at twice that, and writes OUT/skin.qrc, which names them all under ":/icons/".
// The drawings lie beside the table. Any fault stops the build with a line that says where.

#include "tools/skinrender/Drawing.h"
#include "tools/skinrender/SkinTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QSvgRenderer>
#include <QTextStream>

#include <cstdio>

namespace
{

bool fail(const QString &message)
{
    std::fprintf(stderr, "skinrender: %s\n", qPrintable(message));
    return false;
}

bool drawImage(const SkinImage &image, const QString &sourceFolder, const SkinPalette &palette,
               const QString &out)
{
    const QString sourcePath = sourceFolder + '/' + image.source();
    QFile file(sourcePath);
    if (!file.open(QIODevice::ReadOnly))
        return fail(sourcePath + ": " + file.errorString());
    const QByteArray source = file.readAll();
    for (const QString &target : image.targets()) {
        QString error;
        const QByteArray svg =
            SkinTable::substitute(source, palette.value(SkinImage::stateOf(target)), &error);
        if (!error.isEmpty())
            return fail(sourcePath + ": " + error);
        QSvgRenderer drawing(svg);
        if (!drawing.isValid())
            return fail(sourcePath + ": not a drawing");
        if (drawing.defaultSize() != image.size)
            return fail(sourcePath + ": its size differs from the table's");
        const QString path = out + '/' + target;
        if (!Drawing::write(drawing, image.size, path))
            return fail(path + ": cannot write");
        const QString twice = SkinTable::twicePath(path);
        if (image.twice && !Drawing::write(drawing, image.size * 2, twice))
            return fail(twice + ": cannot write");
    }
    return true;
}

// A drawing that no row names would be work that never reaches the program.
bool checkForStrays(const QList<SkinImage> &images, const QString &folder)
{
    QSet<QString> sources;
    for (const SkinImage &image : images) {
        if (sources.contains(image.source()))
            return fail(image.source() + ": named twice");
        sources.insert(image.source());
    }
    const QDir top(folder);
    for (const QString &section : top.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QString &name : QDir(top.filePath(section)).entryList({"*.svg"}, QDir::Files)) {
            if (!sources.contains(section + '/' + name))
                return fail(section + '/' + name + ": missing in the table");
        }
    }
    return true;
}

bool writeResourceFile(const QList<SkinImage> &images, const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(path + ": " + file.errorString());
    QTextStream text(&file);
    text << "<RCC><qresource prefix=\"/icons\">\n";
    for (const SkinImage &image : images) {
        for (const QString &target : image.targets()) {
            text << "<file>" << target << "</file>\n";
            if (image.twice)
                text << "<file>" << SkinTable::twicePath(target) << "</file>\n";
        }
    }
    text << "</qresource></RCC>\n";
    text.flush();
    return file.commit() || fail(path + ": " + file.errorString());
}

bool run(const QStringList &arguments)
{
    if (arguments.size() != 4)
        return fail("usage: skinrender TABLE PALETTE OUT");
    QString error;
    const QList<SkinImage> images = SkinTable::readTable(arguments[1], &error);
    if (!error.isEmpty())
        return fail(error);
    const SkinPalette palette = SkinTable::readPalette(arguments[2], &error);
    if (!error.isEmpty())
        return fail(error);
    const QString folder = QFileInfo(arguments[1]).path();
    if (!checkForStrays(images, folder))
        return false;
    for (const SkinImage &image : images) {
        if (!drawImage(image, folder, palette, arguments[3]))
            return false;
    }
    return writeResourceFile(images, arguments[3] + "/skin.qrc");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return run(QCoreApplication::arguments()) ? 0 : 1;
}
