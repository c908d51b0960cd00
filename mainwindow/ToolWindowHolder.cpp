#include "ToolWindowHolder.h"

#include "widgets/ToolWindow.h"

ToolWindow *ToolWindowHolder::current() const
{
    return m_current;
}

void ToolWindowHolder::closeAny()
{
    delete m_current.data();
}

void ToolWindowHolder::closeForeign(const ImageButton *button)
{
    if (m_current && m_current->toolButton() != button)
        closeAny();
}

void ToolWindowHolder::open(const std::function<ToolWindow *()> &make)
{
    closeAny();
    m_current = make();
    m_current->show();
}
