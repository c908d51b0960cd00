#pragma once

#include "mainwindow/MainWindow.h"
#include "settings/Config.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
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

/// Lets `answer` deal with the next modal dialog of that kind, once it has the focus: one that goes
/// earlier is shown by the window manager all the same, for a moment, over what is clicked next.
template <typename Dialog>
void whenAsked(QObject *context, std::function<void(Dialog *)> answer)
{
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, answer] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isActiveWindow())
            return;
        timer->stop();
        timer->deleteLater();
        answer(dialog);
    });
    timer->start(10);
}

/// Answers the next file dialog with a path, as if it had been typed.
inline void chooseFile(QObject *context, const QString &path)
{
    whenAsked<QFileDialog>(context, [path](QFileDialog *dialog) {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

/// The panel's buttons that have a pop-up window.
inline QList<Command> poppingButtons()
{
    QList<Command> found;
    for (const Commands::Row &row : Commands::rows()) {
        if (row.holdSlot)
            found << row.command;
    }
    return found;
}

/// Keeps the machine's own dialogs and print server out of the tests.
inline void beOnOneself()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock");
}

inline void usualSettings()
{
    Config::setSnapshotPath(QDir::tempPath());
    Config::setRecordPath(QDir::tempPath());
    Config::setSnapshotMode(CanvasModes::Single);
    Config::setSnapshotInterval(1);
    Config::setResolutionIndex(1);
    Config::setRecordingResolutionIndex(1);
}

} // namespace WindowProbe
