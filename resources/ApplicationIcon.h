#pragma once

#include <QIcon>

/// The program's own icon in the sizes from 16 to 256 pixels, compiled in, so that a window has it
/// also where no icon theme is installed. GUI thread, once the application object stands.
QIcon applicationIcon();
