#pragma once

#include "sources/film/FilmPlayer.h"

/// Tells the terminal why a film is not shown and what helps; nothing for the faults that the
/// message over the picture explains alone. Any thread.
void tellFilmFault(FilmFault fault, const QString &path, const QString &missingDecoder);
