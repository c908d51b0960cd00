#include "widgets/AnsweringFiles.h"

#include "widgets/SilentPlaces.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

#include <private/qabstractfileengine_p.h>
#include <private/qfsfileengine_p.h>

#include <atomic>

namespace
{

/// A file that is not there, as far as anybody can tell. It only knows its name.
class AbsentFile : public QFSFileEngine
{
public:
    using QFSFileEngine::QFSFileEngine;

    bool open(QIODevice::OpenMode) override { return false; }
    qint64 size() const override { return 0; }
    bool isSequential() const override { return false; }
    bool remove() override { return false; }
    bool copy(const QString &) override { return false; }
    bool rename(const QString &) override { return false; }
    bool renameOverwrite(const QString &) override { return false; }
    bool link(const QString &) override { return false; }
    bool mkdir(const QString &, bool) const override { return false; }
    bool rmdir(const QString &, bool) const override { return false; }
    bool setSize(qint64) override { return false; }
    bool setPermissions(uint) override { return false; }
    bool setFileTime(const QDateTime &, FileTime) override { return false; }
    bool cloneTo(QAbstractFileEngine *) override { return false; }
    QStringList entryList(QDir::Filters, const QStringList &) const override { return {}; }
    Iterator *beginEntryList(QDir::Filters, const QStringList &) override { return nullptr; }
    FileFlags fileFlags(FileFlags) const override { return {}; }
    QByteArray id() const override { return {}; }
    uint ownerId(FileOwner) const override { return static_cast<uint>(-2); }
    QString owner(FileOwner) const override { return {}; }
    QDateTime fileTime(FileTime) const override { return {}; }

    QString fileName(FileName which) const override
    {
        const bool isAsked =
            which == LinkName || which == CanonicalName || which == CanonicalPathName;
        return isAsked ? QString() : QFSFileEngine::fileName(which);
    }
};

/// Stands between the toolkit and the system for every name of a file.
class AnsweringFilesAlone : public QAbstractFileEngineHandler
{
public:
    QAbstractFileEngine *create(const QString &name) const override
    {
        if (m_users == 0 || name.isEmpty() || name.startsWith(':') || !isForThisThread())
            return nullptr;
        QString path = name.startsWith('/') ? name : QDir::currentPath() + '/' + name;
        // The toolkit puts two in front of some names.
        while (path.startsWith("//"))
            path.remove(0, 1);
        return m_places.answers(path) ? nullptr : new AbsentFile(name);
    }

    std::atomic<int> m_users{0};
    mutable SilentPlaces m_places;

private:
    /// The program's own threads may wait for a drive as long as they like.
    [[nodiscard]] static bool isForThisThread()
    {
        const QThread *thread = QThread::currentThread();
        return thread == QCoreApplication::instance()->thread() ||
               thread->inherits("QFileInfoGatherer");
    }
};

/// Never destroyed, as the thread of a dialog may still be reading when the program ends.
AnsweringFilesAlone &answeringFilesAlone()
{
    static auto &instance = *new AnsweringFilesAlone;
    return instance;
}

} // namespace

AnsweringFiles::Active::Active()
{
    ++answeringFilesAlone().m_users;
}

AnsweringFiles::Active::~Active()
{
    --answeringFilesAlone().m_users;
}

bool AnsweringFiles::answers(const QString &path)
{
    return answeringFilesAlone().m_places.answers(path);
}
