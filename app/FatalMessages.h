#pragma once

/// Around the making of the application object: without a display the toolkit says several lines
/// and aborts. While this object lives, its messages are kept; a fatal one ends the process with
/// one line that says which display was tried, exit code 1. Otherwise they are passed on when the
/// object goes. One at a time, GUI thread.
class FatalMessages
{
public:
    FatalMessages();
    ~FatalMessages();
    FatalMessages(const FatalMessages &) = delete;
    FatalMessages &operator=(const FatalMessages &) = delete;
};
