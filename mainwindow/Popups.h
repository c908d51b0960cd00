#pragma once

#include "mainwindow/Commands.h"
#include "mainwindow/pages/Pages.h"

#include <QImage>
#include <QPointer>

#include <functional>

class CommandCard;
class ImageButton;
class MainWindow;
class ToolWindow;

/// The one pop-up window that may be open, and the one place that makes it. A hidden one (closed by
/// its own button) still counts as open, so the rules ask for the pointer and never for visibility.
/// GUI thread.
class Popups
{
public:
    /// The window is the pop-ups' parent; they ask it for its services only.
    Popups(MainWindow *window, const QImage &aboutBackground);

    /// Null when none is open.
    [[nodiscard]] ToolWindow *current() const;
    /// Whether one is open and visible.
    [[nodiscard]] bool shown() const;

    void closeAny();
    /// A pop-up of this same button stays.
    void closeUnlessOwnedBy(const ImageButton *button);
    /// Replaces the open pop-up by that of a command, made beside the button after the old one has
    /// gone. A command without a pop-up closes the open one.
    void open(const Commands::Row &row, ImageButton *button);
    /// Calls `use` with the pop-up of a command: with the open one if it belongs to it, otherwise
    /// with one that is never shown.
    void with(Command command, ImageButton *button, const std::function<void(ToolWindow *)> &use);

    /// What the pop-up "More" shows, and the card whose hidden buttons it offers; to be set before
    /// it is opened.
    void setMore(const Pages::Context &pages, const CommandCard *card);

private:
    [[nodiscard]] ToolWindow *make(const Commands::Row &row, ImageButton *button) const;

    MainWindow *m_window;
    const QImage m_aboutBackground;
    Pages::Context m_pages;
    const CommandCard *m_card = nullptr;
    /// The main window owns it as a child and may delete it first.
    QPointer<ToolWindow> m_current;
};
