#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QSet>

class MainWindow;

/// What the main window and its parts stand at, as somebody sees who looks at them all at once.
/// GUI thread.
class WindowReport : public QObject
{
public:
    WindowReport();

    /// The table of commands: name, keys, modes, tool, pop-up.
    [[nodiscard]] static QJsonArray commands();
    /// With a fingerprint of the picture shown if `withPicture`. Empty while there is no window.
    [[nodiscard]] QJsonObject state(bool withPicture);
    /// How many objects the GUI thread has, how many timers have fired there since the last call,
    /// and the kilobytes of all blocks in use, but for pictures, which are mapped one by one.
    [[nodiscard]] QJsonObject census();

    /// Counts paintings and timers; filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] QJsonObject canvas(const MainWindow &window, int mode, bool withPicture);

    /// By canvas.
    QHash<QObject *, int> m_paintings;
    QSet<int> m_fired;
};
