#include "mainwindow/Popups.h"

#include "widgets/ToolWindow.h"

ToolWindow *Popups::current() const
{
    return m_current;
}

void Popups::closeAny()
{
    delete m_current.data();
}

void Popups::closeUnlessOwnedBy(const ImageButton *button)
{
    if (m_current && m_current->toolButton() != button)
        closeAny();
}

void Popups::open(const std::function<ToolWindow *()> &make)
{
    closeAny();
    m_current = make();
    m_current->show();
}
