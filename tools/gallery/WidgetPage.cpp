#include "tools/gallery/WidgetPage.h"

#include "resources/SkinImages.h"
#include "tools/gallery/SkinGround.h"
#include "widgets/FramelessWindow.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ImageWidget.h"
#include "widgets/Panel.h"
#include "widgets/RadioButton.h"
#include "widgets/Slider.h"
#include "widgets/StyleWindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>

namespace
{

constexpr QSize PAGE_SIZE(760, 560);

/// The nine pieces with nothing inside.
class EmptyWindow : public StyleWindow
{
public:
    EmptyWindow()
    {
        setExpanded(true);
        setBuilt();
        resize(300, 200);
        rescaleEdges();
    }

    void reposition() override {}
};

} // namespace

WidgetPage::WidgetPage()
{
    QPalette card;
    card.setColor(QPalette::Window, QColor(0x3a, 0x40, 0x48));
    card.setColor(QPalette::WindowText, QColor(0xd6, 0xda, 0xe0));
    setPalette(card);
    setFixedSize(PAGE_SIZE);
    addButtons();
    addSliders();
    addWindows();
}

void WidgetPage::addButtons()
{
    int x = 20;
    const auto next = [&](const QString &state) {
        auto *button = new ImageButton("ICON_LINE", this, 0, 0);
        button->move(place("ImageButton, " + state, x, 16));
        x += 146;
        return button;
    };
    next("normal")->setToolTip("Held down, it says so after half a second.");
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(next("over"), &enter);
    next("pressed")->setDown(true);
    ImageButton *on = next("checked");
    on->setCheckable(true);
    on->setChecked(true);
    next("gray")->setGray(true);

    auto *held = new ImageButton("POPUP_BUTTON", this, 0, 0);
    held->move(place("ImageButton, caption", 20, 96));
    held->setFont(QFont("Arial", 10));
    held->setText("Hold me");
    connect(held, &ImageButton::hold, held, [held] { held->setText("Held"); });
}

void WidgetPage::addSliders()
{
    auto *strip = new HorizontalSlider(background("PHOTO_SCROLL_BAR"), this);
    strip->setFixedSize(280, 10);
    strip->setValue(40);
    strip->move(place("HorizontalSlider", 166, 96));
    auto *across = new Slider(Qt::Horizontal, this);
    across->setFixedSize(160, 20);
    across->setValue(30);
    across->move(place("Slider, horizontal", 166, 140));
    auto *upright = new Slider(Qt::Vertical, this);
    upright->setFixedSize(SkinImages::layoutSize(background("POP_VOL_BK")));
    upright->setValue(70);
    upright->move(place("Slider, vertical", 480, 96));
    const QPoint radio = place("RadioButton", 20, 160);
    setFont(QFont("Arial", 10));
    auto *off = new RadioButton("Single", this, radio.x(), radio.y());
    auto *on = new RadioButton("Continuous", this, radio.x(), radio.y() + 24);
    on->setChecked(true);
    off->adjustSize();
    on->adjustSize();
    auto *picture = new ImageWidget(background("PHOTO_CONTROL_BK"), this);
    picture->move(place("ImageWidget", 166, 190));
}

void WidgetPage::addWindows()
{
    auto *panel = new Panel(this);
    panel->addGroup("Open");
    for (const char *skin : {"ICON_ARROW", "ICON_CIRCLE", "ICON_TEXT"})
        panel->addButton(new ImageButton(skin, "", this, 0, 0));
    panel->addGroup("Empty");
    panel->finishAdding();
    panel->resize(panel->width(), 220);
    panel->move(place("Panel", 600, 96));
    auto *popup = new FramelessWindow(background("POP_BK_ABOUT_small"), false, this);
    popup->setAutoFillBackground(true);
    popup->move(place("FramelessWindow", 20, 280));
    auto *window = new EmptyWindow;
    window->setParent(this);
    window->move(place("StyleWindow", 290, 280));
}

QPoint WidgetPage::place(const QString &name, int x, int y)
{
    auto *label = new QLabel(name, this);
    label->setFont(QFont("Arial", 8));
    label->adjustSize();
    label->move(x, y);
    return {x, y + 22};
}
