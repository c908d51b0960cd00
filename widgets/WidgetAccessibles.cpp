#include "widgets/WidgetAccessibles.h"

#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QButtonGroup>

#include <algorithm>

namespace
{

class ButtonAccessible : public QAccessibleWidget
{
public:
    explicit ButtonAccessible(ImageButton *button)
        : QAccessibleWidget(button, QAccessible::Button)
    {
    }

    QAccessible::Role role() const override
    {
        if (!button()->isCheckable())
            return QAccessible::Button;
        const bool oneOfSeveral = button()->group() && button()->group()->exclusive();
        return oneOfSeveral ? QAccessible::RadioButton : QAccessible::CheckBox;
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString said = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && said.isEmpty() ? button()->text() : said;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        state.hasPopup = button()->hasOptions();
        state.disabled = state.disabled || button()->isGray();
        return state;
    }

    QStringList actionNames() const override
    {
        if (state().disabled)
            return {};
        QStringList names{pressAction()};
        if (button()->hasOptions())
            names << showMenuAction();
        return names << setFocusAction();
    }

    void doAction(const QString &name) override
    {
        if (state().disabled)
            return;
        if (name == pressAction())
            button()->click();
        else if (name == showMenuAction() && button()->hasOptions())
            button()->askForOptions();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    [[nodiscard]] ImageButton *button() const { return static_cast<ImageButton *>(widget()); }
};

class StripAccessible : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit StripAccessible(HorizontalSlider *strip)
        : QAccessibleWidget(strip, QAccessible::Slider)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return strip()->value(); }
    QVariant minimumValue() const override { return strip()->minimum(); }
    QVariant maximumValue() const override { return strip()->maximum(); }
    QVariant minimumStepSize() const override { return 1; }

    void setCurrentValue(const QVariant &value) override
    {
        const int most = std::max(strip()->minimum(), strip()->maximum());
        const int kept = std::clamp(value.toInt(), strip()->minimum(), most);
        strip()->setValue(kept);
        emit strip()->valueChanged(kept);
    }

private:
    [[nodiscard]] HorizontalSlider *strip() const
    {
        return static_cast<HorizontalSlider *>(widget());
    }
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    if (className == QLatin1String("ImageButton"))
        return new ButtonAccessible(static_cast<ImageButton *>(object));
    if (className == QLatin1String("HorizontalSlider"))
        return new StripAccessible(static_cast<HorizontalSlider *>(object));
    return nullptr;
}

} // namespace

void WidgetAccessibles::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
    Q_UNUSED(installed)
}
