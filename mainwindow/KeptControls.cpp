#include "mainwindow/KeptControls.h"

#include <QStringList>

namespace
{

struct Keyword {
    StandardControl control;
    const char *name;
};
constexpr Keyword KEYWORDS[] = {
    {StandardControl::Exposure, "exposure"},   {StandardControl::Focus, "focus"},
    {StandardControl::WhiteBalance, "white"},  {StandardControl::Sharpness, "sharpness"},
    {StandardControl::PowerLine, "powerLine"},
};
const QLatin1String BY_ITSELF("auto");

} // namespace

KeptControls KeptControls::fromText(const QString &text)
{
    KeptControls kept;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        const QString name = word.section('=', 0, 0), value = word.section('=', 1);
        bool isNumber = false;
        const qlonglong number = value.toLongLong(&isNumber);
        for (const Keyword &row : KEYWORDS) {
            if (name != QLatin1String(row.name))
                continue;
            if (isNumber)
                kept.keep(row.control, number);
            else if (value == BY_ITSELF)
                kept.keep(row.control, std::nullopt);
        }
    }
    return kept;
}

QString KeptControls::text() const
{
    QStringList words;
    for (const Keyword &row : KEYWORDS) {
        const auto found = m_values.find(row.control);
        if (found != m_values.end())
            words << QLatin1String(row.name) + '=' +
                         (found->second ? QString::number(*found->second) : QString(BY_ITSELF));
    }
    return words.join(' ');
}
