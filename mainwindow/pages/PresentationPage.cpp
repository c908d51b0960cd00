#include "mainwindow/pages/Pages.h"

#include "mainwindow/presentation/Presentation.h"
#include "widgets/FormControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

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

QCheckBox *makeChoice(const QString &caption, bool chosen, QWidget *parent)
{
    auto *choice = new QCheckBox(caption, parent);
    FormControls::applyLook(choice);
    choice->setChecked(chosen);
    return choice;
}

} // namespace

QWidget *Pages::makePresentationPage(const Context &context, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    ::Presentation *presentation = context.presentation;
    if (!presentation)
        return page;
    auto *caption =
        new QLabel(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Screen for the class")), page);
    QComboBox *screens = makeScreens(presentation, page);
    screens->setAccessibleName(caption->text());
    QCheckBox *atStart = makeChoice(
        Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Open it when the program starts")),
        ::Presentation::opensAtStart(), page);
    QCheckBox *pointer =
        makeChoice(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Show where the pointer is")),
                   ::Presentation::showsPointer(), page);
    QObject::connect(atStart, &QCheckBox::toggled, presentation, &::Presentation::setOpensAtStart);
    QObject::connect(pointer, &QCheckBox::toggled, presentation, &::Presentation::setShowsPointer);
    for (QWidget *each : {static_cast<QWidget *>(caption), static_cast<QWidget *>(screens),
                          static_cast<QWidget *>(atStart), static_cast<QWidget *>(pointer)})
        layout->addWidget(each);
    layout->addStretch();
    return page;
}
