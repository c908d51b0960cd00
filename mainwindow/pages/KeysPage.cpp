#include "mainwindow/pages/Pages.h"

#include "mainwindow/Commands.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QStringList>

#include <algorithm>

namespace
{

QString keysOf(const Commands::Row &row)
{
    QStringList names;
    for (const int key : row.keys) {
        // A sign that is listed both with and without Shift is shown once.
        const int plain = key & ~static_cast<int>(Qt::ShiftModifier);
        if (key != plain && std::count(row.keys.begin(), row.keys.end(), plain))
            continue;
        names << QKeySequence(key).toString(QKeySequence::NativeText);
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

QWidget *Pages::makeKeysPage(const Context &, QWidget *parent)
{
    std::vector<Line> lines;
    for (const Commands::Row &row : Commands::rows()) {
        if (!row.keys.empty())
            lines.push_back({QCoreApplication::translate("MainWindow", row.text), keysOf(row)});
    }
    return makeTable(lines, parent);
}
