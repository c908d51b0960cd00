#include "resources/SkinStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QStyleOption>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformtheme.h>

namespace
{

const QColor GROUND(0x15181B);
const QColor FIELD(0x22262B);
const QColor FACE(0x2B3036);
const QColor EDGE(0x4A525C);
const QColor INK(0xD6DAE0);
const QColor DIM(0x8A929C);
const QColor ACCENT(0x0074E6);
const QColor LINK(0x3D9BFF);

/// A theme that has no colours answers with the platform's stand-in.
bool themeSuppliesColours()
{
    const QPlatformTheme *theme = QGuiApplicationPrivate::platformTheme();
    const QPalette *supplied = theme ? theme->palette() : nullptr;
    const QPlatformTheme plain;
    const QPalette *standIn = plain.palette();
    return supplied && standIn && *supplied != *standIn;
}

} // namespace

void SkinStyle::install()
{
    QApplication::setStyle(new SkinStyle);
    if (themeSuppliesColours())
        return;
    QApplication::setPalette(darkPalette());
    const QFont font = proportional(QApplication::font());
    if (font != QApplication::font())
        QApplication::setFont(font);
}

QFont SkinStyle::proportional(QFont font)
{
    if (QFontInfo(font).fixedPitch())
        font.setFamily(QStringLiteral("Arial"));
    return font;
}

QPalette SkinStyle::darkPalette()
{
    QPalette palette(FACE, GROUND);
    palette.setColor(QPalette::Base, FIELD);
    palette.setColor(QPalette::AlternateBase, FACE);
    palette.setColor(QPalette::ToolTipBase, GROUND);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, INK);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, DIM);
    palette.setColor(QPalette::Highlight, ACCENT);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, LINK);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, DIM);
    return palette;
}

void SkinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    if (element != PE_PanelTipLabel) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->fillRect(option->rect, GROUND);
    painter->setPen(EDGE);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}

int SkinStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
