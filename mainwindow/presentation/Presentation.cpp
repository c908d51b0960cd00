#include "mainwindow/presentation/Presentation.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/presentation/PluggedScreens.h"
#include "mainwindow/presentation/PresentationView.h"
#include "settings/Preferences.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace
{

const QString SCREEN_KEY = QStringLiteral("presentationScreen");
const QString START_KEY = QStringLiteral("presentationAtStart");
const QString POINTER_KEY = QStringLiteral("presentationPointer");
constexpr QSize ORDINARY_SIZE(960, 540);
/// The time in which a window manager places a window that was shown, and a dragged window arrives.
constexpr int SETTLE_MS = 400;

QStringList namesOf(const QList<QScreen *> &screens)
{
    QStringList names;
    for (const QScreen *screen : screens)
        names << screen->name();
    return names;
}

} // namespace

Presentation::Presentation(CanvasDeck *deck, QWidget *window)
    : m_deck(deck)
    , m_window(window)
{
    m_check.setSingleShot(true);
    m_check.setInterval(SETTLE_MS);
    connect(&m_check, &QTimer::timeout, this, &Presentation::checkPlace);
    connect(deck, &QStackedWidget::currentChanged, this, &Presentation::followDeck);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &Presentation::losesScreen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &Presentation::findsScreen);
    window->installEventFilter(this);
}

Presentation::~Presentation() = default;

bool Presentation::isHeld() const
{
    return m_open && m_view->isHeld();
}

bool Presentation::isBlank() const
{
    return m_open && m_view->isBlank();
}

// Opening and closing --------------------------------------------------------

void Presentation::toggle()
{
    if (m_open)
        close();
    else
        open();
}

void Presentation::open()
{
    m_view = std::make_unique<PresentationView>(m_window);
    m_view->setPointerShown(showsPointer());
    connect(m_view.get(), &PresentationView::leaveWanted, this, &Presentation::close,
            Qt::QueuedConnection);
    m_open = true;
    followDeck();
    place();
    emit changed();
}

void Presentation::close()
{
    if (!m_open)
        return;
    m_open = false;
    m_awaitsScreen = false;
    m_screen = nullptr;
    disconnect(m_resolution);
    m_check.stop();
    m_view.reset();
    emit changed();
}

void Presentation::toggleHold()
{
    if (m_open)
        m_view->setHeld(!m_view->isHeld());
    emit changed();
}

void Presentation::toggleBlank()
{
    if (m_open)
        m_view->setBlank(!m_view->isBlank());
    emit changed();
}

void Presentation::followDeck()
{
    if (m_open)
        m_view->setCanvas(m_deck->current());
}

bool Presentation::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window)
        return false;
    if (event->type() == QEvent::Show && !m_started) {
        m_started = true;
        // After the main window, so that it does not take the focus.
        if (opensAtStart() && !m_open)
            QMetaObject::invokeMethod(this, &Presentation::toggle, Qt::QueuedConnection);
    } else if (event->type() == QEvent::Move && m_screen) {
        m_check.start();
    }
    return false;
}

// Screens --------------------------------------------------------------------

QScreen *Presentation::target() const
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto index = ScreenChoice::besides(pluggedScreens(), m_window->frameGeometry(), screen());
    return index ? screens[int(*index)] : nullptr;
}

void Presentation::place()
{
    m_corrected = false;
    m_keepsFocus = m_window->isActiveWindow();
    m_check.start();
    if (QScreen *screen = target()) {
        fillScreen(screen);
        return;
    }
    m_screen = nullptr;
    m_view->resize(ORDINARY_SIZE);
    m_view->show();
}

void Presentation::fillScreen(QScreen *screen)
{
    m_screen = screen;
    m_awaitsScreen = false;
    disconnect(m_resolution);
    m_resolution = connect(screen, &QScreen::geometryChanged, this, [=] { fillScreen(screen); });
    // A window that is full screen already would stay on the screen that it has.
    m_view->setWindowState(m_view->windowState() & ~Qt::WindowFullScreen);
    m_view->winId();
    m_view->windowHandle()->setScreen(screen);
    m_view->setGeometry(screen->geometry());
    m_view->showFullScreen();
}

void Presentation::losesScreen(QScreen *screen)
{
    if (screen != m_screen)
        return;
    // Left to itself the window would fill the main window's screen.
    m_screen = nullptr;
    disconnect(m_resolution);
    m_awaitsScreen = true;
    m_view->hide();
}

void Presentation::findsScreen()
{
    if (m_open && m_awaitsScreen && target())
        place();
}

void Presentation::checkPlace()
{
    // Some window managers hand the focus to every new window.
    const bool keepsFocus = std::exchange(m_keepsFocus, false);
    if (keepsFocus && m_view->isActiveWindow())
        m_window->activateWindow();
    if (!m_screen)
        return;
    if (target() && target() != m_screen &&
        m_screen->geometry().intersects(m_window->frameGeometry())) {
        // The main window came over to this screen.
        place();
        return;
    }
    if (m_view->geometry() == m_screen->geometry() || m_corrected)
        return;
    m_corrected = true;
    // The window takes the focus a second time when it is made full screen again.
    m_keepsFocus = keepsFocus || m_window->isActiveWindow();
    fillScreen(m_screen);
    m_check.start();
}

// What is remembered ---------------------------------------------------------

QStringList Presentation::screens()
{
    return namesOf(QGuiApplication::screens());
}

QString Presentation::screen()
{
    return Preferences::text(SCREEN_KEY);
}

void Presentation::setScreen(const QString &name)
{
    Preferences::setText(SCREEN_KEY, name);
    if (m_open && target() != m_screen)
        place();
}

bool Presentation::opensAtStart()
{
    return Preferences::number(START_KEY, 0, 0, 1) == 1;
}

void Presentation::setOpensAtStart(bool opens)
{
    Preferences::setNumber(START_KEY, opens ? 1 : 0);
}

bool Presentation::showsPointer()
{
    return Preferences::number(POINTER_KEY, 1, 0, 1) == 1;
}

void Presentation::setShowsPointer(bool shows)
{
    Preferences::setNumber(POINTER_KEY, shows ? 1 : 0);
    if (m_open)
        m_view->setPointerShown(shows);
}
