#pragma once

#include "sources/BoundedWorker.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>

/// A folder that pictures are written into, perhaps on a share whose server has gone: a call to its
/// file system may then never return. So each is made on the folder's own thread, "OutputFolder",
/// and waited for within a bound. Any thread; a folder that hangs holds up no other.
class OutputFolder
{
public:
    enum class State {
        Exists,
        Missing,
        /// It did not answer in time.
        TimedOut,
        /// It still has not answered an earlier question; nothing was waited for.
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

private:
    const QString m_path;
    /// Guards the two members below, as the worker serves one caller at a time.
    std::timed_mutex m_calling;
    BoundedWorker m_worker{"OutputFolder"};
    bool m_timedOut = false;
};
