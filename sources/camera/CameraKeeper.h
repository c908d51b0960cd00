#pragma once

#include "sources/camera/CameraStatus.h"
#include "sources/camera/FrameRate.h"
#include "sources/camera/KeeperRules.h"
#include "sources/threads/BoundedWorker.h"
#include "sources/threads/PostedCalls.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <set>

class CameraBus;
class CameraOwner;
class UvcCamera;

/// Brings the camera back when it was unplugged, could not be opened or fell silent, and reports
/// its state. It starts when the program has opened a camera, or tried to, for the first time;
/// until then it leaves the bus alone, unless somebody looks at the list of cameras.
///
/// Belongs to the GUI thread. Whatever touches the bus runs on the thread "CameraKeeper", also the
/// end of a camera that was replaced; the GUI thread waits for none of it. The owner is used until
/// the keeper is destroyed, and by the destructor no more.
class CameraKeeper : public QObject
{
    Q_OBJECT

public:
    explicit CameraKeeper(CameraOwner &owner, QObject *parent = nullptr);
    ~CameraKeeper() override;

    [[nodiscard]] const CameraStatus &status() const { return m_status; }
    /// All cameras on the bus, in its order, as it was listed last.
    [[nodiscard]] const BusCameras &cameras() const { return m_cameras; }
    /// From now on cameras() follows the bus, until the viewer is removed or destroyed.
    void addViewer(QObject *viewer);
    void removeViewer(QObject *viewer);

    /// From now on that camera is kept, and no other is opened.
    void choose(const CameraChoice &choice);
    [[nodiscard]] const CameraChoice &choice() const { return m_choice; }

signals:
    void statusChanged();
    void camerasChanged();

private:
    struct Opened;

    void look();
    [[nodiscard]] bool listingWanted() const;
    void decide(const BusCameras &listed);
    void open(const BusCamera &camera);
    void opened(const std::shared_ptr<Opened> &result);
    void retire(std::unique_ptr<UvcCamera> camera);
    void setState(CameraStatus::State state);

    CameraOwner &m_owner;
    const std::shared_ptr<CameraBus> m_bus;
    PostedCalls m_answers; ///< the worker's
    BoundedWorker m_worker;
    QTimer m_timer;
    QElapsedTimer m_clock;
    KeeperRules m_rules;
    FrameRate m_frameRate;
    CameraStatus m_status;
    BusCameras m_cameras;
    std::set<QObject *> m_viewers;
    CameraChoice m_choice;
    bool m_looking = false;
    bool m_opening = false;
};
