#pragma once

#include "sources/threads/BoundedWorker.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <memory>
#include <optional>

/// A folder that pictures are written into, perhaps on a share whose server has gone: a call to its
/// file system may then never return. Each call is therefore made on the folder's own thread,
/// "OutputFolder", and waited for with a time limit. Any thread; a folder that hangs delays no
/// other.
class OutputFolder
{
public:
    enum class State {
        Exists,
        Missing,
        /// It did not answer in time.
        TimedOut,
        /// It still has not answered an earlier question; this call has not waited.
        Waiting
    };

    /// The one object of that path.
    [[nodiscard]] static std::shared_ptr<OutputFolder> of(const QString &path);

    explicit OutputFolder(const QString &path);

    [[nodiscard]] const QString &path() const { return m_path; }

    /// Whether the folder is there; within half a second.
    [[nodiscard]] State state();

    /// Replaces the file by the bytes; within two seconds. A failure leaves no file, and is
    /// returned in the system's words.
    [[nodiscard]] std::optional<QString> write(const QString &file, const QByteArray &bytes);

    /// Removes a file of the folder; within half a second. A removal that was given up before the
    /// folder answered is not made later, because the name may by then be another file's.
    void remove(const QString &file);

private:
    /// Whether a call that was given up is still on its way.
    [[nodiscard]] bool hangs() const;

    const QString m_path;
    BoundedWorker m_worker{"OutputFolder"};
    std::atomic<bool> m_timedOut{false};
};
