#pragma once

#include <QString>

class QWidget;

/// The dialogs for files and folders. They never wait for a drive that does not answer longer than
/// a second; its files are not found then. GUI thread.
namespace FileDialogs
{

/// The file that was chosen, or nothing. `filter`: as QFileDialog's.
[[nodiscard]] QString openFile(QWidget *parent, const QString &folder,
                               const QString &filter = QString());

/// The folder that was chosen, or nothing.
[[nodiscard]] QString chooseFolder(QWidget *parent, const QString &caption, const QString &folder);

/// Whether the file is there and its drive answers.
[[nodiscard]] bool exists(const QString &path);

} // namespace FileDialogs
