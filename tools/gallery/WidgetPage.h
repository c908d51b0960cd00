#pragma once

#include <QWidget>

/// Every skinned widget by itself on one page, each with its name and in each of its states: what
/// the mouse would do is played to them once.
class WidgetPage : public QWidget
{
    Q_OBJECT

public:
    WidgetPage();

private:
    void addButtons();
    void addSliders();
    void addWindows();
    /// Writes a name and returns where the widget under it stands.
    QPoint place(const QString &name, int x, int y);
};
