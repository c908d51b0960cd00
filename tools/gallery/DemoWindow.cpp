#include "tools/gallery/DemoWindow.h"

#include "resources/SkinImages.h"
#include "tools/gallery/SkinGround.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ImageWidget.h"
#include "widgets/Panel.h"
#include "widgets/Slider.h"

#include <QLabel>
#include <QPainter>

namespace
{

constexpr int PANEL_WIDTH = 138;

struct Tool {
    const char *skin;
    const char *name;
};

struct Group {
    const char *title;
    QList<Tool> tools;
};

const QList<Group> &groups()
{
    static const QList<Group> all{
        {"Noting",
         {{"ICON_LINE", "Line"},
          {"ICON_RETANGLE", "Rectangle"},
          {"ICON_FREEHAND", "Freehand"},
          {"ICON_CIRCLE", "Circle"},
          {"ICON_ARROW", "Arrow"},
          {"ICON_TRIANGLE", "Triangle"},
          {"ICON_ERASE", "Eraser"},
          {"ICON_TEXT", "Text"},
          {"ICON_ERASE_ALL", "Erase all"},
          {"ICON_COPY", "Clip image"},
          {"ICON_HAND", "Hand"},
          {"ICON_FILL", "Fill background"}}},
        {"Assisting", {{"ICON_MASK_CIRCLE", "Mask"}, {"ICON_EFFECT_COLOR", "Effect"}}},
        {"Adjustment",
         {{"ICON_ZOOM_OUT", "Zoom out"},
          {"ICON_ZOOM_IN", "Zoom in"},
          {"ICON_ZOOM_RESET", "Reset zoom"},
          {"ICON_AUTOFOCUS", "Auto focus"},
          {"ICON_BRIGHTNESS_REDUCE", "Brightness down"},
          {"ICON_BRIGHTNESS_INCREASE", "Brightness up"},
          {"ICON_ROTATE", "Rotate"},
          {"ICON_FREEZE", "Freeze"}}},
        {"Recording",
         {{"ICON_RECORDING", "Record video"},
          {"ICON_CAPTURE", "Take snapshot"},
          {"ICON_SETTING", "Settings"},
          {"ICON_PRINT", "Print"}}}};
    return all;
}

// Shows a picture as the canvas does: fitted and centred on black.
class Stage : public QWidget
{
public:
    Stage(const QImage &picture, QWidget *parent)
        : QWidget(parent)
        , m_picture(picture)
    {
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        QRect place(QPoint(0, 0), m_picture.size().scaled(size(), Qt::KeepAspectRatio));
        place.moveCenter(rect().center());
        painter.drawImage(place, m_picture);
    }

private:
    QImage m_picture;
};

// Whether the mode has a use for the tool.
bool offered(const QString &skin, DemoWindow::Mode mode)
{
    static const QStringList cameraOnly{"ICON_AUTOFOCUS",           "ICON_BRIGHTNESS_REDUCE",
                                        "ICON_BRIGHTNESS_INCREASE", "ICON_FREEZE",
                                        "ICON_RECORDING",           "ICON_SETTING"};
    const bool live = mode == DemoWindow::Mode::Live;
    if (skin == "ICON_HAND")
        return !live;
    return skin != "ICON_FILL" && (live || !cameraOnly.contains(skin));
}

} // namespace

DemoWindow::DemoWindow(Mode mode, const QImage &picture)
    : m_picture(new Stage(picture.isNull() ? background("MAIN_WINDOWS") : picture, this))
{
    addModeButtons(mode);
    m_about = new ImageButton("AboutButton", this, 34, 0);
    new ImageButton("BUTTON_SIDE_CLOSE", this, 4, 50);
    addPanel(mode);
    addBar(mode);
    setMinimumSize(800, 768);
    setExpanded(true);
    setBuilt();
    resize(800 + PANEL_WIDTH, 768);
}

void DemoWindow::addModeButtons(Mode mode)
{
    const QList<QPair<QString, QString>> modes{{"MAIN_BUTTON", "Live"},
                                               {"MAIN_BUTTON", "Film"},
                                               {"MAIN_BUTTON", "Photograph"},
                                               {"MAIN_BUTTON_LONG", "Drawing Board"}};
    for (int i = 0; i < modes.size(); ++i) {
        auto *button = new ImageButton(modes[i].first, this, PANEL_WIDTH + 40 + 107 * i, 5);
        button->setFont(QFont("Arial", 11));
        button->setTextColor(Qt::white);
        button->setText(modes[i].second);
        button->setCheckable(true);
        button->setChecked(i == static_cast<int>(mode));
    }
}

void DemoWindow::addPanel(Mode mode)
{
    m_panel = new Panel(this);
    for (const Group &group : groups()) {
        m_panel->addGroup(group.title);
        for (const Tool &tool : group.tools) {
            auto *button = new ImageButton(tool.skin, tool.name, this, 0, 0);
            m_panel->addButton(button);
            const QString skin = tool.skin;
            button->setCheckable(true);
            button->setChecked(skin == "ICON_FREEHAND");
            button->setEnabled(offered(skin, mode));
        }
    }
    m_panel->finishAdding();
    m_panel->finishAdjusting();
    m_panel->move(40, 30);
}

void DemoWindow::addBar(Mode mode)
{
    if (mode == Mode::Live) {
        m_bar = new QWidget(this);
        m_bar->setFixedSize(60, 37);
        (new ImageButton("ICON_LIVE_RECORDING", m_bar, 20, 5))->setCheckable(true);
        return;
    }
    const bool film = mode == Mode::Film;
    const QStringList buttons =
        film ? QStringList{"OPEN", "PLAY", "PAUSE", "STOP", "BACKWARD", "FORWARD", "VOLUME"}
             : QStringList{"OPEN", "BACKWARD", "SLIDE", "FORWARD", "THUMBNIL", "TIME"};
    m_bar = new ImageWidget(background(film ? "FILM_CONTROL_BK" : "PHOTO_CONTROL_BK"), this);
    for (int i = 0; i < buttons.size(); ++i) {
        const QString name = (film ? "ICON_FILM_" : "ICON_PHOTO_") + buttons[i];
        auto *button = new ImageButton(name, m_bar, 20 + 40 * i, 5);
        button->setCheckable(true);
        button->setChecked(buttons[i] == "VOLUME" || buttons[i] == "TIME");
    }
    auto *strip =
        new HorizontalSlider(background(film ? "FILM_SCROLL_BAR" : "PHOTO_SCROLL_BAR"), this);
    strip->setHandleWidth(film ? 22 : 96);
    strip->setValue(film ? 40 : 0);
    m_strip = strip;
    if (film) {
        auto *volume = new Slider(Qt::Vertical, this);
        volume->setFixedSize(SkinImages::layoutSize(background("POP_VOL_BK")));
        volume->setRange(1, 100);
        volume->setValue(80);
        m_volume = volume;
        return;
    }
    auto *interval = new Slider(Qt::Horizontal, this);
    interval->setTickPosition(QSlider::TicksBelow);
    interval->setFixedWidth(160);
    interval->adjustSize();
    interval->setRange(0, 5);
    interval->setValue(1);
    m_interval = interval;
    auto *text = new QLabel("1     2     5    10    15    30  sec.", this);
    text->setFont(QFont("Arial", 11));
    text->setFixedSize(200, 10);
    QPalette gray = text->palette();
    gray.setColor(QPalette::WindowText, Qt::gray);
    text->setPalette(gray);
    m_intervalText = text;
    auto *index = new QLabel("3/12", this);
    index->setFont(QFont("Arial", 15));
    index->setFixedSize(70, 30);
    QPalette white = index->palette();
    white.setColor(QPalette::WindowText, Qt::white);
    index->setPalette(white);
    m_index = index;
}

void DemoWindow::reposition()
{
    const int left = PANEL_WIDTH;
    m_panel->resize(m_panel->width(), height() - 100);
    m_about->move(34, height() - 55);
    m_picture->setGeometry(left + 36, 25, width() - left - 55, height() - 100);
    m_bar->move((width() - left - m_bar->width()) / 2 + left, height() - 60);
    if (m_strip != nullptr) {
        m_strip->setFixedSize(m_picture->width() + 2, 10);
        m_strip->move(m_picture->x(), m_picture->y() + m_picture->height());
    }
    if (m_volume != nullptr)
        m_volume->move(m_bar->geometry().right() + 1,
                       m_bar->y() + m_bar->height() - m_volume->height());
    if (m_interval != nullptr) {
        m_interval->move(m_bar->geometry().right() + 1 + 10, height() - 50);
        m_intervalText->move(m_bar->geometry().right() + 1 + 12, height() - 30);
        m_index->move(width() - 70, height() - 60);
    }
}
