#pragma once

class QString;

/// Films in fragments (MP4 with "moof" boxes), whose length no header tells.
namespace FragmentedFilm
{

/// The length in seconds, as its fragments add up; 0 when the file is no such film, or is damaged
/// or too long to be looked through in a second. Waits for the disk.
[[nodiscard]] double seconds(const QString &path);

} // namespace FragmentedFilm
