// bench_movie_end HOURS KILOBYTES_A_SECOND FILE : appends that much to a movie, half a second at a
// time as a recording does, as fast as the disk takes it. Says what a save and the end cost.
#include "sources/recording/MovieDiskFile.h"
#include "sources/recording/QuickTimeFile.h"

#include <QFileInfo>
#include <QVector>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int PICTURES = 15;
constexpr int PACKETS = 22;
constexpr int PACKET_BYTES = 190;

double seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

QuickTimeFile::Chunk chunk(int track, int first, int count, int bytes, int duration)
{
    QuickTimeFile::Chunk chunk{track, {}, QByteArray(count * bytes, 'x')};
    for (int n = first; n < first + count; ++n) {
        // Pictures come a little early or late, as those of a camera do.
        const qint64 time = qint64{n} * duration + (track == 0 ? n % 7 : 0);
        chunk.samples.append(
            MovieSample{time, static_cast<std::uint32_t>(bytes), track == 1 || n % 30 == 0});
    }
    return chunk;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    const int saves = static_cast<int>(std::atof(argv[1]) * 7200);
    const int pictureBytes = (std::atoi(argv[2]) * 500 - PACKETS * PACKET_BYTES) / PICTURES;
    MovieDiskFile disk(argv[3]);
    QuickTimeFile file(disk);
    file.addTrack({MovieTrack::Kind::Pictures, 90000, QByteArray(100, 'v'), 3000, 1280, 720});
    file.addTrack({MovieTrack::Kind::Sound, 44100, QByteArray(100, 'a'), 1024});
    if (!disk.open())
        return 1;
    QVector<double> costs;
    for (int n = 0; n < saves; ++n) {
        const double before = seconds();
        if (!file.append({chunk(0, n * PICTURES, PICTURES, pictureBytes, 3000),
                          chunk(1, n * PACKETS, PACKETS, PACKET_BYTES, 1024)}))
            return 1;
        costs.append(seconds() - before);
    }
    const qint64 before = QFileInfo(argv[3]).size();
    const double begun = seconds();
    const bool finished = file.finish();
    const double end = seconds() - begun;
    const qint64 content =
        qint64{saves} * (PICTURES * qint64{pictureBytes} + qint64{PACKETS} * PACKET_BYTES);
    const qint64 size = QFileInfo(argv[3]).size();
    std::sort(costs.begin(), costs.end());
    std::printf("finished %d in %.1f ms; a save %.1f ms in the median, %.1f ms at most\n", finished,
                end * 1000, costs[costs.size() / 2] * 1000, costs.constLast() * 1000);
    std::printf(
        "pictures and sound %lld bytes, file %lld before the end and %lld after it: %.3f %% "
        "more than those\n",
        content, before, size,
        static_cast<double>(size - content) * 100 / static_cast<double>(content));
    return 0;
}
