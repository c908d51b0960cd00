#pragma once

#include "mainwindow/MainWindow.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>

#include <functional>

/// Finds its way about a main window as a user does: by the names of its buttons.
namespace WindowProbe
{

inline ImageButton *button(const QWidget &parent, const QString &accessibleName)
{
    for (ImageButton *candidate : parent.findChildren<ImageButton *>()) {
        if (candidate->accessibleName() == accessibleName)
            return candidate;
    }
    qFatal("no button %s", qPrintable(accessibleName));
}

/// The mode buttons' names, by mode number.
inline QStringList modes()
{
    return {"Live", "Film", "Photograph", "Drawing Board"};
}

inline void enter(const MainWindow &window, int mode)
{
    button(window, modes()[mode])->click();
}

inline QStackedWidget *stack(const MainWindow &window)
{
    return window.findChild<QStackedWidget *>();
}

/// Lets `answer` deal with the next modal dialog of that kind, once it is shown.
template <typename Dialog>
void whenAsked(QObject *context, std::function<void(Dialog *)> answer)
{
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, answer] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        answer(dialog);
    });
    timer->start(10);
}

} // namespace WindowProbe
