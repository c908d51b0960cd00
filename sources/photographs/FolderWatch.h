#pragma once

#include <QDir>
#include <QStringList>

#include <functional>
#include <memory>

/// Tells of pictures that appear in a folder or change in it, and lists the folder again, all of it
/// on a thread of its own. One watch watches one folder; its owner never waits for the drive.
///
/// Changes that come within a moment are told at once. A folder on the network tells of the changes
/// of this machine alone, and one that cannot be watched of none.
class FolderWatch
{
public:
    struct Change {
        /// All pictures of the folder, as PhotographList::list() gives them.
        QStringList names;
        /// Those among them that were written or replaced.
        QStringList written;
    };
    /// Called on the watch's thread.
    using Changed = std::function<void(const Change &)>;

    /// `known` are the pictures that were listed before. What has come since then is told, too.
    FolderWatch(const QDir &folder, const QStringList &known, Changed changed);
    /// `changed` may still be under way when it returns.
    ~FolderWatch();
    FolderWatch(const FolderWatch &) = delete;
    FolderWatch &operator=(const FolderWatch &) = delete;

private:
    class Thread;

    std::shared_ptr<Thread> m_thread;
};
