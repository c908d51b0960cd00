#include "tests/mainwindow/WindowParts.h"

#include "mainwindow/bars/ThumbnailWidget.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/Slider.h"

#include <QLabel>

QStringList WindowProbe::shownParts(const MainWindow &window)
{
    QStringList shown;
    const auto add = [&shown](const QWidget *widget, const QString &name) {
        if (!widget->isHidden())
            shown << name;
    };
    add(button(window, "Play")->parentWidget(), "film bar");
    add(window.findChildren<Slider *>()[0], "volume");
    add(button(window, "Slideshow")->parentWidget(), "photograph bar");
    add(window.findChildren<Slider *>()[1], "interval");
    add(window.findChildren<HorizontalSlider *>()[0], "position");
    add(window.findChildren<HorizontalSlider *>()[1], "scroll bar");
    add(window.thumbnailWidget(), "strip");
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text().contains('/'))
            add(label, "index");
        else if (label->text().contains("sec"))
            add(label, "interval label");
        else
            add(label, "record time");
    }
    for (const ImageButton *record : window.findChildren<ImageButton *>()) {
        if (record->accessibleName() == "Record video" && record->parentWidget()->width() == 60)
            add(record->parentWidget(), "live box");
    }
    shown.sort();
    return shown;
}
