#include "widgets/Panel.h"

#include "resources/SkinImages.h"
#include "widgets/ImageButton.h"

#include <QGridLayout>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr char OPEN_SKIN[] = "TOOL_TITLE_OPEN";
constexpr char CLOSED_SKIN[] = "TOOL_TITLE_CLOSE";

} // namespace

Panel::Panel(QWidget *parent)
    : QWidget(parent)
    , m_top(SkinImages::load(":/icons/Background_Sub/ICON_BK_TOP.png"))
    , m_middleSource(SkinImages::load(":/icons/Background_Sub/ICON_BK_MID.png"))
    , m_bottom(SkinImages::load(":/icons/Background_Sub/ICON_BK_BOT.png"))
    , m_layout(new QGridLayout(this))
{
    m_layout->setSpacing(0);
    m_layout->setMargin(0);
    m_layout->setContentsMargins(0, 5, 4, 5);
    setFixedWidth(SkinImages::layoutSize(m_middleSource).width());
}

void Panel::addGroup(const QString &title)
{
    auto *button = new ImageButton(OPEN_SKIN, this, 0, 0);
    connect(button, &ImageButton::clicked, this, &Panel::toggleGroup);
    button->setText(title);
    button->setFont(QFont("Arial", 10));
    button->setTextColor(Qt::white);
    m_groups << m_buttons.size();
    m_buttons << button;
    if (m_column == 1)
        ++m_row;
    m_layout->addWidget(button, m_row, 0, 1, 2);
    ++m_row;
    m_column = 0;
}

void Panel::addButton(ImageButton *button)
{
    m_buttons << button;
    m_layout->addWidget(button, m_row, m_column);
    if (m_column == 1)
        ++m_row;
    m_column = (m_column + 1) % 2;
}

void Panel::finishAdding()
{
    if (m_column == 1)
        ++m_row;
    auto *filler = new QSpacerItem(0, 10000, QSizePolicy::Maximum, QSizePolicy::Maximum);
    m_layout->addItem(filler, m_row, 0, 1, 2);
}

void Panel::finishAdjusting()
{
    for (ImageButton *button : qAsConst(m_buttons))
        button->setVisible(button->isEnabled());
    // A group that shows buttons again says so, whatever its state was.
    for (int group = 0; group < m_groups.size(); ++group) {
        const QList<ImageButton *> tools = members(group);
        const bool shown = std::any_of(tools.begin(), tools.end(),
                                       [](const ImageButton *tool) { return !tool->isHidden(); });
        if (shown)
            m_buttons[m_groups[group]]->setImage(OPEN_SKIN);
    }
}

void Panel::toggleGroup()
{
    auto *title = qobject_cast<ImageButton *>(sender());
    const int group = m_groups.indexOf(m_buttons.indexOf(title));
    if (title == nullptr || group < 0)
        return;
    bool shown = false;
    for (ImageButton *tool : members(group)) {
        if (!tool->isEnabled())
            continue;
        // Not isVisible(), which is false for every button of a hidden panel.
        shown = tool->isHidden();
        tool->setVisible(shown);
    }
    title->setImage(shown ? OPEN_SKIN : CLOSED_SKIN);
}

void Panel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    const int topHeight = SkinImages::layoutSize(m_top).height();
    painter.drawImage(QPoint(0, 0), m_top);
    painter.drawImage(QPoint(0, topHeight), m_middle);
    painter.drawImage(QPoint(0, topHeight + SkinImages::layoutSize(m_middle).height()), m_bottom);
}

void Panel::resizeEvent(QResizeEvent *)
{
    const int room = height() - SkinImages::layoutSize(m_top).height() -
                     SkinImages::layoutSize(m_bottom).height();
    m_middle = SkinImages::stretched(m_middleSource,
                                     {SkinImages::layoutSize(m_middleSource).width(), room});
}

QList<ImageButton *> Panel::members(int group) const
{
    const int first = m_groups[group] + 1;
    const int end = group + 1 < m_groups.size() ? m_groups[group + 1] : m_buttons.size();
    return m_buttons.mid(first, end - first);
}
