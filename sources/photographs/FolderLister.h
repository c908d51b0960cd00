#pragma once

#include <QDir>
#include <QStringList>

#include <memory>
#include <optional>

class BoundedWorker;

/// Lists the pictures of folders without waiting for a drive that does not answer. Its owner's
/// thread.
class FolderLister
{
public:
    FolderLister();
    ~FolderLister();

    struct Listing {
        /// As PhotographList::list().
        QStringList names;
        /// Whether the file that was asked for is there, as a photograph or otherwise.
        bool hasFile = false;
    };

    /// The folder, and whether `file` is in it; nothing when the drive did not answer within two
    /// seconds, or within a tenth of one when it did not the last time or `isSilent`.
    [[nodiscard]] std::optional<Listing> list(const QDir &folder, const QString &file,
                                              bool isSilent = false);

private:
    std::unique_ptr<BoundedWorker> m_worker;
    QString m_silentFolder;
};
