#pragma once

#include <QString>

namespace FilmFile
{

/// Whether the path leads to a regular file of which both ends can be read, where films keep their
/// indexes. Pipes and devices are not touched, as they could block for ever. On a disk that does
/// not answer the call does not return.
[[nodiscard]] bool isReadable(const QString &path);

} // namespace FilmFile
