#include "mainwindow/pages/Pages.h"

#include "mainwindow/presentation/Presentation.h"
#include "widgets/FormControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>

namespace
{

QComboBox *makeScreens(Presentation *presentation, QWidget *parent)
{
    auto *screens = new QComboBox(parent);
    FormControls::applyLook(screens);
    screens->addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "The first free one")),
                     QString());
    for (const QString &name : Presentation::screens())
        screens->addItem(name, name);
    const QString chosen = Presentation::screen();
    // A chosen screen that is not plugged in stays chosen.
    if (screens->findData(chosen) < 0)
        screens->addItem(chosen, chosen);
    screens->setCurrentIndex(screens->findData(chosen));
    QObject::connect(
        screens, QOverload<int>::of(&QComboBox::activated), presentation,
        [=](int index) { presentation->setScreen(screens->itemData(index).toString()); });
    return screens;
}

} // namespace

QWidget *Pages::makePresentationPage(const Context &context, QWidget *parent)
{
    ::Presentation *presentation = context.presentation;
    if (!presentation)
        return new QWidget(parent);
    auto *caption =
        new QLabel(text(QT_TRANSLATE_NOOP("MoreToolWindow", "Screen for the class")), parent);
    QComboBox *screens = makeScreens(presentation, parent);
    screens->setAccessibleName(caption->text());
    QCheckBox *atStart =
        makeCheckBox(QT_TRANSLATE_NOOP("MoreToolWindow", "Open it when the program starts"),
                     ::Presentation::opensAtStart(), parent);
    QCheckBox *pointer =
        makeCheckBox(QT_TRANSLATE_NOOP("MoreToolWindow", "Show where the pointer is"),
                     ::Presentation::showsPointer(), parent);
    QObject::connect(atStart, &QCheckBox::toggled, presentation, &::Presentation::setOpensAtStart);
    QObject::connect(pointer, &QCheckBox::toggled, presentation, &::Presentation::setShowsPointer);
    return makeColumn({caption, screens, atStart, pointer}, parent);
}
