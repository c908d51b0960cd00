#include "sources/film/AviKeyFrames.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace
{

constexpr qint64 SEARCH_TIMEOUT_MS = 1000;
constexpr qint64 CHUNK_HEADER = 8;
/// The header of the film is far smaller.
constexpr qint64 LARGEST_HEADER = 1 << 20;
/// As much of a picture is read as its kind may stand in.
constexpr qint64 PICTURE_START = 256;
constexpr double NANOSECONDS = 1e9;
constexpr double LATEST = 1e18;

quint32 numberAt(const QByteArray &bytes, int at)
{
    return at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at) : 0;
}

/// What follows each start code (0, 0, 1), until `take` returns a value.
template <class Take>
bool fromStartCodes(const QByteArray &picture, const Take &take)
{
    for (int at = 0; at + 5 < picture.size(); ++at) {
        if (picture[at] != 0 || picture[at + 1] != 0 || picture[at + 2] != 1)
            continue;
        const auto byte = [&](int n) { return static_cast<uchar>(picture[at + 3 + n]); };
        if (const std::optional<bool> needsNone = take(byte))
            return *needsNone;
    }
    return false;
}

bool isMpeg4KeyFrame(const QByteArray &picture)
{
    return fromStartCodes(picture, [](const auto &byte) -> std::optional<bool> {
        if (byte(0) == 0xb6)
            return byte(1) >> 6 == 0;
        // A sequence or its layer, which a key frame follows.
        return byte(0) == 0xb0 || byte(0) >> 4 == 2 ? std::optional(true) : std::nullopt;
    });
}

bool isMpeg2KeyFrame(const QByteArray &picture)
{
    return fromStartCodes(picture, [](const auto &byte) -> std::optional<bool> {
        if (byte(0) == 0x00)
            return (byte(2) >> 3 & 7) == 1;
        return byte(0) == 0xb3 ? std::optional(true) : std::nullopt;
    });
}

bool isH264KeyFrame(const QByteArray &picture)
{
    return fromStartCodes(picture, [](const auto &byte) -> std::optional<bool> {
        const int unit = byte(0) & 0x1f;
        if (unit == 1)
            return false;
        return unit == 5 || unit == 7 ? std::optional(true) : std::nullopt;
    });
}

/// MPEG-4 as one maker had it before the standard, and what became of it.
bool isEarlyMpeg4KeyFrame(const QByteArray &picture)
{
    return !picture.isEmpty() && static_cast<uchar>(picture[0]) >> 6 == 0;
}

struct Codec {
    const char *code;
    bool (*isKeyFrame)(const QByteArray &picture);
};

constexpr std::array CODECS{
    Codec{"XVID", isMpeg4KeyFrame},      Codec{"DIVX", isMpeg4KeyFrame},
    Codec{"DX50", isMpeg4KeyFrame},      Codec{"FMP4", isMpeg4KeyFrame},
    Codec{"MP4V", isMpeg4KeyFrame},      Codec{"M4S2", isMpeg4KeyFrame},
    Codec{"H264", isH264KeyFrame},       Codec{"X264", isH264KeyFrame},
    Codec{"AVC1", isH264KeyFrame},       Codec{"MPG1", isMpeg2KeyFrame},
    Codec{"MPG2", isMpeg2KeyFrame},      Codec{"MPEG", isMpeg2KeyFrame},
    Codec{"MP42", isEarlyMpeg4KeyFrame}, Codec{"MP43", isEarlyMpeg4KeyFrame},
    Codec{"DIV3", isEarlyMpeg4KeyFrame}, Codec{"WMV1", isEarlyMpeg4KeyFrame}};

struct Chunk {
    QByteArray kind;
    qint64 content = 0;
    /// The file's end, where the chunk is cut off or its size was never written.
    qint64 end = 0;
    bool whole = false;
};

std::optional<Chunk> chunkAt(QFile &file, qint64 at)
{
    if (!file.seek(at))
        return {};
    const QByteArray header = file.read(CHUNK_HEADER);
    if (header.size() < CHUNK_HEADER)
        return {};
    const qint64 size = numberAt(header, 4);
    const qint64 content = at + CHUNK_HEADER;
    const qint64 end = content + size + size % 2;
    return Chunk{header.left(4), content, std::min(end, file.size()), end <= file.size()};
}

/// One file, from its start to its last whole picture.
class Avi
{
public:
    explicit Avi(QFile &file)
        : m_file(file)
    {
    }

    /// False when nothing has to be found out, or it cannot be.
    bool readHeader()
    {
        if (!m_file.seek(0) || m_file.read(4) != "RIFF" || !m_file.seek(8) ||
            m_file.read(4) != "AVI ")
            return false;
        for (auto chunk = chunkAt(m_file, 12); chunk; chunk = chunkAt(m_file, chunk->end)) {
            const QByteArray list = chunk->kind == "LIST" ? m_file.read(4) : QByteArray();
            const qint64 content = chunk->content + 4;
            if (list == "movi") {
                m_pictures = content;
                m_picturesEnd = chunk->end > content ? chunk->end : m_file.size();
                return m_codec && m_rate > 0 && m_scale > 0 && !indexFollows(*chunk);
            }
            if (list == "hdrl" && chunk->end - content < LARGEST_HEADER)
                readStreams(m_file.read(chunk->end - content));
        }
        return false;
    }

    std::vector<qint64> keyFrames()
    {
        QElapsedTimer search;
        search.start();
        std::vector<qint64> found;
        qint64 number = 0;
        qint64 at = m_pictures;
        while (const auto chunk = chunkAt(m_file, at)) {
            if (search.hasExpired(SEARCH_TIMEOUT_MS))
                return {};
            if (chunk->end > m_picturesEnd)
                break;
            const bool record = chunk->kind == "LIST";
            at = record ? chunk->content + 4 : chunk->end;
            if (!chunk->kind.startsWith(m_picture))
                continue;
            const qint64 bytes = std::min(PICTURE_START, chunk->end - chunk->content);
            if (m_codec->isKeyFrame(m_file.read(bytes)))
                found.push_back(timeOf(number));
            ++number;
        }
        return static_cast<qint64>(found.size()) < number ? found : std::vector<qint64>();
    }

private:
    [[nodiscard]] qint64 timeOf(qint64 number) const
    {
        const double pictureNanoseconds =
            NANOSECONDS * static_cast<double>(m_scale) / static_cast<double>(m_rate);
        const double time = static_cast<double>(number) * pictureNanoseconds;
        return static_cast<qint64>(std::ceil(std::min(time, LATEST)));
    }

    [[nodiscard]] bool indexFollows(const Chunk &pictures)
    {
        if (!pictures.whole || pictures.end <= pictures.content + 4)
            return false;
        const auto next = chunkAt(m_file, pictures.end);
        return next && next->kind == "idx1";
    }

    void readStreams(const QByteArray &header)
    {
        int stream = 0;
        for (int at = 0; at + CHUNK_HEADER <= header.size();) {
            const QByteArray kind = header.mid(at, 4);
            const quint32 size = numberAt(header, at + 4);
            at += static_cast<int>(CHUNK_HEADER);
            if (kind == "LIST") { // its chunks come next
                at += 4;
                continue;
            }
            if (size > static_cast<quint32>(header.size() - at))
                return;
            readField(kind, header.mid(at, static_cast<int>(size)), stream);
            at += static_cast<int>(size + size % 2);
        }
    }

    void readField(const QByteArray &kind, const QByteArray &field, int &stream)
    {
        if (kind == "strh") {
            m_isPicture = field.startsWith("vids") && m_picture.isEmpty();
            if (m_isPicture) {
                m_picture = QByteArray::number(stream).rightJustified(2, '0') + 'd';
                m_scale = numberAt(field, 20);
                m_rate = numberAt(field, 24);
            }
            ++stream;
        } else if (kind == "strf" && m_isPicture) {
            const QByteArray code = field.mid(16, 4).toUpper();
            const auto codec = std::find_if(CODECS.begin(), CODECS.end(),
                                            [&](const Codec &each) { return code == each.code; });
            m_codec = codec == CODECS.end() ? nullptr : &*codec;
        } else if (kind == "indx" && m_isPicture && numberAt(field, 4) > 0) {
            m_codec = nullptr; // there is an index of another kind
            m_isPicture = false;
        }
    }

    QFile &m_file;
    const Codec *m_codec = nullptr;
    /// How the kind of its chunks begins.
    QByteArray m_picture;
    bool m_isPicture = false;
    qint64 m_scale = 0;
    qint64 m_rate = 0;
    qint64 m_pictures = 0;
    qint64 m_picturesEnd = 0;
};

} // namespace

std::vector<qint64> AviKeyFrames::nanosecondsOf(const QString &path)
{
    // Only a little is read of each picture.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    Avi avi(file);
    return avi.readHeader() ? avi.keyFrames() : std::vector<qint64>();
}
