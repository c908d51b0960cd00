#pragma once

#include "mainwindow/pages/Pages.h"
#include "widgets/ToolWindow.h"

#include <vector>

class MainWindow;
class QButtonGroup;
class QScrollArea;

/// The pop-up "More": the commands that did not fit on the card, and pages to read. It opens on the
/// page that was chosen last.
class MoreToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    /// `hidden` are the buttons of the card that did not fit: each of them is offered here, and a
    /// click here presses it there.
    MoreToolWindow(ImageButton *toolButton, MainWindow *mainWindow, const Pages::Context &context,
                   const std::vector<ImageButton *> &hidden);

    /// Builds that page with the current information.
    void showPage(Pages::Id id);
    [[nodiscard]] Pages::Id page() const;
    /// Sets whether the tab of that page is marked, as the tool button is, because there is
    /// something to read.
    void setMarked(Pages::Id id, bool marked);

signals:
    void pageShown(Pages::Id id);

private slots:
    /// A tab was chosen: the pop-up opens on it the next time.
    void choosePage(int index);

private:
    [[nodiscard]] static int indexOf(Pages::Id id);
    /// Returns the first free y below.
    int addHidden(const std::vector<ImageButton *> &hidden, int y);
    int addTabs(int y);

    const Pages::Context m_context;
    QButtonGroup *m_tabs;
    QScrollArea *m_area;
};
