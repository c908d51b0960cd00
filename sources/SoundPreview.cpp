#include "sources/SoundPreview.h"

#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "sources/camera/UvcCamera.h"

#include <utility>

namespace
{

/// The camera may have been exchanged since the last recording.
MicrophoneChoice choiceOf(const LiveSource &source)
{
    MicrophoneChoice choice = source.liveRecording().microphone();
    const CameraIdentity &camera = source.camera().identity();
    choice.camera = {camera.vendorId, camera.productId};
    return choice;
}

} // namespace

SoundPreview::SoundPreview(LiveSource &source)
    : m_source(source)
{
}

SoundPreview::~SoundPreview()
{
    rest();
}

void SoundPreview::listen()
{
    if (m_source.recordRequested()) {
        rest();
        return;
    }
    const MicrophoneChoice choice = choiceOf(m_source);
    if (m_capture) {
        if (!(choice == m_choice))
            m_capture->choose(choice);
        m_choice = choice;
        return;
    }
    m_choice = choice;
    m_meter = std::make_shared<SoundMeter>();
    m_capture = SoundCapture::create(choice);
    m_capture->start([meter = m_meter](const SoundBuffer &buffer) { meter->take(buffer); });
}

void SoundPreview::rest()
{
    if (!m_capture)
        return;
    m_capture->stop();
    m_capture.reset();
    m_meter.reset();
}

QString SoundPreview::heard() const
{
    return m_capture ? m_capture->heard() : m_source.liveRecording().state().heard;
}

SoundMeter::Level SoundPreview::level() const
{
    return m_meter ? m_meter->level() : m_source.liveRecording().state().level;
}
