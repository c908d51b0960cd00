#include "mainwindow/actions/PicturePrinter.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/actions/PageFit.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

void PicturePrinter::print(ImageCanvas *canvas, QWidget *window)
{
    const QImage picture = canvas->currentImage();
    if (QPrinterInfo::availablePrinters().isEmpty()) {
        QMessageBox::critical(
            window, QCoreApplication::translate("MainWindow", "Error"),
            QCoreApplication::translate("MainWindow", "No printers found on this system."));
        return;
    }
    QPrinter printer(QPrinter::ScreenResolution);
    QPrintDialog dialog(&printer, window);
    if (dialog.exec() == QDialog::Accepted)
        drawPage(picture, &printer);
}

void PicturePrinter::drawPage(QImage picture, QPrinter *printer)
{
    const auto fit = PageFit::of(picture.size(), QSize(printer->width(), printer->height()));
    if (!fit)
        return;
    if (fit->turned)
        picture = picture.transformed(QTransform().rotate(90), Qt::FastTransformation);
    QPainter painter(printer);
    painter.drawImage(fit->target, picture);
}
