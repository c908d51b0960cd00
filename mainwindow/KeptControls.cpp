#include "mainwindow/KeptControls.h"

#include <QStringList>

namespace
{

struct Name {
    StandardControl control;
    const char *name;
};
constexpr Name NAMES[] = {
    {StandardControl::Exposure, "exposure"},   {StandardControl::Focus, "focus"},
    {StandardControl::WhiteBalance, "white"},  {StandardControl::Sharpness, "sharpness"},
    {StandardControl::PowerLine, "powerLine"},
};
const QLatin1String AUTOMATIC("auto");

} // namespace

KeptControls KeptControls::fromText(const QString &text)
{
    KeptControls kept;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        const QString name = word.section('=', 0, 0), value = word.section('=', 1);
        bool isNumber = false;
        const qlonglong number = value.toLongLong(&isNumber);
        for (const Name &row : NAMES) {
            if (name != QLatin1String(row.name))
                continue;
            if (isNumber)
                kept.keep(row.control, number);
            else if (value == AUTOMATIC)
                kept.keep(row.control, std::nullopt);
        }
    }
    return kept;
}

QString KeptControls::text() const
{
    QStringList words;
    for (const Name &row : NAMES) {
        const auto found = m_values.find(row.control);
        if (found != m_values.end())
            words << QLatin1String(row.name) + '=' +
                         (found->second ? QString::number(*found->second) : QString(AUTOMATIC));
    }
    return words.join(' ');
}
