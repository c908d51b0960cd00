#pragma once

/// Makes the skin images known under ":/icons/". A static library's resources vanish from a program
/// that never names them, so whoever loads an image calls this first; more calls do nothing.
void initialiseSkin();
