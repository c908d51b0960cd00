#pragma once

#include <QSize>

/// Sets the toolkit's options for the platform, except those that the user has set in the
/// environment. Call it before the application object is made; the object's constructor then sees
/// to it that every point of a stroke is delivered, which the platform's plug-in would otherwise
/// turn off.
void preparePlatform();

/// Removes settings from the environment that no platform of the toolkit can follow, and says so: a
/// platform that is not installed, a scale that is not a usable number. Call it before the
/// application object is made.
void dropUnusableSettings();

/// The error of the dots an inch, as a part of them: a screen without settings gives its size in
/// whole millimetres, so that 1366 pixels at 96 dpi are 361 mm, which make 96.1 dpi.
constexpr double MEASURING_ERROR = 0.01;

/// What the desktop says of its screen before the first window is made.
struct ScreenOffer {
    /// Dots an inch that the desktop asks programs to draw for; a value that no screen can have
    /// counts as 96.
    double dpi = 0.0;
    /// The screen without the desktop's panels, in device pixels; empty when unknown.
    QSize freeArea;
};

/// How many device pixels a unit of the layout takes: the desktop's dots an inch in 96ths, as
/// they are and not as whole numbers, but never below 1. Lowered by sixteenths until the window as
/// it opens and a title bar above it fit into the free area; at least a half.
[[nodiscard]] double layoutScale(const ScreenOffer &offer);

/// Whether the user has settled the scale by the environment; it then stands.
[[nodiscard]] bool scaleIsChosen();
