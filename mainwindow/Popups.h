#pragma once

#include <QPointer>

#include <functional>

class ImageButton;
class ToolWindow;

/// The one pop-up window that may be open. A hidden one (closed by its own button) still counts as
/// open, so the rules ask for the pointer and never for visibility. GUI thread.
class Popups
{
public:
    /// Null when none is open.
    [[nodiscard]] ToolWindow *current() const;

    void closeAny();
    /// A pop-up of this same button stays.
    void closeUnlessOwnedBy(const ImageButton *button);
    /// Replaces the open pop-up by a new one, which is made after the old one has gone.
    void open(const std::function<ToolWindow *()> &make);

private:
    /// The main window owns it as a child and may delete it first.
    QPointer<ToolWindow> m_current;
};
