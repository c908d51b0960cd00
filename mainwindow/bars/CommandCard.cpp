#include "mainwindow/bars/CommandCard.h"

#include "mainwindow/CommandButtons.h"
#include "mainwindow/bars/CardLayout.h"
#include "resources/SkinImages.h"
#include "widgets/ImageButton.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>

namespace
{

constexpr int CARD_FIRST = 3;
constexpr int CARD_TOP = 5;
/// Edge of the background's corners, which are not stretched.
constexpr int CORNER = 8;

} // namespace

CommandCard::CommandCard(CommandButtons *buttons, QWidget *window)
    : QWidget(window)
    , m_ground(SkinImages::load(":/icons/Background/CARD_BK.png"))
{
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Card)) {
        auto *button = new ImageButton(row.skin, this, CARD_FIRST, CARD_TOP);
        const QString name = QCoreApplication::translate("MainWindow", row.text);
        button->setAccessibleName(name);
        button->setToolTip(name);
        button->setCheckable((row.look & Commands::Checkable) != 0);
        buttons->add(row.command, button);
        const bool atTimes = (row.look & Commands::AtTimes) != 0;
        if (atTimes) {
            button->setEnabled(false);
            button->hide();
            button->installEventFilter(this);
        }
        m_places.push_back({button, atTimes});
    }
    setFixedHeight(SkinImages::layoutSize(m_ground).height());
    m_opening.setSingleShot(true);
    connect(&m_opening, &QTimer::timeout, this, &CommandCard::showMark);
}

void CommandCard::place(const WindowLayout &at)
{
    m_layout = at;
    arrange();
}

void CommandCard::arrange()
{
    std::vector<ImageButton *> enabled;
    std::vector<bool> needed;
    for (const Place &place : m_places) {
        if (!place.button->isEnabledTo(this)) {
            place.button->hide();
            continue;
        }
        enabled.push_back(place.button);
        needed.push_back(place.atTimes || place.button->isChecked());
    }
    const std::vector<bool> fits = CardLayout::chosen(needed, m_layout.cardRoom);
    m_hidden.clear();
    int x = CARD_FIRST;
    int count = 0;
    for (std::size_t i = 0; i < enabled.size(); ++i) {
        enabled[i]->setVisible(fits[i]);
        if (!fits[i]) {
            m_hidden.push_back(enabled[i]);
            continue;
        }
        enabled[i]->move(x, CARD_TOP);
        x += CardLayout::PITCH;
        ++count;
    }
    setFixedWidth(CardLayout::widthOf(count));
    move(m_layout.card);
}

bool CommandCard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        arrange();
    return QWidget::eventFilter(watched, event);
}

void CommandCard::setCameraStatus(const CameraStatus &status)
{
    m_camera = status;
    showMark();
}

void CommandCard::allowForOpening(std::chrono::milliseconds time)
{
    m_opening.start(time);
    showMark();
}

bool CommandCard::cameraWrong() const
{
    const bool mayStillCome =
        m_camera.state == CameraStatus::State::Waiting && m_opening.isActive();
    return m_camera.wrong() && !mayStillCome;
}

void CommandCard::setFailureUnread(bool unread)
{
    m_failureUnread = unread;
    showMark();
}

void CommandCard::showMark()
{
    m_places.back().button->setMarked(cameraWrong() || m_failureUnread);
    emit marksChanged();
}

void CommandCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    const qreal ratio = m_ground.devicePixelRatioF();
    const QSize ground = SkinImages::layoutSize(m_ground);
    const auto piece = [&](const QRectF &target, qreal left, qreal width) {
        painter.drawImage(target, m_ground,
                          QRectF(left * ratio, 0, width * ratio, ground.height() * ratio));
    };
    piece(QRectF(0, 0, CORNER, height()), 0, CORNER);
    piece(QRectF(CORNER, 0, width() - 2 * CORNER, height()), CORNER, ground.width() - 2 * CORNER);
    piece(QRectF(width() - CORNER, 0, CORNER, height()), ground.width() - CORNER, CORNER);
}
