#include "mainwindow/PenPressure.h"
#include "mainwindow/pages/Pages.h"

#include <QCheckBox>
#include <QCoreApplication>

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
    QCheckBox *pressure =
        makeCheckBox(QT_TRANSLATE_NOOP("MoreToolWindow", "Press the pen harder to draw wider"),
                     PenPressure::isOn(), parent);
    const CanvasDeck *deck = context.deck;
    if (deck) {
        QObject::connect(pressure, &QCheckBox::toggled, pressure,
                         [deck](bool on) { PenPressure::choose(on, *deck); });
    }
    return makeColumn({pressure, makeTable(gestures(), parent)}, parent);
}
