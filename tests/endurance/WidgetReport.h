#pragma once

#include <QJsonArray>
#include <QJsonObject>

class MainWindow;
class QWidget;

/// What stands on the screen: windows, pop-up, dialog, focus, and everything that can be clicked.
/// GUI thread.
namespace WidgetReport
{

[[nodiscard]] QJsonObject state(const MainWindow &window);
/// x, y, width, height on the screen.
[[nodiscard]] QJsonArray place(const QWidget &widget);

} // namespace WidgetReport
