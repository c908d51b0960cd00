#include "mainwindow/ModeRules.h"

namespace ModeRules
{

using ButtonTable::PanelButton;

bool enabled(PanelButton button, int mode)
{
    switch (button) {
    case PanelButton::Hand:
        return mode != Live;
    case PanelButton::FillBackground:
        return mode == DrawingBoard;
    case PanelButton::AutoFocus:
    case PanelButton::BrightnessDown:
    case PanelButton::BrightnessUp:
    case PanelButton::Freeze:
    case PanelButton::Record:
    case PanelButton::Settings:
        return mode == Live;
    default:
        return true;
    }
}

std::optional<PanelButton> toolButton(int mouseMode)
{
    switch (mouseMode) {
    case CanvasModes::Hand:
        return PanelButton::Hand;
    case CanvasModes::Freehand:
        return PanelButton::Freehand;
    case CanvasModes::Line:
        return PanelButton::Line;
    case CanvasModes::Arrow:
        return PanelButton::Arrow;
    case CanvasModes::Rectangle:
        return PanelButton::Rectangle;
    case CanvasModes::Circle:
        return PanelButton::Circle;
    case CanvasModes::Triangle:
        return PanelButton::Triangle;
    case CanvasModes::Eraser:
        return PanelButton::Eraser;
    case CanvasModes::Clip:
        return PanelButton::Clip;
    case CanvasModes::Text:
        return PanelButton::Text;
    default:
        return std::nullopt;
    }
}

QString maskSkin(int maskMode)
{
    switch (maskMode) {
    case CanvasModes::MaskRectangle:
        return QStringLiteral("ICON_MASK_RECTANGLE");
    case CanvasModes::MaskLeft:
        return QStringLiteral("ICON_MASK_LEFT");
    case CanvasModes::MaskTop:
        return QStringLiteral("ICON_MASK_TOP");
    default:
        return QStringLiteral("ICON_MASK_CIRCLE");
    }
}

QString effectSkin(int effectMode)
{
    switch (effectMode) {
    case CanvasModes::EffectBW:
        return QStringLiteral("ICON_EFFECT_BW");
    case CanvasModes::EffectNegative:
        return QStringLiteral("ICON_EFFECT_NEGATIVE");
    case CanvasModes::EffectMosaic:
        return QStringLiteral("ICON_EFFECT_MOSAIC");
    default:
        return QStringLiteral("ICON_EFFECT_COLOR");
    }
}

} // namespace ModeRules
