#pragma once

/// Gives the program the scale at which its window fits the screen, see layoutScale(), and sees to
/// it that windows are painted at any scale. The scale stays when screens are plugged and pulled.
/// After the application object is made and before the first window; leaves a scale alone that the
/// user has chosen, and every platform but X11, where the desktop scales the windows itself.
void fitScaleToScreen();
