#include "sources/film/TransportStream.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

namespace
{

constexpr int LARGEST_FILE = 512 * 1024;
constexpr int PACKET_BYTES = 188;
/// Cameras write a time before each packet.
constexpr int TIMED_PACKET_BYTES = 192;
constexpr uchar SYNC = 0x47;

/// Times count in ticks, 33 bits long.
constexpr double TICKS_PER_SECOND = 90000;
constexpr qint64 TICKS_RANGE = qint64{1} << 33;
/// A longer way from one picture to the next is a damaged time.
constexpr qint64 LONGEST_STEP = qint64{10} * 90000;

/// In a packet: whether an elementary packet begins in it, and whether there are other fields
/// first.
constexpr uchar BEGINS = 0x40;
constexpr uchar HAS_FIELDS = 0x20;
constexpr int PACKET_HEADER = 4;

// In an elementary packet, which begins with 00 00 01 and the kind of its stream.
constexpr uchar KIND_MASK = 0xf0;
constexpr uchar PICTURES = 0xe0;
constexpr int FLAGS = 7;
constexpr uchar HAS_TIME = 0x80;
constexpr int TIME = 9;
constexpr int TIME_BYTES = 5;

/// When the picture that begins in that packet is to be shown, in ticks.
std::optional<qint64> pictureTime(const uchar *packet)
{
    if (packet[0] != SYNC || !(packet[1] & BEGINS))
        return std::nullopt;
    const int begin = PACKET_HEADER + (packet[3] & HAS_FIELDS ? 1 + packet[PACKET_HEADER] : 0);
    if (begin + TIME + TIME_BYTES > PACKET_BYTES)
        return std::nullopt;
    const uchar *bytes = packet + begin;
    if (bytes[0] != 0 || bytes[1] != 0 || bytes[2] != 1 || (bytes[3] & KIND_MASK) != PICTURES ||
        !(bytes[FLAGS] & HAS_TIME))
        return std::nullopt;
    const uchar *time = bytes + TIME;
    return qint64{time[0] & 0x0e} << 29 | qint64{time[1]} << 22 | qint64{time[2] & 0xfe} << 14 |
           qint64{time[3]} << 7 | qint64{time[4]} >> 1;
}

/// From one time to another, which may be the earlier one, over the end of the range or not.
qint64 step(qint64 from, qint64 to)
{
    const qint64 forward = (to - from + TICKS_RANGE) % TICKS_RANGE;
    return forward < TICKS_RANGE / 2 ? forward : forward - TICKS_RANGE;
}

/// The times of all pictures, from that of the first one on, in their order.
std::vector<qint64> pictureTimes(const QByteArray &content)
{
    const auto isSync = [&content](int at) {
        return at < content.size() && static_cast<uchar>(content[at]) == SYNC;
    };
    const bool timed = !isSync(0);
    const int each = timed ? TIMED_PACKET_BYTES : PACKET_BYTES;
    const int first = each - PACKET_BYTES;
    std::vector<qint64> times;
    std::optional<qint64> before;
    for (int at = first; isSync(first) && at + PACKET_BYTES <= content.size(); at += each) {
        const auto time = pictureTime(reinterpret_cast<const uchar *>(content.constData()) + at);
        const qint64 way = time && before ? step(*before, *time) : 0;
        if (!time || std::abs(way) > LONGEST_STEP)
            continue;
        times.push_back(times.empty() ? 0 : times.back() + way);
        before = time;
    }
    std::sort(times.begin(), times.end());
    return times;
}

} // namespace

double TransportStream::seconds(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > LARGEST_FILE)
        return 0;
    const std::vector<qint64> times = pictureTimes(file.read(LARGEST_FILE));
    if (times.size() < 2)
        return 0;
    const qint64 last = times.back();
    const qint64 lastShows = last - times[times.size() - 2];
    return static_cast<double>(last - times.front() + lastShows) / TICKS_PER_SECOND;
}
