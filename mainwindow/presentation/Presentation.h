#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

class CanvasDeck;
class PresentationView;
class QScreen;
class QWidget;

/// Opens, places and closes the window for the class: full screen on a screen that the main window
/// is not on, or an ordinary window, which can be shared in a call, when there is no such screen.
/// A screen that is pulled takes the window with it until it comes back. GUI thread.
class Presentation : public QObject
{
    Q_OBJECT

public:
    /// Shows the current canvas of `deck`; both outlive it.
    Presentation(CanvasDeck *deck, QWidget *window);
    ~Presentation() override;

    /// Also while the window's screen is away.
    [[nodiscard]] bool isOpen() const { return m_open; }
    [[nodiscard]] bool isHeld() const;
    [[nodiscard]] bool isBlank() const;

    // Chosen by the user and remembered
    /// The screens there are, by name.
    [[nodiscard]] static QStringList screens();
    /// Empty for the first that the main window is not on.
    [[nodiscard]] static QString screen();
    void setScreen(const QString &name);
    [[nodiscard]] static bool opensAtStart();
    void setOpensAtStart(bool opens);
    [[nodiscard]] static bool showsPointer();
    void setShowsPointer(bool shows);

    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    void toggle();
    void close();
    // Both do nothing while it is closed.
    void toggleHold();
    void toggleBlank();

signals:
    /// It was opened or closed, holds its picture or follows it again, or is blank or no longer so.
    void changed();

private slots:
    void followDeck();
    void losesScreen(QScreen *screen);
    void findsScreen();
    /// Places the window once more if the window manager put it elsewhere.
    void checkPlace();

private:
    void open();
    /// Nothing when the main window's screen is the only one.
    [[nodiscard]] QScreen *target() const;
    void place();
    void fillScreen(QScreen *screen);

    CanvasDeck *m_deck;
    QWidget *m_window;
    std::unique_ptr<PresentationView> m_view;
    /// The screen that is filled; null in an ordinary window and while it is away.
    QScreen *m_screen = nullptr;
    /// Tells when that screen changes its size.
    QMetaObject::Connection m_resolution;
    QTimer m_check;
    /// The main window has been shown.
    bool m_started = false;
    bool m_open = false;
    bool m_awaitsScreen = false;
    bool m_corrected = false;
    /// The main window had the focus when this one was placed.
    bool m_keepsFocus = false;
};
