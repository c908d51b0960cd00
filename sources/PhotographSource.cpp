#include "sources/PhotographSource.h"

#include "sources/ICaptureCB.h"
#include "sources/WindowServices.h"
#include "sources/photographs/PhotographList.h"
#include "sources/photographs/PicturePreloader.h"

#include <optional>
#include <utility>

PhotographSource::PhotographSource(ICaptureCB *callback, MainWindow *window)
    : QObject(WindowServices::of(window).object())
    , m_callback(callback)
    , m_window(window)
{
    m_slideshow.setSingleShot(false);
    connect(&m_slideshow, SIGNAL(timeout()), this, SLOT(nextPhotograph()));
}

PhotographSource::~PhotographSource() = default;

// Other code is built against this signature, so the folder stays a value.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool PhotographSource::setDirectory(QDir dir, QString fileName)
{
    const bool isSilent = isOpen(dir) && m_preloader->isSilent();
    const std::optional<FolderLister::Listing> listing = m_lister.list(dir, fileName, isSilent);
    const int found = listing ? listing->names.indexOf(fileName) : -1;
    m_refusal = !listing            ? PictureProblem::NoAnswer
                : !listing->hasFile ? PictureProblem::Gone
                : found < 0         ? PictureProblem::Unreadable
                                    : PictureProblem::None;
    if (found < 0)
        return false;

    m_slideshow.stop();
    m_openedFileName = std::move(fileName);
    open(dir, listing->names);
    WindowServices::of(m_window).refreshThumbnails();
    selectPhotograph(found);
    return true;
}

void PhotographSource::open(QDir dir, const QStringList &names)
{
    const bool sameFolder = isOpen(dir);
    m_hasDir = true;
    m_dir = std::move(dir);
    m_fileNames = names;
    // The threads of a folder whose drive does not answer are given up with it.
    if (sameFolder && m_problem != PictureProblem::NoAnswer)
        return;
    m_preloader =
        std::make_unique<PicturePreloader>([this, post = m_calls.post()](const QString &path) {
            post([this, path] { takeLate(path); });
        });
    const QString folder = m_dir.absolutePath();
    m_watch = std::make_unique<FolderWatch>(
        m_dir, names, [this, folder, post = m_calls.post()](const FolderWatch::Change &change) {
            post([this, folder, change] {
                if (folder == m_dir.absolutePath())
                    takeChange(change);
            });
        });
}

bool PhotographSource::isOpen(const QDir &dir) const
{
    return m_hasDir && dir.absolutePath() == m_dir.absolutePath();
}

int PhotographSource::photographCount() const
{
    return m_fileNames.size();
}

void PhotographSource::setPlayInterval(int ms)
{
    m_playIntervalMs = ms;
}

int PhotographSource::playInterval() const
{
    return m_playIntervalMs;
}

bool PhotographSource::playing() const
{
    return m_slideshow.isActive();
}

QStringList PhotographSource::fileNameList() const
{
    QStringList paths;
    paths.reserve(m_fileNames.size());
    for (int id = 0; id < m_fileNames.size(); ++id)
        paths.append(pathOf(id));
    return paths;
}

QString PhotographSource::pathOf(int id) const
{
    return m_dir.filePath(m_fileNames.at(id));
}

void PhotographSource::selectPhotograph(int id)
{
    if (id < 0 || id >= photographCount())
        return;
    const bool forward = id >= m_current || playing();
    m_stepIsDue = false;
    m_current = id;
    deliver();
    prepareNeighbours(forward);
}

void PhotographSource::deliver()
{
    {
        const PicturePreloader::Reading reading = m_preloader->take(pathOf(m_current));
        m_problem = reading.problem;
        m_callback->imageCaptured(reading.picture);
    }
    emit photographChanged(m_current);
}

void PhotographSource::prepareNeighbours(bool forward)
{
    const int count = photographCount();
    const int next = PhotographList::wrappedIndex(m_current, count);
    const int previous = PhotographList::previousIndex(m_current);
    QStringList paths;
    for (const int id : {forward ? next : previous, m_current, forward ? previous : next}) {
        if (!paths.contains(pathOf(id)))
            paths.append(pathOf(id));
    }
    m_preloader->prepare(paths);
}

void PhotographSource::takeLate(const QString &path)
{
    if (m_problem == PictureProblem::NoAnswer && path == pathOf(m_current))
        deliver();
    const int next = PhotographList::wrappedIndex(m_current, photographCount());
    if (m_stepIsDue && playing() && path == pathOf(next))
        selectPhotograph(next);
    else
        prepareNeighbours(true);
}

void PhotographSource::takeChange(const FolderWatch::Change &change)
{
    const QString shown = m_fileNames.at(m_current);
    m_fileNames = PhotographList::merged(m_fileNames, change.names);
    m_current = m_fileNames.indexOf(shown);
    emit folderChanged(m_current);
    if (change.written.contains(shown))
        deliver();
    prepareNeighbours(true);
}

void PhotographSource::pauseCapture()
{
    m_callback->stopAutoRefresh();
}

void PhotographSource::resumeCapture()
{
    if (m_hasDir)
        setDirectory(m_dir, m_openedFileName);
    m_callback->startAutoRefresh();
}

void PhotographSource::play()
{
    m_stepIsDue = false;
    m_slideshow.setInterval(m_playIntervalMs);
    m_slideshow.start();
    if (m_preloader)
        prepareNeighbours(true);
}

void PhotographSource::stop()
{
    m_slideshow.stop();
    emit playDone();
}

void PhotographSource::previous()
{
    m_slideshow.stop();
    selectPhotograph(PhotographList::previousIndex(m_current));
}

void PhotographSource::next()
{
    m_slideshow.stop();
    selectPhotograph(PhotographList::nextIndex(m_current, photographCount()));
}

void PhotographSource::nextPhotograph()
{
    const int index = PhotographList::wrappedIndex(m_current, photographCount());
    if (index < 0)
        return;
    // A picture that is still being read must not hold the window: the step is made when it comes.
    m_stepIsDue = playing() && !m_preloader->request(pathOf(index));
    if (!m_stepIsDue)
        selectPhotograph(index);
}
