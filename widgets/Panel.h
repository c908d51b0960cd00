#pragma once

#include <QImage>
#include <QList>
#include <QWidget>

class ImageButton;
class QGridLayout;

/// The strip of tool buttons at the side: two to a row, in groups that a click on their title
/// collapses and opens again.
class Panel : public QWidget
{
    Q_OBJECT

public:
    explicit Panel(QWidget *parent);

    // Filled once, from top to bottom.
    void addGroup(const QString &title);
    /// Adopts the button into the group added last.
    void addButton(ImageButton *button);
    /// Packs the rows at the top; after the last button.
    void finishAdding();

    /// Shows every enabled button and hides every disabled one, collapsed groups included; after
    /// each change of the enabled set.
    void finishAdjusting();

public slots:
    /// For a title button's click only: it asks for its sender.
    void toggleGroup();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The buttons behind the title of that group, without the title.
    [[nodiscard]] QList<ImageButton *> members(int group) const;

    QImage m_top;
    /// The image scaled to the current height; null where there is no space for it.
    QImage m_middle;
    QImage m_middleSource;
    QImage m_bottom;
    QGridLayout *m_layout;
    // The next free cell.
    int m_row = 0;
    int m_column = 0;
    /// In the order added, titles included; children of the panel.
    QList<ImageButton *> m_buttons;
    /// The index of each group's title in m_buttons.
    QList<int> m_groups;
};
