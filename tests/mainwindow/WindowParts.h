#pragma once

#include "tests/mainwindow/WindowProbe.h"

#include <QStringList>

namespace WindowProbe
{

/// The widgets that come and go with the modes: those that are shown, sorted.
QStringList shownParts(const MainWindow &window);

} // namespace WindowProbe
