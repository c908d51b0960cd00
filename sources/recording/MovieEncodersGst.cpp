#include "sources/recording/MovieEncoders.h"

#include "sources/gst/PipelineRun.h"
#include "sources/recording/BitRates.h"

#include <QDebug>
#include <QHash>
#include <QMutex>

#include <gst/gst.h>

namespace
{

/// What an element's property "bitrate" counts in.
enum class RateUnit { Bits, Kilobits };

struct Encoder {
    const char *name;
    /// In kilobits a second, whatever the element counts in.
    int bitRate;
    RateUnit unit;
    const char *properties;
    /// It aims at a quality, and is told the quantizer.
    bool hasQuantizer;
    /// Hardware registers encoders that its driver then refuses: they are tried before use.
    bool trusted;
};

constexpr Encoder ENCODERS[] = {
    {"vah264enc", BitRates::PICTURES, RateUnit::Kilobits, "key-int-max=30 b-frames=0", false,
     false},
    {"vah264lpenc", BitRates::PICTURES, RateUnit::Kilobits, "key-int-max=30 b-frames=0", false,
     false},
    {"nvh264enc", BitRates::PICTURES, RateUnit::Kilobits, "gop-size=30 zerolatency=true", false,
     false},
    {"qsvh264enc", BitRates::PICTURES, RateUnit::Kilobits, "gop-size=30 b-frames=0", false, false},
    {"vaapih264enc", BitRates::PICTURES, RateUnit::Kilobits, "keyframe-period=30 max-bframes=0",
     false, false},
    // The element adds the trellis to this preset, which takes a fifth of the encoder's time and
    // makes the movie of a page larger at the same quality.
    {"x264enc", BitRates::PICTURES_LIMIT, RateUnit::Kilobits,
     "speed-preset=superfast tune=zerolatency pass=qual key-int-max=30 trellis=false", true, true},
    {"openh264enc", BitRates::PICTURES, RateUnit::Bits, "gop-size=30 complexity=low", false, true},
};

QString bitRateProperty(int kilobits, RateUnit unit)
{
    return QStringLiteral(" bitrate=%1").arg(unit == RateUnit::Bits ? kilobits * 1000 : kilobits);
}

const Encoder *find(const QString &name)
{
    for (const Encoder &encoder : ENCODERS) {
        if (name == QLatin1String(encoder.name))
            return &encoder;
    }
    return nullptr;
}

bool exists(const QString &name)
{
    GstElementFactory *factory = gst_element_factory_find(name.toUtf8().constData());
    if (factory)
        gst_object_unref(factory);
    return factory != nullptr;
}

/// Encodes three pictures and checks that all went well.
bool encodes(const QString &description, QSize size)
{
    return runPipelineToItsEnd(
        QStringLiteral("videotestsrc num-buffers=3 pattern=black"
                       " ! video/x-raw,format=I420,width=%1,height=%2,framerate=30/1"
                       " ! videoconvert ! %3 ! video/x-h264 ! fakesink sync=false")
            .arg(size.width() & ~1)
            .arg(size.height() & ~1)
            .arg(description)
            .toUtf8());
}

bool works(const QString &name, QSize size)
{
    if (!exists(name))
        return false;
    const Encoder *encoder = find(name);
    if (encoder && encoder->trusted)
        return true;
    static QMutex mutex;
    static QHash<QString, bool> known;
    const QMutexLocker lock(&mutex);
    const QString key = QStringLiteral("%1 %2x%3").arg(name).arg(size.width()).arg(size.height());
    if (!known.contains(key)) {
        known[key] = encodes(MovieEncoders::description(name), size);
        if (!known[key])
            qDebug("The movie encoder %s is there but does not work.", qPrintable(name));
    }
    return known[key];
}

} // namespace

QStringList MovieEncoders::names()
{
    QStringList names;
    for (const Encoder &encoder : ENCODERS)
        names << QLatin1String(encoder.name);
    return names;
}

QString MovieEncoders::description(const QString &name, MovieQuality quality)
{
    const Encoder *encoder = find(name);
    if (!encoder)
        return name;
    const QString quantizer = QStringLiteral(" quantizer=%1").arg(BitRates::quantizerOf(quality));
    return name + bitRateProperty(BitRates::of(quality, encoder->bitRate), encoder->unit) +
           (encoder->hasQuantizer ? quantizer : QString()) + QLatin1Char(' ') +
           QLatin1String(encoder->properties);
}

QString MovieEncoders::soundDescription(MovieQuality quality)
{
    return QStringLiteral("avenc_aac") +
           bitRateProperty(BitRates::of(quality, BitRates::SOUND), RateUnit::Bits);
}

QString MovieEncoders::firstWorking(const QStringList &names, QSize size, MovieQuality quality)
{
    for (const QString &name : names) {
        if (works(name, size))
            return description(name, quality);
    }
    return {};
}
