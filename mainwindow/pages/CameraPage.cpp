#include "mainwindow/pages/Pages.h"

#include "sources/LiveSource.h"

#include <QCoreApplication>

QWidget *Pages::makeCameraPage(const Context &context, QWidget *parent)
{
    const auto text = [](const char *source) {
        return QCoreApplication::translate("MoreToolWindow", source);
    };
    const auto size = [](QSize pixels) {
        return QStringLiteral("%1 x %2").arg(pixels.width()).arg(pixels.height());
    };
    std::vector<Line> lines;
    if (const LiveSource *camera = context.camera) {
        lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Camera")),
                         camera->running()
                             ? text(QT_TRANSLATE_NOOP("MoreToolWindow", "connected"))
                             : text(QT_TRANSLATE_NOOP("MoreToolWindow", "not connected"))});
        lines.push_back(
            {text(QT_TRANSLATE_NOOP("MoreToolWindow", "Picture")), size(camera->resolution())});
        lines.push_back({text(QT_TRANSLATE_NOOP("MoreToolWindow", "Movies")),
                         size(camera->recordingResolution())});
    }
    return makeTable(lines, parent);
}
