#include "widgets/FileDialogs.h"

#include "sources/threads/DetachedThreads.h"
#include "widgets/AnsweringFiles.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QListView>
#include <QPointer>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

namespace
{

/// The toolkit makes the places at the side as wide as the first of them, which cuts off the name
/// of most homes. What takes more than a third of the dialog is scrolled.
void makeRoomForPlaces(QFileDialog &dialog)
{
    auto *places = dialog.findChild<QListView *>(QStringLiteral("sidebar"));
    if (!places)
        return;
    const int edges = places->width() - places->contentsRect().width();
    places->setMinimumWidth(
        std::min(places->sizeHintForColumn(0) + edges, dialog.sizeHint().width() / 3));
}

/// A folder that was never read, as it is gone at once.
QModelIndex unreadFolder(const QFileSystemModel &files)
{
    const QTemporaryDir folder;
    return files.index(folder.path());
}

/// Deletes a dialog when its thread has nothing left to read, as the destructor waits for that
/// thread: it asks for the files of a folder that nobody has opened, and a drive may fall silent.
void deleteWhenRead(QFileDialog *dialog)
{
    auto *files = dialog->findChild<QFileSystemModel *>();
    // The thread reads one folder after the other: when it has read this one, it has read all.
    const QModelIndex last = files ? unreadFolder(*files) : QModelIndex();
    if (!last.isValid()) {
        // A desktop's own dialog, for one, has no such thread.
        delete dialog;
        return;
    }
    // The window does not take it along when it goes.
    dialog->setParent(nullptr);
    const auto reading = std::make_shared<DetachedThreads::Running>();
    QObject::connect(files, &QFileSystemModel::directoryLoaded, dialog,
                     [dialog, reading, path = files->filePath(last)](const QString &read) {
                         if (read == path)
                             dialog->deleteLater();
                     });
    files->fetchMore(last);
}

QString ask(QWidget *parent, const QString &caption, const QString &folder, const QString &filter,
            QFileDialog::FileMode mode)
{
    const auto active = std::make_shared<AnsweringFiles::Active>();
    const QString start = AnsweringFiles::answers(folder) ? folder : QDir::homePath();
    auto *dialog = new QFileDialog(parent, caption, start, filter);
    QObject::connect(dialog, &QObject::destroyed, [active] {});
    // The toolkit has the system watch a folder on the GUI thread, without asking for it before.
    if (auto *files = dialog->findChild<QFileSystemModel *>())
        files->setOption(QFileSystemModel::DontWatchForChanges);
    dialog->setFileMode(mode);
    dialog->setOption(QFileDialog::ShowDirsOnly, mode == QFileDialog::Directory);
    makeRoomForPlaces(*dialog);
    const QPointer<QFileDialog> guarded(dialog);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!guarded)
        return {};
    QString chosen = isAccepted ? dialog->selectedFiles().value(0) : QString();
    deleteWhenRead(dialog);
    return chosen;
}

} // namespace

QString FileDialogs::openFile(QWidget *parent, const QString &folder, const QString &filter)
{
    return ask(parent, QString(), folder, filter, QFileDialog::ExistingFile);
}

QString FileDialogs::chooseFolder(QWidget *parent, const QString &caption, const QString &folder)
{
    return ask(parent, caption, folder, QString(), QFileDialog::Directory);
}

bool FileDialogs::exists(const QString &path)
{
    const AnsweringFiles::Active active;
    return QFileInfo::exists(path);
}
