#pragma once

#include "sources/photographs/PictureReader.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// Reads pictures on threads of its own, before they are asked for where it can be foreseen, and
/// keeps them within a bound. Its owner never waits for a drive that has fallen silent.
///
/// All functions belong to one thread, its owner's. Threads whose drive does not answer are left
/// behind by the destructor.
class PicturePreloader
{
public:
    using Reading = PictureReader::Reading;
    /// Called on another thread with the path of a picture that has come after all.
    using Arrived = std::function<void(const QString &path)>;

    /// What is kept may have that many bytes in all: three pictures of 24 megapixels.
    static constexpr qint64 MAX_KEPT_BYTES = 224LL * 1024 * 1024;

    explicit PicturePreloader(Arrived arrived);
    /// `arrived` may still be under way when it returns.
    ~PicturePreloader();
    PicturePreloader(const PicturePreloader &) = delete;
    PicturePreloader &operator=(const PicturePreloader &) = delete;

    /// The picture as the file has it now. One that was read ahead is there at once; any other is
    /// waited for as long as its drive sends bytes or it is being decoded, three seconds at the
    /// most. After that the problem is NoAnswer, and `arrived` is called when it has come. Nothing
    /// is begun ahead until prepare() tells what is wanted next.
    [[nodiscard]] Reading take(const QString &path);

    /// Whether take() would answer at once, because the picture was read or its drive has been
    /// silent for too long. If not, it is read before all others, and `arrived` is called when it
    /// has come.
    [[nodiscard]] bool request(const QString &path);

    /// Whether the drive has not answered the last time.
    [[nodiscard]] bool isSilent() const;

    /// Reads these ahead, the first one first, and lets go of all others. Keeps as many of them as
    /// the bound allows.
    void prepare(const QStringList &paths);

    /// The path whose picture is there and may be taken without waiting; for those who measure.
    [[nodiscard]] bool holds(const QString &path) const;

private:
    class Shared;

    std::shared_ptr<Shared> m_shared;
};
