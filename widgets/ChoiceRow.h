#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>

#include <vector>

class ImageButton;
class QButtonGroup;
class QWidget;

/// A row of checkable image buttons of which one is chosen, with the label before it: one setting
/// in a pop-up window. GUI thread; the row and its widgets are children of the window.
class ChoiceRow : public QObject
{
    Q_OBJECT

public:
    /// Where a row stands, in pixels of its window.
    struct Place {
        QPoint label;
        QPoint firstButton;
        /// Distance between the left edges of two buttons.
        int pitch = 0;
        /// Where the caption has to end; 0 for before the first button.
        int captionEnd = 0;
    };
    struct Choice {
        QString skin;
        /// The tip of the button; a screen reader says it after the row's caption, as another row
        /// of the window may offer the same.
        QString name;
    };

    /// An empty caption makes no label. Each click calls `slot` (coded by SLOT()) of the window.
    ChoiceRow(QWidget *window, const QString &caption, const std::vector<Choice> &choices,
              const Place &place, const char *slot);

    /// What a screen reader says of a choice; an empty caption adds nothing to the choice's name.
    [[nodiscard]] static QString nameInRow(const QString &caption, const QString &choice);

    [[nodiscard]] int count() const;
    [[nodiscard]] ImageButton *button(int index) const;
    /// The index of a button of this row; -1 for any other object.
    [[nodiscard]] int indexOf(const QObject *button) const;
    /// -1 when no button is checked.
    [[nodiscard]] int checkedIndex() const;
    /// Checks one button and so unchecks the others; calls no slot. -1 unchecks them all.
    void check(int index);

private:
    QButtonGroup *m_group;
    std::vector<ImageButton *> m_buttons;
};
