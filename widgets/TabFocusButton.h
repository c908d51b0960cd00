#pragma once

#include <QPushButton>

/// A push button that takes the focus from the tabulator key alone, never from a click; Space and
/// Enter then press it. Arrow keys, which turn pages, do not move within a group, so the tabulator
/// key reaches every button of an exclusive group.
class TabFocusButton : public QPushButton
{
    Q_OBJECT

public:
    explicit TabFocusButton(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
};
