#pragma once

/// What screen readers are told of the painted widgets: the buttons' options, the strips' values.
namespace WidgetAccessibles
{

/// Registers them with the toolkit, once a process. GUI thread.
void install();

} // namespace WidgetAccessibles
