#include "tools/skinrender/SkinTable.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <functional>

namespace
{

using Row = std::function<bool(const QString &section, const QString &key, const QString &value)>;

// Walks the rows of an ini file in their order; QSettings would sort them.
bool readIni(const QString &path, const Row &row, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = path + ": " + file.errorString();
        return false;
    }
    QTextStream text(&file);
    QString section;
    for (int number = 1; !text.atEnd(); ++number) {
        const QString line = text.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(';'))
            continue;
        if (line.startsWith('[') && line.endsWith(']')) {
            section = line.mid(1, line.size() - 2);
            continue;
        }
        const int equals = line.indexOf('=');
        if (equals < 1 ||
            !row(section, line.left(equals).trimmed(), line.mid(equals + 1).trimmed())) {
            *error = QString("%1:%2: cannot read \"%3\"").arg(path).arg(number).arg(line);
            return false;
        }
    }
    return true;
}

} // namespace

QString SkinImage::source() const
{
    return section + '/' + name + ".svg";
}

QStringList SkinImage::targets() const
{
    const QString file = name + ".png";
    if (section == "top")
        return {file};
    if (section != "states")
        return {section + '/' + file};
    QStringList paths;
    for (const QString &state : SkinTable::states())
        paths << state + '/' + file;
    return paths;
}

QString SkinImage::stateOf(const QString &target)
{
    const QString folder = target.section('/', 0, 0);
    return SkinTable::states().contains(folder) ? folder : QString("Normal");
}

QStringList SkinTable::states()
{
    return {"Normal", "Click", "Over"};
}

QString SkinTable::twicePath(const QString &path)
{
    const int dot = path.lastIndexOf('.');
    return path.left(dot) + "@2x" + path.mid(dot);
}

QList<SkinImage> SkinTable::readTable(const QString &path, QString *error)
{
    static const QRegularExpression pattern("^(\\d+)x(\\d+) (\\w+)( once)?$");
    QList<SkinImage> images;
    const bool ok = readIni(
        path,
        [&images](const QString &section, const QString &key, const QString &value) {
            const QRegularExpressionMatch match = pattern.match(value);
            if (section.isEmpty() || !match.hasMatch())
                return false;
            images << SkinImage{section,
                                key,
                                {match.captured(1).toInt(), match.captured(2).toInt()},
                                match.captured(3),
                                match.captured(4).isEmpty()};
            return true;
        },
        error);
    return ok ? images : QList<SkinImage>();
}

SkinPalette SkinTable::readPalette(const QString &path, QString *error)
{
    SkinPalette palette;
    const bool ok = readIni(
        path,
        [&palette](const QString &section, const QString &key, const QString &value) {
            palette[section].insert(key, value);
            return !section.isEmpty() && !value.isEmpty();
        },
        error);
    return ok ? palette : SkinPalette();
}

QByteArray SkinTable::substitute(const QByteArray &source, const QHash<QString, QString> &values,
                                 QString *error)
{
    static const QRegularExpression token("@(\\w+)@");
    const QString text = QString::fromUtf8(source);
    QString result;
    int from = 0;
    QRegularExpressionMatchIterator matches = token.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString value = values.value(match.captured(1));
        if (value.isEmpty()) {
            *error = "the palette has no " + match.captured(0);
            return {};
        }
        result += text.mid(from, match.capturedStart() - from) + value;
        from = match.capturedEnd();
    }
    return (result + text.mid(from)).toUtf8();
}
