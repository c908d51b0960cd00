#include "widgets/IntervalTable.h"

#include <QCoreApplication>

namespace IntervalTable
{

const std::array<Interval, 17> &intervals()
{
    static constexpr const char *SECONDS = QT_TRANSLATE_NOOP("SettingsToolWindow", "sec");
    static constexpr const char *MINUTES = QT_TRANSLATE_NOOP("SettingsToolWindow", "min");
    static constexpr const char *HOURS = QT_TRANSLATE_NOOP("SettingsToolWindow", "hr");
    static constexpr std::array<Interval, 17> table{{
        {1, 1, SECONDS},
        {2, 2, SECONDS},
        {3, 3, SECONDS},
        {4, 4, SECONDS},
        {5, 5, SECONDS},
        {10, 10, SECONDS},
        {20, 20, SECONDS},
        {30, 30, SECONDS},
        {60, 1, MINUTES},
        {120, 2, MINUTES},
        {180, 3, MINUTES},
        {240, 4, MINUTES},
        {300, 5, MINUTES},
        {600, 10, MINUTES},
        {1200, 20, MINUTES},
        {1800, 30, MINUTES},
        {3600, 1, HOURS},
    }};
    return table;
}

int indexOf(unsigned long long seconds)
{
    const auto &table = intervals();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].seconds == seconds)
            return static_cast<int>(i);
    }
    return 0;
}

QString label(const Interval &interval)
{
    const QString unit = QCoreApplication::translate("SettingsToolWindow", interval.unit);
    return QStringLiteral("%1 %2").arg(interval.number).arg(unit);
}

} // namespace IntervalTable
