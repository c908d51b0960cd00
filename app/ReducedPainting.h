#pragma once

/// From now on every window whose device pixel ratio is below 1 is painted at that ratio. The
/// toolkit lays such a window out smaller and then paints it at full size, so that most of it is
/// cut off. GUI thread, once, before the first window.
void paintSmallRatios();
