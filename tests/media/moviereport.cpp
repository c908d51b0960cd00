// moviereport FILE: what a movie of recordprobe holds, and how far its claps are from its flashes.
#include "MovieFile.h"

#include <algorithm>
#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const MovieFile movie(QString::fromLocal8Bit(argv[1]));
    const QVector<MovieFile::Picture> pictures = movie.pictures();
    const QVector<double> lags = movie.clapsAfterFlashes();
    std::printf("brand \"%s\", %.3f s, %d pictures, complaints: \"%s\"\n",
                qPrintable(movie.container()), movie.duration(), int{pictures.size()},
                qPrintable(movie.complaints()));
    int missing = 0;
    for (int n = 1; n < pictures.size(); ++n)
        missing += ((pictures[n].number - pictures[n - 1].number - 1) & 0xFFFF);
    std::printf("%d pictures missing between the first and the last\n", missing);
    if (lags.isEmpty())
        return 0;
    std::printf("%d claps; after their flashes by: first %.1f ms, last %.1f ms, least %.1f ms, "
                "most %.1f ms\n",
                int{lags.size()}, lags.first() * 1e3, lags.last() * 1e3,
                *std::min_element(lags.begin(), lags.end()) * 1e3,
                *std::max_element(lags.begin(), lags.end()) * 1e3);
    return 0;
}
