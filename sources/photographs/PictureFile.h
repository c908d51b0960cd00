#pragma once

#include "sources/photographs/PictureProblem.h"

#include <QFile>
#include <QString>

#include <functional>
#include <utility>

constexpr qint64 NS_PER_SECOND = 1000LL * 1000 * 1000;

/// What tells one content of a file from another without reading it.
struct FileStamp {
    qint64 bytes = -1;
    /// The time of the last change, since 1970.
    qint64 modifiedNs = 0;
    quint64 device = 0;
    quint64 inode = 0;

    bool operator==(const FileStamp &other) const
    {
        return bytes == other.bytes && modifiedNs == other.modifiedNs && device == other.device &&
               inode == other.inode;
    }
    bool operator!=(const FileStamp &other) const { return !(*this == other); }
};

/// A plain file, open for reading. Anything else is not opened: reading a pipe could wait
/// for ever. Any thread; on a drive that does not answer, open() and content() do not
/// return.
class PictureFile
{
public:
    /// Called again and again while a file is being read, with the number of bytes that are there.
    using Progress = std::function<void(qint64 bytes)>;

    /// `path` is one of FileNames.
    explicit PictureFile(const QString &path);

    /// None when the file is open.
    [[nodiscard]] PictureProblem problem() const { return m_problem; }
    [[nodiscard]] FileStamp stamp() const { return m_stamp; }
    [[nodiscard]] QFile &device() { return m_file; }
    /// `piece` is called after about every MiB that is read from the device; empty for no more.
    void setPieceRead(std::function<void()> piece) { m_file.pieceRead = std::move(piece); }
    /// All bytes of it; problem() says whether the disk failed meanwhile.
    [[nodiscard]] QByteArray content(const Progress &progress);

private:
    class Device : public QFile
    {
    public:
        std::function<void()> pieceRead;

    protected:
        qint64 readData(char *data, qint64 mostBytes) override;

    private:
        qint64 m_untold = 0;
    };

    Device m_file;
    FileStamp m_stamp;
    PictureProblem m_problem = PictureProblem::None;
};
