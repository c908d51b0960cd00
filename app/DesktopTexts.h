#pragma once

#include <QtGlobal>

/// What the desktop shows of the program: the texts of the templates in packaging/, named here so
/// that they reach the catalogues. Only the extraction of texts reads this file.
namespace DesktopTexts
{

constexpr const char *ALL[] = {
    QT_TRANSLATE_NOOP("DesktopTexts", "Document Camera"),
    QT_TRANSLATE_NOOP("DesktopTexts", "Document Camera Viewer"),
    QT_TRANSLATE_NOOP("DesktopTexts", "Show, annotate and record the picture of a document camera"),
    QT_TRANSLATE_NOOP("DesktopTexts", "camera"),
    QT_TRANSLATE_NOOP("DesktopTexts", "visualizer"),
    QT_TRANSLATE_NOOP("DesktopTexts", "presentation"),
    QT_TRANSLATE_NOOP("DesktopTexts", "classroom"),
    QT_TRANSLATE_NOOP("DesktopTexts", "whiteboard"),
    QT_TRANSLATE_NOOP("DesktopTexts",
                      "Shows the live picture of a USB document camera for a class and its "
                      "projector. The speaker draws and writes over it, zooms, rotates, freezes "
                      "and masks it, takes snapshots, records movies with sound and prints."),
    QT_TRANSLATE_NOOP("DesktopTexts", "Three more modes play a film, show a folder of photographs "
                                      "and serve as a drawing board."),
    QT_TRANSLATE_NOOP("DesktopTexts",
                      "Pens and fingers draw, zoom and move the picture, and each step can be "
                      "taken back. A second screen shows the class the picture alone. Other USB "
                      "cameras can be chosen, and their pictures mirrored."),
    QT_TRANSLATE_NOOP("DesktopTexts", "The live picture, drawn on"),
    QT_TRANSLATE_NOOP("DesktopTexts", "A folder of photographs"),
    QT_TRANSLATE_NOOP("DesktopTexts", "The drawing board"),
    QT_TRANSLATE_NOOP("DesktopTexts", "The first release."),
};

} // namespace DesktopTexts
