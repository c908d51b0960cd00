// What this program itself reads of a film's file: its length, when it is in fragments or a short
// transport stream, and the key frames of an AVI film without an index; and the size in which a
// film of some size and shape of pixels is shown.

#include "sources/film/FilmFormat.h"
#include "sources/film/FilmIndex.h"

#include <QFile>
#include <QSize>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void readIndex(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath("film");
    QFile file(path);
    const auto *bytes = reinterpret_cast<const char *>(data);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes, qint64(size)) != qint64(size))
        return;
    file.close();
    const FilmIndex index = FilmIndex::of(path);
    // In nanoseconds, too, it is a number.
    require(std::isfinite(index.seconds) && index.seconds >= 0 && index.seconds <= 1e9);
    require(index.keyFrames.size() <= size);
    require(std::is_sorted(index.keyFrames.begin(), index.keyFrames.end()));
    require(index.keyFrames.empty() || index.keyFrames.front() >= 0);
}

void readFormat(const std::uint8_t *data, std::size_t size)
{
    // A decoder gives no larger pictures.
    constexpr int LARGEST = 32767;
    std::int32_t numbers[4];
    if (size < sizeof numbers)
        return;
    std::memcpy(numbers, data + size - sizeof numbers, sizeof numbers);
    const QSize stored(1 + std::abs(numbers[0] % LARGEST), 1 + std::abs(numbers[1] % LARGEST));
    const QSize shown = FilmFormat::shownSize(stored, numbers[2], numbers[3]);
    require(!shown.isEmpty() && std::max(shown.width(), shown.height()) <= 3840 &&
            std::min(shown.width(), shown.height()) <= 2160);
    const int lines = FilmFormat::televisionLines(stored);
    require(lines == 0 || lines == 525 || lines == 625);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    readIndex(data, size);
    readFormat(data, size);
    return 0;
}
