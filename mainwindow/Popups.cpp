#include "mainwindow/Popups.h"

#include "mainwindow/bars/CommandCard.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "widgets/AboutToolWindow.h"
#include "widgets/ColorToolWindow.h"
#include "widgets/EffectToolWindow.h"
#include "widgets/FillBackgroundToolWindow.h"
#include "widgets/MaskToolWindow.h"
#include "widgets/SettingsToolWindow.h"
#include "widgets/TextToolWindow.h"

#include <QCoreApplication>

#include <memory>

using Commands::PopUp;

Popups::Popups(MainWindow *window, const QImage &aboutBackground)
    : m_window(window)
    , m_aboutBackground(aboutBackground)
{
}

ToolWindow *Popups::current() const
{
    return m_current;
}

bool Popups::shown() const
{
    return m_current && m_current->isVisible();
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

void Popups::open(const Commands::Row &row, ImageButton *button)
{
    closeAny();
    m_current = make(row, button);
    if (m_current)
        m_current->show();
}

void Popups::with(Command command, ImageButton *button,
                  const std::function<void(ToolWindow *)> &use)
{
    if (m_current && m_current->toolButton() == button) {
        use(m_current);
        return;
    }
    const std::unique_ptr<ToolWindow> passing(make(Commands::row(command), button));
    use(passing.get());
}

void Popups::setMore(const Pages::Context &pages, const CommandCard *card)
{
    m_pages = pages;
    m_card = card;
}

ToolWindow *Popups::make(const Commands::Row &row, ImageButton *button) const
{
    const auto caption = [](const char *text) {
        return QCoreApplication::translate("MainWindow", text);
    };
    const QString fill = caption(QT_TRANSLATE_NOOP("MainWindow", "Fill Color"));
    const QString title = QObject::tr(row.popUpTitle);
    switch (row.popUp) {
    case PopUp::Width:
        return new ColorToolWindow(button, m_window, title,
                                   caption(QT_TRANSLATE_NOOP("MainWindow", "Width")), {}, {});
    case PopUp::Line:
    case PopUp::Shape:
        return new ColorToolWindow(button, m_window, title,
                                   caption(QT_TRANSLATE_NOOP("MainWindow", "Line Width")),
                                   caption(QT_TRANSLATE_NOOP("MainWindow", "Line Color")),
                                   row.popUp == PopUp::Shape ? fill : QString());
    case PopUp::Text:
        return new TextToolWindow(button, m_window);
    case PopUp::FillBackground:
        return new FillBackgroundToolWindow(
            button, m_window, caption(QT_TRANSLATE_NOOP("MainWindow", "Background Color")), fill);
    case PopUp::Mask:
        return new MaskToolWindow(button, m_window);
    case PopUp::Effect:
        return new EffectToolWindow(button, m_window);
    case PopUp::Settings:
        return new SettingsToolWindow(button, m_window);
    case PopUp::About:
        return new AboutToolWindow(button, m_window, m_aboutBackground);
    case PopUp::More:
        return new MoreToolWindow(button, m_window, m_pages,
                                  m_card ? m_card->hidden() : std::vector<ImageButton *>());
    case PopUp::None:
        break;
    }
    return nullptr;
}
