#include "tests/endurance/WidgetReport.h"

#include "mainwindow/MainWindow.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextEdit>

namespace
{

QString nameOf(const QWidget &widget)
{
    return widget.accessibleName().isEmpty() ? widget.objectName() : widget.accessibleName();
}

/// The name of the command whose button this is; empty for none.
QString commandOf(const MainWindow &window, const QObject *button)
{
    for (const Commands::Row &row : Commands::rows()) {
        if (button && window.button(row.command) == button)
            return row.text;
    }
    return {};
}

/// Whether a click in the widget's middle reaches it.
bool isReached(const QWidget &widget)
{
    QWidget *top = QApplication::widgetAt(widget.mapToGlobal(widget.rect().center()));
    return top && (top == &widget || widget.isAncestorOf(top));
}

/// Whether another window of the program, such as the one for the class, lies over it.
bool isCovered(const MainWindow &window)
{
    for (const QWidget *each : QApplication::topLevelWidgets()) {
        const QRect shared = each->frameGeometry() & window.frameGeometry();
        if (each == &window || each->parentWidget() || !each->isVisible() || shared.isEmpty())
            continue;
        if (QApplication::topLevelAt((each->geometry() & window.geometry()).center()) == each)
            return true;
    }
    return false;
}

QJsonObject button(const MainWindow &window, const QAbstractButton &widget)
{
    const auto *image = qobject_cast<const ImageButton *>(&widget);
    return {{"name", widget.accessibleName().isEmpty() ? widget.text() : widget.accessibleName()},
            {"command", commandOf(window, &widget)},
            {"enabled", widget.isEnabled()},
            {"checked", widget.isChecked()},
            {"checkable", widget.isCheckable()},
            {"gray", image && image->isGray()},
            {"options", image && image->hasOptions()},
            {"rect", WidgetReport::place(widget)},
            {"reached", isReached(widget)},
            {"window", widget.window()->metaObject()->className()}};
}

QJsonArray buttons(const MainWindow &window)
{
    QJsonArray found;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (!top->isVisible())
            continue;
        for (const QAbstractButton *each : top->findChildren<QAbstractButton *>()) {
            // A pop-up is a window and belongs to one.
            if (each->isVisible() && each->window() == top)
                found << button(window, *each);
        }
    }
    return found;
}

/// Sliders, boxes and fields that can be seen.
QJsonArray fields()
{
    QJsonArray found;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (!top->isVisible() || qobject_cast<QFileDialog *>(top))
            continue;
        for (const QWidget *each : top->findChildren<QWidget *>()) {
            const auto *slider = qobject_cast<const QAbstractSlider *>(each);
            const auto *box = qobject_cast<const QComboBox *>(each);
            const auto *strip = qobject_cast<const HorizontalSlider *>(each);
            if (!each->isVisible() || each->window() != top || (!slider && !box && !strip))
                continue;
            const int value = slider ? slider->value() : box ? box->currentIndex() : strip->value();
            found << QJsonObject{
                {"name", nameOf(*each)},           {"class", each->metaObject()->className()},
                {"enabled", each->isEnabled()},    {"value", value},
                {"count", box ? box->count() : 0}, {"rect", WidgetReport::place(*each)},
                {"reached", isReached(*each)},     {"window", top->metaObject()->className()}};
        }
    }
    return found;
}

QJsonObject dialog()
{
    const QWidget *modal = QApplication::activeModalWidget();
    if (!modal)
        return {};
    QString text;
    if (const auto *box = qobject_cast<const QMessageBox *>(modal))
        text = box->text();
    return {{"class", modal->metaObject()->className()},
            {"title", modal->windowTitle()},
            {"text", text},
            {"file", qobject_cast<const QFileDialog *>(modal) != nullptr},
            {"active", modal->isActiveWindow()},
            {"rect", WidgetReport::place(*modal)}};
}

QJsonObject popUp(const MainWindow &window)
{
    const ToolWindow *open = window.currentToolWindow();
    if (!open)
        return {};
    return {{"class", open->metaObject()->className()},
            {"command", commandOf(window, open->toolButton())},
            {"visible", open->isVisible()},
            {"active", open->isActiveWindow()},
            {"rect", WidgetReport::place(*open)}};
}

/// What keys mean to a widget.
QString kindOf(const QWidget &widget)
{
    if (qobject_cast<const QTextEdit *>(&widget))
        return "text";
    if (qobject_cast<const QAbstractScrollArea *>(&widget))
        return "area";
    if (qobject_cast<const QLineEdit *>(&widget) || qobject_cast<const QComboBox *>(&widget) ||
        qobject_cast<const QAbstractSpinBox *>(&widget))
        return "field";
    if (qobject_cast<const QAbstractSlider *>(&widget))
        return "slider";
    return qobject_cast<const QAbstractButton *>(&widget) ? "button" : "other";
}

QJsonObject focus()
{
    const QWidget *widget = QApplication::focusWidget();
    if (!widget)
        return {};
    return {{"class", widget->metaObject()->className()},
            {"kind", kindOf(*widget)},
            {"name", nameOf(*widget)},
            {"visible", widget->isVisible()},
            {"enabled", widget->isEnabled()},
            {"window", widget->window()->metaObject()->className()}};
}

} // namespace

QJsonArray WidgetReport::place(const QWidget &widget)
{
    const QPoint at = widget.mapToGlobal(QPoint(0, 0));
    return {at.x(), at.y(), widget.width(), widget.height()};
}

QJsonObject WidgetReport::state(const MainWindow &window)
{
    const QWidget *active = QApplication::activeWindow();
    const QWidget *list = QApplication::activePopupWidget();
    return {{"window", place(window)},
            {"id", static_cast<double>(window.winId())},
            {"ratio", window.devicePixelRatioF()},
            {"fullScreen", window.isFullScreen()},
            {"maximized", window.isMaximized()},
            {"minimized", window.isMinimized()},
            {"shown", window.isVisible()},
            {"covered", isCovered(window)},
            {"active", active ? active->metaObject()->className() : ""},
            {"list", list ? list->metaObject()->className() : ""},
            {"buttons", buttons(window)},
            {"fields", fields()},
            {"dialog", dialog()},
            {"popUp", popUp(window)},
            {"focus", focus()}};
}
