#include "sources/film/FilmIndex.h"

#include "sources/film/AviKeyFrames.h"
#include "sources/film/FragmentedFilm.h"
#include "sources/film/TransportStream.h"

#include <algorithm>

FilmIndex FilmIndex::of(const QString &path)
{
    const double shortStream = TransportStream::seconds(path);
    return {std::max(FragmentedFilm::seconds(path), shortStream), AviKeyFrames::nanosecondsOf(path),
            shortStream > 0};
}
