#include "mainwindow/pages/MoreToolWindow.h"

#include "mainwindow/pages/FingerScroll.h"
#include "resources/SkinImages.h"
#include "settings/Preferences.h"
#include "sources/WindowServices.h"
#include "widgets/ImageButton.h"

#include <QButtonGroup>
#include <QScrollArea>

#include <algorithm>

namespace
{

const QString PAGE_KEY = QStringLiteral("morePage");
constexpr int MARGIN = 8;
constexpr int FIRST_Y = 24;
constexpr int TAB_PITCH = 164;
constexpr int TAB_ROW = 24;
constexpr int TABS_A_ROW = 2;
constexpr int HIDDEN_PITCH = 36;
constexpr int HIDDEN_ROW = 34;
/// The margins around the content of a page.
constexpr QMargins PAGE_MARGINS(6, 10, 6, 6);
constexpr int TAB_POINTS = 10;

} // namespace

MoreToolWindow::MoreToolWindow(ImageButton *toolButton, MainWindow *mainWindow,
                               const Pages::Context &context,
                               const std::vector<ImageButton *> &hidden)
    : ToolWindow(SkinImages::load(":/icons/Background/POP_BK_MORE.png"), toolButton,
                 WindowServices::of(mainWindow).widget(), tr("More"))
    , m_context(context)
    , m_tabs(new QButtonGroup(this))
    , m_area(new QScrollArea(this))
{
    setStyleSheet("QLabel { font-family: Arial; font-size: 14px; color: white; }"
                  "QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; }"
                  "QScrollBar:vertical { background: #2B3036; width: 10px; }"
                  "QScrollBar::handle:vertical { background: #7C8794; min-height: 24px; }"
                  "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }");
    int y = addHidden(hidden, FIRST_Y);
    y = addTabs(y);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setGeometry(MARGIN, y, width() - 2 * MARGIN, height() - y - MARGIN);
    new FingerScroll(m_area);
    connect(m_tabs, &QButtonGroup::idClicked, this, &MoreToolWindow::choosePage);
    const int last = static_cast<int>(Pages::all().size()) - 1;
    showPage(Pages::all()[static_cast<std::size_t>(Preferences::number(PAGE_KEY, 0, 0, last))].id);
}

void MoreToolWindow::showPage(Pages::Id id)
{
    const int index = indexOf(id);
    const Pages::Page &row = Pages::all()[std::size_t(index)];
    m_tabs->button(index)->setChecked(true);
    QWidget *made = row.make(m_context, m_area);
    made->setAccessibleName(tr(row.title));
    made->setContentsMargins(PAGE_MARGINS);
    m_area->setWidget(made);
    emit pageShown(id);
}

Pages::Id MoreToolWindow::page() const
{
    return Pages::all()[static_cast<std::size_t>(m_tabs->checkedId())].id;
}

void MoreToolWindow::setMarked(Pages::Id id, bool marked)
{
    static_cast<ImageButton *>(m_tabs->button(indexOf(id)))->setMarked(marked);
}

void MoreToolWindow::choosePage(int index)
{
    Preferences::setNumber(PAGE_KEY, index);
    showPage(Pages::all()[static_cast<std::size_t>(index)].id);
}

int MoreToolWindow::indexOf(Pages::Id id)
{
    const std::vector<Pages::Page> &pages = Pages::all();
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [id](const Pages::Page &page) { return page.id == id; });
    return int(found - pages.begin());
}

int MoreToolWindow::addHidden(const std::vector<ImageButton *> &hidden, int y)
{
    int x = MARGIN;
    for (ImageButton *original : hidden) {
        auto *button = new ImageButton(original->skin(), this, x, y);
        button->setAccessibleName(original->accessibleName());
        button->setToolTip(original->toolTip());
        button->setKey(original->key());
        button->setCheckable(original->isCheckable());
        button->setChecked(original->isChecked());
        button->setGray(original->isGray());
        connect(button, &ImageButton::clicked, original, &ImageButton::click);
        x += HIDDEN_PITCH;
    }
    return hidden.empty() ? y : y + HIDDEN_ROW;
}

int MoreToolWindow::addTabs(int y)
{
    int index = 0;
    for (const Pages::Page &row : Pages::all()) {
        auto *tab =
            new ImageButton("MAIN_BUTTON_LONG", this, MARGIN + index % TABS_A_ROW * TAB_PITCH,
                            y + index / TABS_A_ROW * TAB_ROW);
        tab->setFont(QFont("Arial", TAB_POINTS));
        tab->setTextColor(Qt::white);
        tab->setText(tr(row.title));
        tab->setAccessibleName(tr(row.title));
        tab->setCheckable(true);
        m_tabs->addButton(tab, index++);
    }
    return y + (index + TABS_A_ROW - 1) / TABS_A_ROW * TAB_ROW + 2;
}
