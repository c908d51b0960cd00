#pragma once

/// The enumerations of the canvas, apart from the widget, so that settings and pure functions can
/// name them. ImageCanvas derives from this struct: ImageCanvas::Freehand is CanvasModes::Freehand.
struct CanvasModes {
    /// The tool that the left mouse button drives.
    enum MouseMode {
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

    /// The colour effect on the picture; EffectColor is none.
    enum EffectMode { EffectColor, EffectBW, EffectNegative, EffectMosaic };

    /// The part of the picture that is covered with black.
    enum MaskMode { MaskNone, MaskCircle, MaskRectangle, MaskLeft, MaskTop };

    /// Whether the snapshot button takes one picture or runs a series.
    enum SnapshotMode { Single, Continuous };
};
