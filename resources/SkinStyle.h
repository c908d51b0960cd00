#pragma once

#include <QPalette>
#include <QProxyStyle>

/// The desktop's own style with what the skin needs of it: tips with the edge of the pop-ups, and
/// no icons on the buttons of dialogs. GUI thread.
class SkinStyle : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    /// Gives the application this style, and the dark colours too when no theme of the desktop
    /// supplies any. Once the application object stands.
    static void install();

    /// The colours of the pop-ups for fields, lists and whole dialogs.
    [[nodiscard]] static QPalette darkPalette();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr,
                  const QWidget *widget = nullptr,
                  QStyleHintReturn *returnData = nullptr) const override;
};
