#include "sources/film/FilmFaultLines.h"

#include "diagnostics/TerminalLines.h"

using TerminalLines::Line;

void tellFilmFault(FilmFault fault, const QString &path, const QString &missingDecoder)
{
    switch (fault) {
    case FilmFault::Unreadable:
    case FilmFault::BrokenOff:
        TerminalLines::tell(Line::FilmUnreadable, {path});
        break;
    case FilmFault::NoFilm:
        TerminalLines::tell(Line::NotAFilm, {path});
        break;
    case FilmFault::DecoderMissing:
        TerminalLines::tell(Line::DecoderMissing, {path, missingDecoder});
        break;
    case FilmFault::SoundNotAnswering:
        TerminalLines::tell(Line::NoSoundServer);
        break;
    case FilmFault::NoPicture:
    case FilmFault::NotAnswering:
        break;
    }
}
