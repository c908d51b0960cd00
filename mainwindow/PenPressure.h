#pragma once

class CanvasDeck;

/// Whether a pen draws wider when it is pressed harder: the user's choice, off at first, kept in
/// the preferences. GUI thread.
namespace PenPressure
{

[[nodiscard]] bool isOn();
/// Tells all canvases of the deck what is chosen.
void apply(const CanvasDeck &deck);
void choose(bool on, const CanvasDeck &deck);

} // namespace PenPressure
