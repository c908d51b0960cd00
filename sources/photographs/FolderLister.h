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

    /// As PhotographList::list(); nothing when the drive did not answer within two seconds, or
    /// within a tenth of one when it did not the last time.
    [[nodiscard]] std::optional<QStringList> list(const QDir &folder);

private:
    std::unique_ptr<BoundedWorker> m_worker;
    QString m_silentFolder;
};
