#pragma once

/// The enumerations of the canvas, apart from the widget, so that settings and pure functions can
/// name them. ImageCanvas derives from this struct: ImageCanvas::Freehand is CanvasModes::Freehand.
/// Variables of these types may hold any int: a mode that a later version has written matches none
/// of these and does nothing.
struct CanvasModes {
    /// The tool that the left mouse button drives.
    enum MouseMode : int {
        Hand,
        Freehand,
        Line,
        Arrow,
        Rectangle,
        Circle,
        Triangle,
        Eraser,
        Clip,
        Text
    };
    static constexpr int MOUSE_MODE_COUNT = Text + 1;

    /// The colour effect on the picture; EffectColor is none.
    enum EffectMode : int { EffectColor, EffectBW, EffectNegative, EffectMosaic };

    /// The part of the picture that is covered with black.
    enum MaskMode : int { MaskNone, MaskCircle, MaskRectangle, MaskLeft, MaskTop };

    /// Whether the snapshot button takes one picture or runs a series.
    enum SnapshotMode : int { Single, Continuous };
};
