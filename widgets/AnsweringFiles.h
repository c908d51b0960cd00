#pragma once

#include <QString>

/// Lets the toolkit's own file dialog see no file of a drive that does not answer. The dialog asks
/// for files on the GUI thread, where a hung share would hold the program for ever, and on a thread
/// that its destructor waits for.
namespace AnsweringFiles
{

/// While one lives, the toolkit finds nothing on a silent drive: neither on the GUI thread nor on
/// the thread of a file dialog, after a second at most. Other threads ask as ever. GUI thread.
class Active
{
public:
    Active();
    ~Active();
    Active(const Active &) = delete;
    Active &operator=(const Active &) = delete;
};

/// Whether the drive of that absolute path answers, whether the file is there or not; within a
/// second. Any thread.
[[nodiscard]] bool answers(const QString &path);

} // namespace AnsweringFiles
