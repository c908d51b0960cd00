#pragma once

#include <string>

/// Lives while the application object is made: without a display the toolkit prints several lines
/// there and aborts. While this object lives, messages are kept back. A fatal one ends the process
/// with exit code 1 and one line that says which display was tried; the others are passed on when
/// the object is destroyed. One at a time, GUI thread.
class FatalMessages
{
public:
    /// `display` is what the command line names, empty without it.
    explicit FatalMessages(const std::string &display);
    ~FatalMessages();
    FatalMessages(const FatalMessages &) = delete;
    FatalMessages &operator=(const FatalMessages &) = delete;
};
