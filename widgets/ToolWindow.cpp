#include "widgets/ToolWindow.h"

#include "widgets/FocusGrid.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"
#include "widgets/PopupPlace.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <utility>

namespace
{

/// Longer than the toolkit waits for the focus to come to another of its windows.
constexpr std::chrono::milliseconds FOCUS_TIMEOUT(250);

/// The toolkit may take a pop-up for the active window just before it is destroyed. It then takes
/// none for it, though the display server has the focus in this one, until somebody asks for it.
void keepFocus(QWidget *window)
{
    QTimer::singleShot(FOCUS_TIMEOUT, window, [window] {
        if (!QApplication::activeWindow() && window->isVisible() && !window->isMinimized())
            window->activateWindow();
    });
}

} // namespace

ToolWindow::ToolWindow(const QImage &background, ImageButton *toolButton, QWidget *parent,
                       const QString &title)
    : FramelessWindow(background, true, parent)
    , m_toolButton(toolButton)
    , m_closeButton(new ImageButton("POPUP_CLOSE", this, 0, 0))
{
    m_closeButton->setAccessibleName(tr("Close"));
    m_closeButton->setToolTip(tr("Close"));
    m_closeButton->setKey(Qt::Key_Escape);
    connect(m_closeButton, SIGNAL(clicked()), this, SLOT(close()));
    if (parent)
        parent->installEventFilter(this);
    if (m_toolButton)
        m_toolButton->installEventFilter(this);
    alignToToolButton();

    auto *label = new QLabel(title, this);
    label->setStyleSheet("font-family: Arial; font-size: 14px; color: white;");
    label->move(8, 2);
    FormControls::keepLineHeight(label);
    setAccessibleName(title);
}

ToolWindow::~ToolWindow()
{
    // A focus that is in another program is left there.
    const bool hadFocus = QApplication::activeWindow() != nullptr;
    if (hadFocus && isWindow() && testAttribute(Qt::WA_WState_Created) && parentWidget())
        keepFocus(parentWidget());
}

ImageButton *ToolWindow::toolButton() const
{
    return m_toolButton;
}

void ToolWindow::alignToToolButton()
{
    if (!m_toolButton)
        return;
    if (!isWindow()) {
        move(placeInWindow());
        return;
    }
    // The area's width and height are used as its right and bottom edges: on every screen the
    // pop-up comes to the primary one.
    const QSize area = QGuiApplication::primaryScreen()->availableGeometry().size();
    QPoint point = m_toolButton->mapToGlobal(QPoint(m_toolButton->width() + 3, 0));
    if (point.x() + width() > area.width())
        point.setX(area.width() - width());
    if (point.y() + height() > area.height())
        point.setY(area.height() - height());
    move(point);
}

QPoint ToolWindow::placeInWindow() const
{
    const QWidget *window = parentWidget();
    const auto placeOf = [window](const QWidget *widget) {
        return QRect(widget->mapTo(window, QPoint(0, 0)), widget->size());
    };
    QVector<QRect> others;
    for (const QWidget *each : window->findChildren<ImageButton *>()) {
        // Of a long strip of thumbnails few are within the window.
        if (each != m_toolButton && each->isVisible() && !isAncestorOf(each) &&
            placeOf(each).intersects(window->rect()))
            others << placeOf(each);
    }
    return PopupPlace::beside(placeOf(m_toolButton), size(), window->rect(), others);
}

bool ToolWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
        alignToToolButton();
    // The main window places its buttons only after its resize has passed through here.
    if (watched == m_toolButton && event->type() == QEvent::Move)
        alignToToolButton();
    return false;
}

void ToolWindow::focusChanged(QWidget *, QWidget *now)
{
    for (QWidget *widget = now; widget; widget = widget->parentWidget()) {
        if (widget == this)
            return;
    }
    close();
}

void ToolWindow::setBackground(const QImage &background)
{
    setBackgroundImage(background);
    alignToToolButton();
}

void ToolWindow::resizeEvent(QResizeEvent *event)
{
    FramelessWindow::resizeEvent(event);
    m_closeButton->move(width() - 18, 4);
}

void ToolWindow::showEvent(QShowEvent *event)
{
    alignToToolButton();
    if (!isWindow())
        raise();
    FramelessWindow::showEvent(event);
}

void ToolWindow::hideEvent(QHideEvent *event)
{
    FramelessWindow::hideEvent(event);
    // A window leaves the focus to another window, a part of one would keep it.
    if (!isWindow() && isAncestorOf(window()->focusWidget()))
        window()->setFocus(Qt::OtherFocusReason);
    if (!std::exchange(m_givesFocusBack, false) || !m_toolButton)
        return;
    m_toolButton->window()->activateWindow();
    m_toolButton->setFocus(Qt::ShortcutFocusReason);
}

void ToolWindow::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Escape)
        close();
    else if (FocusGrid::isArrow(event->key()) && held == Qt::NoModifier)
        moveFocus(event->key());
    else
        FramelessWindow::keyPressEvent(event);
}

void ToolWindow::takeFocus()
{
    activateWindow();
    m_givesFocusBack = true;
    QWidget *first = nullptr;
    for (QWidget *each : FocusGrid::stops(this)) {
        const auto *button = qobject_cast<const QAbstractButton *>(each);
        if (button && button->isChecked()) {
            first = each;
            break;
        }
        if (!first && each != m_closeButton)
            first = each;
    }
    if (first)
        first->setFocus(Qt::ShortcutFocusReason);
}

void ToolWindow::moveFocus(int key)
{
    if (QWidget *next = FocusGrid::next(this, focusWidget(), key))
        next->setFocus(Qt::ShortcutFocusReason);
}
