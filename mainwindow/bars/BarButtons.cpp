#include "mainwindow/bars/BarButtons.h"

#include "mainwindow/CommandButtons.h"
#include "widgets/ImageButton.h"

#include <QCoreApplication>

namespace
{

constexpr int BAR_FIRST = 20;
constexpr int PITCH = 40;
constexpr int BAR_TOP = 5;

} // namespace

void BarButtons::create(Commands::Group group, QWidget *bar, CommandButtons *buttons)
{
    int x = BAR_FIRST;
    for (const Commands::Row &row : Commands::rowsOf(group)) {
        auto *button = new ImageButton(row.skin, bar, x, BAR_TOP);
        button->setCheckable((row.look & Commands::Checkable) != 0);
        const QString name = QCoreApplication::translate("MainWindow", row.text);
        button->setAccessibleName(name);
        button->setToolTip(name);
        buttons->add(row.command, button);
        x += PITCH;
    }
}
