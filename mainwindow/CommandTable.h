#pragma once

#include "mainwindow/Commands.h"

#include <vector>

/// The parts of the table, in the order of the commands.
namespace Commands
{

[[nodiscard]] std::vector<Row> notingRows();
[[nodiscard]] std::vector<Row> panelRows();
[[nodiscard]] std::vector<Row> modeRows();
[[nodiscard]] std::vector<Row> barRows();
[[nodiscard]] std::vector<Row> edgeRows();
[[nodiscard]] std::vector<Row> cardRows();
[[nodiscard]] std::vector<Row> keyRows();

} // namespace Commands
