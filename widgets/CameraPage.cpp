#include "widgets/CameraPage.h"

#include "widgets/CameraAdvice.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"
#include "widgets/StatusSign.h"
#include "widgets/ToolTips.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace
{

/// Both commands are read without scrolling.
constexpr int COMMANDS_HEIGHT = 140;

QLabel *wrappedLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText); // what a camera says of itself is no markup
    return label;
}

StatusSign::Look lookOf(const CameraStatus &status)
{
    if (status.wrong())
        return StatusSign::Look::Wrong;
    return status.state == CameraStatus::State::Showing ? StatusSign::Look::Fine
                                                        : StatusSign::Look::Waiting;
}

} // namespace

CameraPage::CameraPage(QWidget *parent)
    : QWidget(parent)
    , m_sign(new StatusSign(this))
    , m_sentence(wrappedLabel(this))
    , m_remedy(wrappedLabel(this))
    , m_commands(new QPlainTextEdit(this))
    , m_copy(new ImageButton("POPUP_BUTTON", this, 0, 0))
{
    setStyleSheet("QLabel { font-family: Arial; font-size: 14px; color: white; }");
    m_remedy->setStyleSheet("color: #D6DAE0;");
    m_commands->setReadOnly(true);
    m_commands->setFixedHeight(COMMANDS_HEIGHT);
    m_commands->setAccessibleName(tr("Commands"));
    ToolTips::addName(m_commands);
    FormControls::applyLook(m_commands, COMMANDS_HEIGHT);
    m_copy->setFont(FormControls::font());
    m_copy->setText(tr("Copy"));
    m_copy->setAccessibleName(tr("Copy"));
    connect(m_copy, SIGNAL(clicked()), this, SLOT(copyCommands()));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    auto *state = new QHBoxLayout;
    state->setSpacing(10);
    state->addWidget(m_sign, 0, Qt::AlignTop);
    state->addWidget(m_sentence, 1);
    layout->addLayout(state);
    layout->addWidget(m_remedy);
    layout->addWidget(m_commands);
    layout->addWidget(m_copy);
    layout->addStretch();
    setStatus({});
}

void CameraPage::setStatus(const CameraStatus &status)
{
    const CameraAdvice advice = CameraAdvice::of(status);
    m_sign->setLook(lookOf(status));
    m_sentence->setText(advice.sentence);
    m_remedy->setText(advice.remedy);
    m_remedy->setVisible(!advice.remedy.isEmpty());
    const QString commands = advice.commands.join('\n');
    if (m_commands->toPlainText() != commands) // what is selected in it stays otherwise
        m_commands->setPlainText(commands);
    m_commands->setVisible(!advice.commands.isEmpty());
    m_copy->setVisible(!advice.commands.isEmpty());
}

QString CameraPage::sentence() const
{
    return m_sentence->text();
}

void CameraPage::copyCommands()
{
    QApplication::clipboard()->setText(m_commands->toPlainText() + '\n');
}
