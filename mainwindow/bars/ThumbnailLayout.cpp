#include "mainwindow/bars/ThumbnailLayout.h"

#include <algorithm>

using namespace ThumbnailLayout;

namespace
{

constexpr int BOTH_MARGINS = 90;

View centred(int width, int files, int room)
{
    // Division toward zero: a strip too narrow for one button may have negative room.
    const int count = std::clamp(room / PITCH, 0, files);
    return {count, (width - PITCH * count) / 2};
}

} // namespace

View ThumbnailLayout::filled(int width, int files)
{
    return centred(width, files, width - BOTH_MARGINS);
}

View ThumbnailLayout::resized(int width, int files, int leftOffset)
{
    const View view = centred(width, files, width - leftOffset - RIGHT_MARGIN);
    return view.visibleCount < 1 ? filled(width, files) : view;
}

int ThumbnailLayout::clampedFirst(int first, int visibleCount, int files)
{
    return std::clamp(first, 0, std::max(files - visibleCount, 0));
}

int ThumbnailLayout::firstShowing(int id, int first, int visibleCount)
{
    if (id < first)
        return id;
    if (id >= first + visibleCount)
        return id + 1 - visibleCount;
    return first;
}
