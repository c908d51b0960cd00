#include "sources/camera/KeeperRules.h"

#include "sources/camera/CameraProfile.h"

#include <algorithm>

using State = CameraStatus::State;

namespace
{

// libuvc's codes; its header stays with those who call it.
constexpr int ERROR_ACCESS = -3;
constexpr int ERROR_BUSY = -6;
constexpr int ERROR_TIMEOUT = -7;
constexpr int ERROR_INVALID_MODE = -51;

} // namespace

KeeperRules::Decision KeeperRules::decide(std::int64_t nowMs, const BusCameras &listed,
                                          const CameraLink &link)
{
    noteArrivals(nowMs, listed);
    if (!link.running) {
        Decision decision;
        decision.state = link.seen ? State::Seen : State::Waiting;
        return decision;
    }
    notePresence(listed, link);
    const bool inUse = link.openResult >= 0 && !link.gone && m_candidate &&
                       m_candidate->isAt(link.busNumber, link.address);
    return inUse ? withCamera(nowMs, link) : withoutCamera(nowMs);
}

void KeeperRules::opened(std::int64_t nowMs, int result)
{
    m_openResult = result;
    m_nextOpenMs = nowMs + RETRY_MS;
    m_nextRestartMs = nowMs + SILENT_RESTART_MS;
    m_restarts = 0;
}

State KeeperRules::stateOf(int openResult)
{
    switch (openResult) {
    case ERROR_ACCESS:
        return State::NoPermission;
    case ERROR_BUSY:
        return State::Busy;
    default:
        return openResult < 0 ? State::NotOpened : State::Seen;
    }
}

void KeeperRules::noteArrivals(std::int64_t nowMs, const BusCameras &listed)
{
    std::map<Place, std::int64_t> arrivals;
    for (const BusCamera &camera : listed) {
        const Place place(camera.busNumber, camera.address);
        const auto before = m_arrivals.find(place);
        arrivals[place] = before == m_arrivals.end() ? nowMs : before->second;
    }
    m_arrivals = std::move(arrivals);
}

void KeeperRules::notePresence(const BusCameras &listed, const CameraLink &link)
{
    // The camera in use is preferred to another one of its make.
    auto found = std::find_if(listed.begin(), listed.end(), [&link](const BusCamera &camera) {
        return camera.isAt(link.busNumber, link.address) && suits(camera, link.choice);
    });
    if (found == listed.end())
        found = std::find_if(listed.begin(), listed.end(), [&link](const BusCamera &camera) {
            return suits(camera, link.choice);
        });
    if (found == listed.end()) {
        m_candidate.reset();
        return;
    }
    if (!m_candidate || !m_candidate->isAt(found->busNumber, found->address)) {
        m_nextOpenMs = m_arrivals.at({found->busNumber, found->address}) + SETTLE_MS;
        m_nextRestartMs = 0;
        m_restarts = 0;
        // A camera that is in use was opened when it had settled.
        m_openResult = found->isAt(link.busNumber, link.address) ? link.openResult : 0;
    }
    m_candidate = *found;
}

KeeperRules::Decision KeeperRules::withoutCamera(std::int64_t nowMs) const
{
    Decision decision;
    if (!m_candidate) {
        decision.state = State::Unplugged;
        return decision;
    }
    decision.state = stateOf(m_openResult);
    if (nowMs >= m_nextOpenMs)
        decision.open = m_candidate;
    else
        decision.dueMs = m_nextOpenMs;
    return decision;
}

KeeperRules::Decision KeeperRules::withCamera(std::int64_t nowMs, const CameraLink &link)
{
    if (link.streamPending)
        return withPendingStream(nowMs, link);
    // Who did not answer has refused nothing.
    if (link.streamWanted && link.streamResult < 0 && link.streamResult != ERROR_TIMEOUT)
        return withoutPictures(nowMs, link, State::NoSuchSize, RETRY_MS);
    if (link.streamWanted && link.sinceFrameMs >= SILENT_MS)
        return withoutPictures(nowMs, link, State::Silent, SILENT_RESTART_MS);
    Decision decision;
    decision.state = State::Seen;
    if (link.frames > 0) {
        m_restarts = 0;
        decision.state = State::Showing;
    }
    return decision;
}

KeeperRules::Decision KeeperRules::withPendingStream(std::int64_t nowMs,
                                                     const CameraLink &link) const
{
    Decision decision;
    decision.state = link.sinceRequestMs >= SILENT_MS ? State::Silent : State::Seen;
    if (link.sinceRequestMs >= HANG_MS && nowMs >= m_nextOpenMs)
        decision.open = m_candidate;
    return decision;
}

KeeperRules::Decision KeeperRules::withoutPictures(std::int64_t nowMs, const CameraLink &link,
                                                   State state, std::int64_t intervalMs)
{
    Decision decision;
    decision.state = state;
    if (link.sinceFrameMs < intervalMs || nowMs < m_nextRestartMs)
        return decision;
    m_nextRestartMs = nowMs + intervalMs;
    // A camera that only lacks the size works, so opening it again would not help.
    if (link.streamResult != ERROR_INVALID_MODE && ++m_restarts > RESTARTS)
        decision.open = m_candidate;
    else
        decision.restartStream = true;
    return decision;
}
