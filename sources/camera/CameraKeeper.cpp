#include "sources/camera/CameraKeeper.h"

#include "sources/camera/CameraBus.h"
#include "sources/camera/CameraOwner.h"
#include "sources/camera/UvcCamera.h"
#include "sources/camera/UvcConnection.h"
#include "sources/threads/DetachedThreads.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr int INTERVAL_MS = 500;
/// The time limit for opening a camera. A working one takes a few tens of milliseconds.
constexpr std::chrono::milliseconds OPEN_TIMEOUT{3000};
/// The time limit for releasing the interfaces of the previous camera, which the system keeps while
/// it waits for that camera's answer.
constexpr std::chrono::milliseconds RELEASE_TIMEOUT{500};

void releaseWithin(std::chrono::milliseconds bound,
                   const std::shared_ptr<UvcConnection> &connection)
{
    BoundedWorker worker("CameraRelease");
    (void)worker.call(bound, [connection] {
        const DetachedThreads::Running running;
        connection->release();
        return 0;
    });
}

} // namespace

/// A camera that was opened, or could not be.
struct CameraKeeper::Opened {
    std::unique_ptr<UvcCamera> camera;
    int result = 0;
};

CameraKeeper::CameraKeeper(CameraOwner &owner, QObject *parent)
    : QObject(parent)
    , m_owner(owner)
    , m_bus(std::make_shared<CameraBus>())
    , m_worker("CameraKeeper")
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &CameraKeeper::look);
    look();
}

CameraKeeper::~CameraKeeper() = default;

void CameraKeeper::look()
{
    m_timer.start(INTERVAL_MS);
    if (m_looking || m_opening)
        return;
    if (!listingWanted()) {
        decide({});
        return;
    }
    m_looking = true;
    m_worker.post([this, bus = m_bus, post = m_answers.post()] {
        const DetachedThreads::Running running;
        post([this, listed = bus->cameras()] {
            m_looking = false;
            decide(listed);
            if (m_cameras == listed)
                return;
            m_cameras = listed;
            emit camerasChanged();
        });
        return 0;
    });
}

bool CameraKeeper::listingWanted() const
{
    // Before the first camera the owner looks for it by itself.
    return !m_viewers.empty() || m_owner.cameraLink().running;
}

void CameraKeeper::addViewer(QObject *viewer)
{
    if (!m_viewers.insert(viewer).second)
        return;
    connect(viewer, &QObject::destroyed, this, &CameraKeeper::removeViewer);
    look();
}

void CameraKeeper::removeViewer(QObject *viewer)
{
    if (m_viewers.erase(viewer))
        disconnect(viewer, &QObject::destroyed, this, &CameraKeeper::removeViewer);
}

void CameraKeeper::decide(const BusCameras &listed)
{
    const std::int64_t now = m_clock.elapsed();
    const KeeperRules::Decision decision = m_rules.decide(now, listed, m_owner.cameraLink());
    if (decision.open)
        open(*decision.open);
    else if (decision.restartStream)
        m_owner.restartStream();
    if (decision.dueMs)
        m_timer.start(
            static_cast<int>(std::clamp<std::int64_t>(*decision.dueMs - now, 1, INTERVAL_MS)));
    setState(decision.state);
}

void CameraKeeper::open(const BusCamera &camera)
{
    m_opening = true;
    // Otherwise a camera in use that hangs, or that has lost its device node, would keep its
    // interfaces.
    m_worker.post([this, camera, post = m_answers.post(), before = m_owner.camera().connection()] {
        const DetachedThreads::Running running;
        releaseWithin(RELEASE_TIMEOUT, before);
        auto opened = std::make_shared<Opened>();
        opened->camera = std::make_unique<UvcCamera>();
        opened->result = opened->camera->openWithin(OPEN_TIMEOUT, camera);
        post([this, opened] { this->opened(opened); });
        return 0;
    });
}

void CameraKeeper::opened(const std::shared_ptr<Opened> &result)
{
    m_opening = false;
    m_rules.opened(m_clock.elapsed(), result->result);
    // Another one may have been chosen meanwhile.
    const bool wanted = suits(result->camera->identity(), m_choice);
    if (result->result < 0 || !wanted)
        retire(std::move(result->camera));
    else
        retire(m_owner.takeOver(std::move(result->camera)));
    look();
}

void CameraKeeper::choose(const CameraChoice &choice)
{
    if (m_choice == choice)
        return;
    m_choice = choice;
    retire(m_owner.choose(choice));
    look();
}

void CameraKeeper::retire(std::unique_ptr<UvcCamera> camera)
{
    if (!camera)
        return;
    m_worker.post([last = std::shared_ptr<UvcCamera>(std::move(camera))]() mutable {
        const DetachedThreads::Running running;
        last.reset();
        return 0;
    });
}

void CameraKeeper::setState(CameraStatus::State state)
{
    const CameraLink link = m_owner.cameraLink();
    m_frameRate.note(m_clock.elapsed(), link.frames);
    CameraStatus status;
    status.state = state;
    status.size = link.size;
    if (state == CameraStatus::State::Showing)
        status.framesPerSecond = std::round(m_frameRate.perSecond() * 10.0) / 10.0;
    status.framesLost = link.lost;
    status.wantedSize = link.wantedSize;
    status.chosen = m_choice.has_value();
    status.vendorId = m_choice ? m_choice->vendorId : link.identity.vendorId;
    status.productId = m_choice ? m_choice->productId : link.identity.productId;
    if (status == m_status)
        return;
    m_status = status;
    emit statusChanged();
}
