#include "sources/LiveSource.h"

#include "sources/LiveSourcePrivate.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace
{

constexpr int FRAMES_PER_SECOND = 30;
constexpr int POLL_INTERVAL_MS = 500;
/// After this time a late answer of the bus is asked for again.
constexpr int LATE_ANSWER_MS = 20;
// A camera that has just been plugged in needs this long before it can be opened reliably.
constexpr qint64 SETTLE_MS = 2001;

} // namespace

LiveSource::LiveSource(ICaptureCB *callback, QSize resolution, QSize recordingResolution,
                       QObject *parent)
    : LiveSourceBase(parent)
    , m_private(std::make_unique<LiveSourcePrivate>(callback,
                                                    [this] { return m_presenceTimer.isValid(); }))
    , m_resolution(resolution)
    , m_recordingResolution(recordingResolution)
{
    connect(&m_existenceTimer, SIGNAL(timeout()), this, SLOT(checkExistance()));
    connect(&m_private->recording, &LiveRecording::failed, this, &LiveSource::recordFailed);
    checkExistance();
    m_existenceTimer.start(POLL_INTERVAL_MS);
}

LiveSource::~LiveSource()
{
    if (m_running)
        tearDownCaptureGraph();
}

bool LiveSource::running() const
{
    return m_running;
}

int LiveSource::ksPropSet(unsigned long property, void *data, unsigned long length)
{
    const auto selector = static_cast<std::uint8_t>(property & 0xFF);
    if (m_private->usesStandardControls())
        return m_private->settings.write(selector, data, length);
    return m_private->controls->write(selector, data, length);
}

int LiveSource::ksPropGet(unsigned long property, void *data, unsigned long length)
{
    const auto selector = static_cast<std::uint8_t>(property & 0xFF);
    if (m_private->usesStandardControls())
        return m_private->settings.read(selector, data, length);
    return m_private->controls->read(selector, data, length);
}

void LiveSource::initUVCControl()
{
    m_private->camera->findExtensionUnit();
    m_private->settings.use(*m_private->camera);
}

CameraSettings &LiveSource::cameraSettings()
{
    return m_private->settings;
}

bool LiveSource::cameraZooms() const
{
    return !m_private->camera->lacksExtensionUnit() || m_private->settings.zooms();
}

void LiveSource::startCapture()
{
    // The frame of a running stream is replaced; it must not be written to any more.
    if (m_private->camera->streaming())
        tearDownCaptureGraph();
    createCaptureGraph(false);
}

void LiveSource::stopCapture()
{
    if (m_running)
        tearDownCaptureGraph();
}

void LiveSource::pauseCapture() {}

void LiveSource::resumeCapture() {}

void LiveSource::startRecord(const QString &fileName)
{
    if (m_running)
        requestRecord(fileName);
}

void LiveSource::requestRecord(const QString &fileName)
{
    if (m_running)
        tearDownCaptureGraph();
    m_private->recording.request(fileName);
    beginRecording();
}

void LiveSource::beginRecording()
{
    createCaptureGraph(true);
    m_private->recording.awaitPicture();
}

void LiveSource::stopRecord()
{
    if (!m_running) {
        m_private->recording.withdraw();
        return;
    }
    tearDownCaptureGraph();
    createCaptureGraph(false);
}

void LiveSource::setResolution(QSize resolution)
{
    if (resolution == m_resolution)
        return;
    if (m_running)
        tearDownCaptureGraph();
    m_resolution = resolution;
    if (!std::exchange(m_previewSize, QSize()).isEmpty())
        emit previewSizeDropped();
    createCaptureGraph(false);
}

void LiveSource::setPreviewSize(QSize size)
{
    m_previewSize = size;
    if (!m_streamSize || recording() || *m_streamSize == wantedSize())
        return;
    tearDownCaptureGraph();
    createCaptureGraph(false);
}

std::vector<QSize> LiveSource::cameraSizes() const
{
    return m_private->camera->sizes();
}

/// Of the preview.
QSize LiveSource::wantedSize() const
{
    const std::vector<QSize> sizes = cameraSizes();
    const bool offered = std::find(sizes.begin(), sizes.end(), m_previewSize) != sizes.end();
    return offered ? m_previewSize : m_resolution;
}

void LiveSource::setRecordingResolution(QSize resolution)
{
    m_recordingResolution = resolution;
}

void LiveSource::setMirrored(Qt::Orientations directions)
{
    m_private->mirrored = directions;
}

Qt::Orientations LiveSource::mirrored() const
{
    return m_private->mirrored;
}

bool LiveSource::recording() const
{
    return m_private->recording.begun();
}

bool LiveSource::recordRequested() const
{
    return m_private->recording.requested();
}

LiveRecording &LiveSource::liveRecording()
{
    return m_private->recording;
}

const LiveRecording &LiveSource::liveRecording() const
{
    return m_private->recording;
}

CameraLink LiveSource::cameraLink() const
{
    CameraLink link;
    m_private->camera->report(link);
    link.seen = m_presenceTimer.isValid();
    link.running = m_running;
    link.choice = m_choice;
    return link;
}

const UvcCamera &LiveSource::camera() const
{
    return *m_private->camera;
}

std::unique_ptr<UvcCamera> LiveSource::takeOver(std::unique_ptr<UvcCamera> camera)
{
    // The frame thread of one camera is done before that of the other begins.
    m_private->camera->stopDelivery();
    std::swap(m_private->camera, camera);
    m_private->controls =
        std::make_unique<CameraControls>(*m_private->camera, *m_private->controls);
    initUVCControl();
    // Another camera may have other sizes.
    if (m_streamSize && !recording())
        m_streamSize = wantedSize();
    restartStream();
    return camera;
}

std::unique_ptr<UvcCamera> LiveSource::choose(const CameraChoice &choice)
{
    m_choice = choice;
    if (suits(m_private->camera->identity(), choice) && m_running)
        return nullptr;
    m_presenceTimer.invalidate();
    m_opening = false;
    std::unique_ptr<UvcCamera> before = takeOver(std::make_unique<UvcCamera>());
    // What is known of the one says nothing about the other.
    m_private->controls = std::make_unique<CameraControls>(*m_private->camera);
    return before;
}

void LiveSource::restartStream()
{
    if (!m_streamSize)
        return;
    m_private->camera->startStreaming(
        *m_streamSize, FRAMES_PER_SECOND,
        [d = m_private.get()](void *rgb, int width, int height, qint64 microseconds) {
            d->frameArrived(rgb, width, height, microseconds);
        },
        [d = m_private.get()](QSize size) {
            return d->callback->memoryForFrame(size.width(), size.height());
        });
}

void LiveSource::checkExistance()
{
    if (m_running)
        return;
    if (m_opening) {
        openCamera();
        return;
    }
    const std::optional<bool> found = m_private->camera->find(m_choice);
    if (!found) {
        askAgainSoon();
        return;
    }
    if (!*found) {
        m_presenceTimer.invalidate();
        return;
    }
    qDebug("DEVICE FOUND");
    if (!m_presenceTimer.isValid()) {
        m_presenceTimer.start();
        return;
    }
    if (m_presenceTimer.elapsed() >= SETTLE_MS)
        openCamera();
}

void LiveSource::openCamera()
{
    const std::optional<int> result = m_private->camera->open();
    m_opening = !result;
    if (m_opening) {
        askAgainSoon();
        return;
    }
    // A camera that cannot be opened counts as running all the same: every operation on it fails at
    // once, until the keeper hands over one that could be opened.
    if (*result < 0) {
        qDebug("uvc_open() failed.");
        m_private->camera->tellOpenFailure(*result);
    }
    m_running = true;
    initUVCControl();
    if (recordRequested())
        beginRecording();
    else
        createCaptureGraph(false);
}

void LiveSource::askAgainSoon()
{
    if (m_askingAgain)
        return;
    m_askingAgain = true;
    QTimer::singleShot(LATE_ANSWER_MS, this, [this] {
        m_askingAgain = false;
        checkExistance();
    });
}

void LiveSource::createCaptureGraph(bool record)
{
    if (!m_running)
        return;
    if (record)
        m_private->recording.begin();
    m_streamSize = record ? m_recordingResolution : wantedSize();
    // The constructor comes here too, and its own version is the right one then.
    // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.VirtualCall)
    restartStream();
    if (!record)
        return;
    const CameraIdentity &camera = m_private->camera->identity();
    m_private->recording.record(m_private->camera->sizeFor(*m_streamSize),
                                {camera.vendorId, camera.productId});
}

void LiveSource::tearDownCaptureGraph()
{
    // No further picture is delivered. The end of the stream itself may take longer, and the movie
    // does not wait for it.
    m_private->camera->stopDelivery();
    m_private->camera->stopStreaming();
    m_streamSize.reset();
    m_private->recording.finish();
}
