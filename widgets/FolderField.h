#pragma once

#include <QLineEdit>

/// A path that is shown and not typed: what has no room is left out at its beginning, as the end
/// tells more, and a double click asks for another folder.
class FolderField : public QLineEdit
{
    Q_OBJECT

public:
    explicit FolderField(const QString &path, QWidget *parent);

signals:
    /// Another folder is to be chosen.
    void browseWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};
