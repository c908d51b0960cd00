#pragma once

#include "widgets/FramelessWindow.h"

class ImageButton;
class QImage;

/// A pop-up window beside the button whose options it shows; it stays there when the main window
/// moves. Closing only hides it: the main window owns it and deletes it.
class ToolWindow : public FramelessWindow
{
    Q_OBJECT

public:
    /// `parent` is the main window. An empty background may be replaced in the derived constructor.
    ToolWindow(const QImage &background, ImageButton *toolButton, QWidget *parent,
               const QString &title);
    ~ToolWindow() override;

    /// The button that the window belongs to.
    [[nodiscard]] ImageButton *toolButton() const;

    /// Moves the window just right of its button, level with its top, pushed back into the work
    /// area; as a part of the main window, see PopupPlace.
    void alignToToolButton();

    /// Gives the focus to the chosen button, or to the first that takes it; when the window closes,
    /// its tool button gets the focus. For pop-ups that a key opened.
    void takeFocus();

    /// Watches the parent for moves and resizes and the button for moves; filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    /// Closes the window unless the focus is in it.
    void focusChanged(QWidget *old, QWidget *now);

protected:
    /// Gives the window its background and so its size, and aligns it again.
    void setBackground(const QImage &background);

    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QPoint placeInWindow() const;
    /// Moves the focus to the nearest widget in the direction of an arrow key.
    void moveFocus(int key);

    bool m_givesFocusBack = false;
    ImageButton *m_toolButton;
    ImageButton *m_closeButton;
};
