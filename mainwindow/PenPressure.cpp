#include "mainwindow/PenPressure.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasDeck.h"
#include "settings/Preferences.h"

namespace
{

const QString KEY = QStringLiteral("penPressure");

} // namespace

bool PenPressure::isOn()
{
    return Preferences::number(KEY, 0, 0, 1) == 1;
}

void PenPressure::apply(const CanvasDeck &deck)
{
    const bool on = isOn();
    for (int i = 0; i < deck.count(); ++i)
        deck.canvas(i)->setPenPressure(on);
}

void PenPressure::choose(bool on, const CanvasDeck &deck)
{
    Preferences::setNumber(KEY, on ? 1 : 0);
    apply(deck);
}
