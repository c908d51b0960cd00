#pragma once

#include <QFont>
#include <QPalette>
#include <QProxyStyle>

/// The desktop's own style with what the skin needs of it: tips with the edge of the pop-ups, and
/// no icons on the buttons of dialogs. GUI thread.
class SkinStyle : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    /// Gives the application this style; when no theme of the desktop supplies any colours, also
    /// the dark ones and a proportional font. Once the application object stands.
    static void install();

    /// The colours of the pop-ups for fields, lists and whole dialogs.
    [[nodiscard]] static QPalette darkPalette();

    /// The font, or that of the pop-ups in its place when all its letters have one width: without a
    /// theme the system takes such a one for the dialogs of some languages (French, for one) where
    /// few fonts are installed.
    [[nodiscard]] static QFont proportional(QFont font);

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr,
                  const QWidget *widget = nullptr,
                  QStyleHintReturn *returnData = nullptr) const override;
};
