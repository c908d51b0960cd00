#include "canvas/osd/IndicationTexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace
{

/// The last power of two that fits an int.
constexpr double LAST_ZOOM_LEVEL = 31.0;

QString padded(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

QString IndicationTexts::recordTime(qint64 elapsedMs)
{
    const qint64 seconds = std::max<qint64>(elapsedMs, 0) / 1000;
    return padded(seconds / 3600) + QLatin1Char(':') + padded(seconds % 3600 / 60) +
           QLatin1Char(':') + padded(seconds % 60);
}

QString IndicationTexts::zoomStep(double level)
{
    // Written this way, the test also fails for a level that is not a number.
    if (!(level >= 1.0))
        return QCoreApplication::translate("OSDProcessor", "Best fit");
    const int step = static_cast<int>(std::min(level, LAST_ZOOM_LEVEL));
    return QStringLiteral("%1x").arg(1 << (step - 1));
}

QString IndicationTexts::rotation(int quarterTurns)
{
    return QString::number(quarterTurns * 90);
}

QString IndicationTexts::digitalZoom(double factor)
{
    // QString takes a blank as the format character for fixed notation.
    return QStringLiteral("x%1").arg(factor, 5, ' ', 1, QLatin1Char(' '));
}
