#include "widgets/AnsweringFiles.h"

#include "widgets/SilentPlaces.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

// The toolkit's dialog asks for files by itself, in its model, its completer and its places, and
// only its file engines stand in the way of all three. They are in private headers, which may
// change with a release of the toolkit: the test of the dialogs hangs a drive in every way that a
// change could let through. A dialog of our own would have to do again what the toolkit's has
// learnt in years.
#include <private/qabstractfileengine_p.h>
#include <private/qfsfileengine_p.h>

#include <memory>

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

/// Never destroyed, as the thread of a dialog may still be reading when the program ends.
SilentPlaces &silentPlaces()
{
    static auto &places = *new SilentPlaces;
    return places;
}

/// The program's own threads may wait for a drive as long as they like.
bool isForThisThread()
{
    const QThread *thread = QThread::currentThread();
    return thread == QCoreApplication::instance()->thread() ||
           thread->inherits("QFileInfoGatherer");
}

/// Stands between the toolkit and the system for every name of a file.
class AnsweringFilesAlone : public QAbstractFileEngineHandler
{
public:
    QAbstractFileEngine *create(const QString &name) const override
    {
        if (name.isEmpty() || name.startsWith(':') || !isForThisThread())
            return nullptr;
        return AnsweringFiles::answers(absolute(name)) ? nullptr : new AbsentFile(name);
    }

private:
    static QString absolute(const QString &name)
    {
        QString path = name.startsWith('/') ? name : QDir::currentPath() + '/' + name;
        // The toolkit puts two in front of some names.
        while (path.startsWith("//"))
            path.remove(0, 1);
        return path;
    }
};

/// Both of the GUI thread.
int users = 0;
std::unique_ptr<AnsweringFilesAlone> handler;

} // namespace

// Only while it is needed, and never longer than the application: the toolkit looks for it in a
// list that it destroys before the settings are written for the last time.
AnsweringFiles::Active::Active()
{
    if (users++ > 0 || !QCoreApplication::instance())
        return;
    static const bool once = (qAddPostRoutine([] { handler.reset(); }), true);
    static_cast<void>(once);
    handler = std::make_unique<AnsweringFilesAlone>();
}

AnsweringFiles::Active::~Active()
{
    if (--users == 0)
        handler.reset();
}

bool AnsweringFiles::answers(const QString &path)
{
    return silentPlaces().answers(path);
}
