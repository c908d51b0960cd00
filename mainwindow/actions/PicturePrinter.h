#pragma once

class ImageCanvas;
class QImage;
class QPrinter;
class QWidget;

/// Prints the picture of a canvas on one page. GUI thread; asking for the printers may block for as
/// long as the print server does, so nothing here is called before the user wants to print.
namespace PicturePrinter
{

/// Asks for printer and paper over `window` and prints, or says that there is no printer. A
/// dismissed dialog prints nothing.
void print(ImageCanvas *canvas, QWidget *window);

/// Draws the picture fitted and centred on the printer's page; an empty one prints no page.
void drawPage(QImage picture, QPrinter *printer);

} // namespace PicturePrinter
