#pragma once

#include "mainwindow/Commands.h"

class CommandButtons;
class ImageButton;
class QWidget;

/// The buttons of a bar under the picture.
namespace BarButtons
{

/// Makes the buttons of a group from left to right and adds them to the window's.
void create(Commands::Group group, QWidget *bar, CommandButtons *buttons);

} // namespace BarButtons
