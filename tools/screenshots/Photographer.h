#pragma once

#include <QDir>
#include <QString>

#include <functional>

class MainWindow;

/// Saves what the screen shows at the place of the window and its pop-up. Waits by running the
/// event loop, as no event tells when a display server has shown something.
class Photographer
{
public:
    Photographer(MainWindow *window, const QDir &folder);

    /// Saves it as `name`.png, once the screen has settled.
    void take(const QString &name);
    /// The open pop-up alone.
    void takePopup(const QString &name);
    /// Saves the next message box, in the middle of the screen, and answers it with no or OK.
    void takeNextBox(const QString &name);

    /// Runs the event loop.
    static void wait(int milliseconds);
    /// Until `done`, at most the given time; false if it never was.
    static bool waitFor(const std::function<bool()> &done, int milliseconds = 15000);

private:
    void save(QRect area, const QString &name);

    MainWindow *m_window;
    QDir m_folder;
};
