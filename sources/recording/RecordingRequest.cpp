#include "sources/recording/RecordingRequest.h"

void RecordingRequest::open(const QString &fileName)
{
    m_state = State::Requested;
    m_paused = false;
    m_fileName = fileName;
    ++m_number;
    m_failureTold = false;
}

void RecordingRequest::begin()
{
    if (requested())
        m_state = State::Begun;
}

void RecordingRequest::end()
{
    m_state = State::None;
    m_paused = false;
}

void RecordingRequest::setPaused(bool paused)
{
    m_paused = paused && requested();
}

bool RecordingRequest::takeFailure(int number)
{
    if (number != m_number || m_failureTold)
        return false;
    m_failureTold = true;
    return true;
}
