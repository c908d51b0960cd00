#include "mainwindow/bars/CommandCard.h"

#include "mainwindow/CommandButtons.h"
#include "mainwindow/WindowLayout.h"
#include "mainwindow/bars/CardLayout.h"
#include "resources/SkinImages.h"
#include "widgets/ImageButton.h"

#include <QCoreApplication>
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
        m_buttons.push_back(button);
    }
    setFixedHeight(SkinImages::layoutSize(m_ground).height());
    m_opening.setSingleShot(true);
    connect(&m_opening, &QTimer::timeout, this, &CommandCard::showMark);
}

void CommandCard::place(const WindowLayout &at)
{
    std::vector<bool> checked;
    for (const ImageButton *button : m_buttons)
        checked.push_back(button->isChecked());
    const std::vector<bool> fits = CardLayout::chosen(checked, at.cardRoom);
    m_hidden.clear();
    int x = CARD_FIRST;
    int count = 0;
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        m_buttons[i]->setVisible(fits[i]);
        if (!fits[i]) {
            m_hidden.push_back(m_buttons[i]);
            continue;
        }
        m_buttons[i]->move(x, CARD_TOP);
        x += CardLayout::PITCH;
        ++count;
    }
    setFixedWidth(CardLayout::widthOf(count));
    move(at.card);
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
    m_buttons.back()->setMarked(cameraWrong() || m_failureUnread);
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
