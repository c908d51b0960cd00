#pragma once

#include <QByteArray>
#include <QSize>

/// What a QuickTime movie tells a player about its streams: entries of the atom "stsd".
namespace SampleDescriptions
{

/// H.264 with BT.601's matrix in the primaries of any screen. `configuration` is the content of
/// the atom "avcC".
QByteArray h264(QSize pictureSize, const QByteArray &configuration);

/// One channel of AAC. `configuration` is the AudioSpecificConfig of ISO 14496-3.
QByteArray aac(int sampleRate, const QByteArray &configuration);

} // namespace SampleDescriptions
