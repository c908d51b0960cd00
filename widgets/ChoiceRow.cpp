#include "widgets/ChoiceRow.h"

#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"

#include <QButtonGroup>
#include <QLabel>

namespace
{

/// Between a row's caption and the button after it, in pixels.
constexpr int CAPTION_GAP = 3;

} // namespace

ChoiceRow::ChoiceRow(QWidget *window, const QString &caption, const std::vector<Choice> &choices,
                     const Place &place, const char *slot)
    : QObject(window)
    , m_group(new QButtonGroup(this))
{
    if (!caption.isEmpty()) {
        auto *label = new QLabel(caption, window);
        label->move(place.label);
        label->ensurePolished();
        const int end = place.captionEnd > 0 ? place.captionEnd : place.firstButton.x();
        FormControls::fitFont(label, {caption}, end - place.label.x() - CAPTION_GAP);
        FormControls::keepLineHeight(label);
    }
    int x = place.firstButton.x();
    for (const Choice &choice : choices) {
        auto *button = new ImageButton(choice.skin, window, x, place.firstButton.y());
        button->setCheckable(true);
        button->setAccessibleName(nameInRow(caption, choice.name));
        button->setToolTip(choice.name);
        connect(button, SIGNAL(clicked()), window, slot);
        m_group->addButton(button, static_cast<int>(m_buttons.size()));
        m_buttons.push_back(button);
        x += place.pitch;
    }
}

QString ChoiceRow::nameInRow(const QString &caption, const QString &choice)
{
    return caption.isEmpty() ? choice : tr("%1: %2").arg(caption, choice);
}

int ChoiceRow::count() const
{
    return static_cast<int>(m_buttons.size());
}

ImageButton *ChoiceRow::button(int index) const
{
    return index >= 0 && index < count() ? m_buttons[static_cast<std::size_t>(index)] : nullptr;
}

int ChoiceRow::indexOf(const QObject *button) const
{
    for (int i = 0; i < count(); ++i) {
        if (m_buttons[static_cast<std::size_t>(i)] == button)
            return i;
    }
    return -1;
}

int ChoiceRow::checkedIndex() const
{
    return m_group->checkedId();
}

void ChoiceRow::check(int index)
{
    if (ImageButton *chosen = button(index)) {
        chosen->setChecked(true);
        return;
    }
    // An exclusive group refuses to be emptied.
    m_group->setExclusive(false);
    for (ImageButton *each : m_buttons)
        each->setChecked(false);
    m_group->setExclusive(true);
}
