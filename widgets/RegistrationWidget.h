#pragma once

#include "widgets/RegistrationItem.h"

#include <QString>
#include <QVector>
#include <QWidget>

#include <array>

class QLineEdit;
class QTextEdit;

/// A paged editor of name and content pairs, eight to a page, kept in ".rf" files. An owner places
/// it and drives it through its slots. GUI thread; no failure shows a message.
class RegistrationWidget : public QWidget
{
    Q_OBJECT

public:
    static constexpr int SLOTS = 8;

    explicit RegistrationWidget(QWidget *parent);

    [[nodiscard]] const QVector<RegistrationItem> &items() const { return m_items; }
    /// The file that save() writes to; empty until one was chosen there.
    [[nodiscard]] QString fileName() const { return m_fileName; }

public slots:
    /// Starts an empty list without a file. Hides QWidget::create(), which nobody calls here.
    void create();
    /// Asks for a file and reads it. A file that cannot be read leaves the list as it was.
    void open();
    /// Writes to the file last saved, or asks for one. The old file stays when writing fails.
    void save();
    void previousPage();
    void nextPage();
    void add();
    /// Shows the current page, or the nearest one that exists.
    void refresh();

signals:
    /// The page now shown, counted from 1, and how many there are, at least 1.
    void pageChanged(int index, int total);

private slots:
    void nameChanged();
    void contentChanged();

private:
    void createEditors();
    void fillSlot(int slot);
    /// The item of a slot on the current page; null beyond the end of the list.
    RegistrationItem *itemOf(int slot);

    QVector<RegistrationItem> m_items;
    int m_page = 0;
    QString m_fileName;
    std::array<QLineEdit *, SLOTS> m_nameEdits{};
    std::array<QTextEdit *, SLOTS> m_contentEdits{};
    /// Whether the editors are being filled: their change notifications are then not the user's.
    bool m_refreshing = false;
};
