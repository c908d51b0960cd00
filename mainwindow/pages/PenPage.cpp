#include "mainwindow/PenPressure.h"
#include "mainwindow/pages/Pages.h"
#include "widgets/FormControls.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace
{

/// What a button is called.
QString nameOf(const char *source)
{
    return QCoreApplication::translate("MainWindow", source);
}

std::vector<Pages::Line> gestures()
{
    return {
        {Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Move and zoom")),
         Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "two fingers"))},
        {Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Zoom")),
         Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "wheel of the mouse"))},
        {nameOf("Undo"), Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "tap with two fingers"))},
        {nameOf("Redo"),
         Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "tap with three fingers"))},
        {nameOf("Hand"), Pages::text(QT_TRANSLATE_NOOP(
                             "MoreToolWindow", "lower button of the pen, middle mouse button"))},
        {nameOf("Eraser"),
         Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "upper button or other end of the pen"))},
        {Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Options of a tool")),
         Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "hold its button"))},
    };
}

} // namespace

QWidget *Pages::makePenPage(const Context &context, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto *pressure = new QCheckBox(
        Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Press the pen harder to draw wider")),
        page);
    FormControls::applyLook(pressure);
    pressure->setChecked(PenPressure::isOn());
    const CanvasDeck *deck = context.deck;
    if (deck) {
        QObject::connect(pressure, &QCheckBox::toggled, page,
                         [deck](bool on) { PenPressure::choose(on, *deck); });
    }
    layout->addWidget(pressure);
    layout->addWidget(makeTable(gestures(), page));
    layout->addStretch();
    return page;
}
