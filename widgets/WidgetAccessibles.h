#pragma once

/// What screen readers are told about the painted widgets: the buttons' options, the sliders'
/// values.
namespace WidgetAccessibles
{

/// Registers them with the toolkit, once a process. GUI thread.
void install();

} // namespace WidgetAccessibles
