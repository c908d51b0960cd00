#pragma once

#include <QImage>
#include <QProcess>
#include <QString>

/// The real program in a process of its own, with the settings and the folders of this test's home.
class ProgramUnderTest
{
public:
    ProgramUnderTest();
    /// Kills it if it still runs.
    ~ProgramUnderTest();
    ProgramUnderTest(const ProgramUnderTest &) = delete;
    ProgramUnderTest &operator=(const ProgramUnderTest &) = delete;

    /// `before` is a command that replaces itself by the program, whose name it is given last.
    bool start(const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
               const QStringList &arguments = {}, const QStringList &before = {});
    /// The X11 number of its main window once that is on the screen; 0 if it never comes.
    WId waitForWindow();
    /// Types into the window as the keyboard does; `keys` in xdotool's spelling.
    void pressKeys(const QString &keys);
    /// Clicks that pixel of the window with the mouse.
    bool click(QPoint point);
    /// The X11 number of the settings, opened by their button; 0 if they never come.
    WId openSettings();
    /// Presses OK there.
    bool closeSettings(WId popup);
    /// Both.
    bool acceptSettings();
    /// Chooses a series of snapshots there and presses OK.
    bool chooseSeries();
    /// Presses Return in a dialog if there is one; whether there was.
    bool answerDialog();
    /// Presses Return in the dialog that comes, which closes it.
    bool acceptDialog();
    /// Asks the window to close, as its title bar's button does, and waits for the process: whether
    /// it ended by itself. Its exit code is then exitCode().
    bool closeAndWait();
    /// Waits for the process, which was told to end: whether it ended by itself and not by a
    /// signal or a crash.
    bool waitForEnd();
    void sendSignal(int number) const;
    /// Whether it says that before it ends.
    bool waitForOutput(const QByteArray &text);
    [[nodiscard]] int exitCode() const;
    [[nodiscard]] qint64 processId() const;
    [[nodiscard]] bool running() const;
    /// The files in its memory, libraries among them, as the system lists them.
    [[nodiscard]] QByteArray mappedFiles() const;
    /// All it has said so far.
    QByteArray output();

    /// Waits until the window manager manages new windows: it may ignore for ever one that is
    /// mapped while it starts.
    static bool waitForWindowManager();
    /// What the screen shows now.
    static QImage screenshot();

private:
    /// Whether the window manager comes to look after that many windows of it.
    bool waitForWindows(int count);

    QProcess m_process;
    QByteArray m_output;
    WId m_window = 0;
};
