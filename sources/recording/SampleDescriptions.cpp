#include "sources/recording/SampleDescriptions.h"

#include "sources/recording/AtomWriter.h"

#include <initializer_list>

namespace
{

constexpr std::uint32_t SAMPLES_IN_PACKET = 1024;

QByteArray bytesOf(const AtomWriter &out)
{
    return out.pieces().constFirst().bytes;
}

/// A descriptor of ISO 14496-1 of less than 128 bytes.
QByteArray descriptor(char tag, const QByteArray &content)
{
    return QByteArray(1, tag) + static_cast<char>(content.size()) + content;
}

void putElementaryStream(AtomWriter &out, const QByteArray &configuration)
{
    constexpr char STREAM = 3;
    constexpr char DECODER = 4;
    constexpr char DECODER_SPECIFIC = 5;
    constexpr char SYNCHRONISATION = 6;
    QByteArray decoder;
    decoder += char(0x40); // MPEG-4 sound
    decoder += char(0x15); // a stream of sound
    decoder += QByteArray(3 + 4 + 4, '\0');
    decoder += descriptor(DECODER_SPECIFIC, configuration);
    const QByteArray number(3, '\0');
    out.begin("esds");
    out.put32(0);
    out.put(descriptor(STREAM, number + descriptor(DECODER, decoder) +
                                   descriptor(SYNCHRONISATION, QByteArray(1, 2))));
    out.end();
}

} // namespace

QByteArray SampleDescriptions::h264(QSize pictureSize, const QByteArray &configuration)
{
    constexpr std::uint32_t DOTS_AN_INCH = 72U << 16;
    AtomWriter out(0);
    out.begin("avc1");
    out.zeros(6);
    out.put16(1); // the first data reference
    out.zeros(16);
    out.put16(static_cast<std::uint16_t>(pictureSize.width()));
    out.put16(static_cast<std::uint16_t>(pictureSize.height()));
    out.put32(DOTS_AN_INCH);
    out.put32(DOTS_AN_INCH);
    out.zeros(4);
    out.put16(1);  // one picture a sample
    out.zeros(32); // no name
    out.put16(24); // colours without transparency
    out.put16(0xFFFF);
    out.begin("avcC");
    out.put(configuration);
    out.end();
    out.begin("colr");
    out.put("nclc");
    for (const int code : {1, 1, 6}) // primaries and curve of BT.709, matrix of BT.601
        out.put16(static_cast<std::uint16_t>(code));
    out.end();
    out.begin("pasp");
    out.put32(1);
    out.put32(1);
    out.end();
    out.end();
    return bytesOf(out);
}

QByteArray SampleDescriptions::aac(int sampleRate, const QByteArray &configuration)
{
    AtomWriter out(0);
    out.begin("mp4a");
    out.zeros(6);
    out.put16(1); // the first data reference
    out.put16(1); // version 1, with the four numbers below
    out.zeros(6);
    out.put16(1);  // one channel
    out.put16(16); // bits of a sample, when decoded
    out.put16(0xFFFE);
    out.zeros(2);
    out.put32(static_cast<std::uint32_t>(sampleRate) << 16);
    for (const std::uint32_t value : {SAMPLES_IN_PACKET, 0u, 0u, 2u})
        out.put32(value);
    out.begin("wave");
    out.begin("frma");
    out.put("mp4a");
    out.end();
    out.begin("mp4a");
    out.zeros(4);
    out.end();
    putElementaryStream(out, configuration);
    out.put32(8); // the end of the list
    out.zeros(4);
    out.end();
    out.end();
    return bytesOf(out);
}
