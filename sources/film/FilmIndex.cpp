#include "sources/film/FilmIndex.h"

#include "sources/film/AviKeyFrames.h"
#include "sources/film/FragmentedFilm.h"

FilmIndex FilmIndex::of(const QString &path)
{
    return {FragmentedFilm::seconds(path), AviKeyFrames::nanosecondsOf(path)};
}
