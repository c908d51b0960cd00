#pragma once

#include <functional>

/// Lives while the windows are open. When the display server ends, as it does at the end of a
/// session, the toolkit says so and ends the process on the spot. While this object lives, `end` is
/// called first, once, on the GUI thread, which may close all that is open. One at a time.
class LostDisplay
{
public:
    explicit LostDisplay(std::function<void()> end);
    ~LostDisplay();
    LostDisplay(const LostDisplay &) = delete;
    LostDisplay &operator=(const LostDisplay &) = delete;
};
