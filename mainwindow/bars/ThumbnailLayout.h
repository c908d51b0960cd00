#pragma once

/// Where the buttons of the thumbnail strip stand; all numbers are pixels or counts.
namespace ThumbnailLayout
{

constexpr int BUTTON_WIDTH = 56;
constexpr int BUTTON_HEIGHT = 50;
constexpr int SPACING = 10;
constexpr int PITCH = BUTTON_WIDTH + SPACING;
constexpr int RIGHT_MARGIN = 40;
constexpr int TOP = 5;

/// The stretch of the strip that is shown: how many buttons, and the x of the first one.
struct View {
    int visibleCount = 0;
    int leftOffset = 0;

    bool operator==(const View &other) const
    {
        return visibleCount == other.visibleCount && leftOffset == other.leftOffset;
    }
};

/// The view of a freshly filled strip of that width: 45 pixels stay free on each side.
[[nodiscard]] View filled(int width, int files);

/// The view after a change of width, which leaves the left offset on its side as it was. Where
/// that old offset leaves no room although the buttons fit, the view of a fresh strip is taken.
[[nodiscard]] View resized(int width, int files, int leftOffset);

/// The first visible index, so that no button outside the list is shown.
[[nodiscard]] int clampedFirst(int first, int visibleCount, int files);

/// The first visible index that just shows picture `id`, at the near edge of the strip.
[[nodiscard]] int firstShowing(int id, int first, int visibleCount);

} // namespace ThumbnailLayout
