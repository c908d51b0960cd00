#include "widgets/FormControls.h"

#include "resources/FittedFont.h"
#include "resources/SkinStyle.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QPalette>
#include <QToolTip>

#include <algorithm>

namespace
{

// Drawn flat; the styles of desktops have slopes and shadows of their own.
const char FIELD_SHEET[] =
    "QComboBox, QLineEdit { background: #22262B; color: #D6DAE0; border: 1px solid #4A525C;"
    " border-radius: 2px; padding: 0px 4px; selection-background-color: #0074E6;"
    " selection-color: white; }"
    "QComboBox:hover, QLineEdit:hover { border-color: #7C8794; }"
    "QComboBox:focus, QLineEdit:focus { border-color: #3D9BFF; }"
    "QComboBox QLineEdit { border: none; padding: 0px; }"
    "QComboBox::drop-down { border: none; width: 18px; }"
    "QComboBox::down-arrow { image: url(:/icons/combo_arrow.png); width: 10px; height: 6px; }"
    "QComboBox QAbstractItemView { background: #22262B; color: #D6DAE0;"
    " border: 1px solid #4A525C; selection-background-color: #0074E6; selection-color: white; }"
    "QCheckBox { color: white; spacing: 8px; }"
    "QCheckBox::indicator { width: 14px; height: 14px; background: #22262B;"
    " border: 1px solid #8A929C; border-radius: 2px; }"
    "QCheckBox::indicator:hover, QCheckBox::indicator:focus { border-color: white; }"
    "QCheckBox::indicator:checked { background: #0074E6; border-color: #3D9BFF;"
    " image: url(:/icons/check_mark.png); }"
    "QCheckBox::indicator:checked:focus { border-color: white; }";

} // namespace

void FormControls::applyLook(QWidget *field, int height)
{
    field->setPalette(SkinStyle::darkPalette());
    if (auto *box = qobject_cast<QComboBox *>(field))
        box->view()->setPalette(SkinStyle::darkPalette());
    field->setStyleSheet(FIELD_SHEET);
    field->setFont(font());
    field->setFixedHeight(height);
}

void FormControls::fitFont(QWidget *widget, const QStringList &texts, int width)
{
    const QFontMetrics metrics(widget->font());
    const auto widest = std::max_element(
        texts.begin(), texts.end(), [&metrics](const QString &one, const QString &other) {
            return metrics.horizontalAdvance(one) < metrics.horizontalAdvance(other);
        });
    if (widest != texts.end())
        widget->setFont(FittedFont::within(widget->font(), *widest, width));
}

void FormControls::applyLookToToolTips()
{
    const QColor ground(0x15181B);
    QPalette palette = QToolTip::palette();
    for (const QPalette::ColorRole role :
         {QPalette::ToolTipBase, QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, ground);
    for (const QPalette::ColorRole role : {QPalette::ToolTipText, QPalette::WindowText})
        palette.setColor(role, Qt::white);
    QToolTip::setPalette(palette);
    QToolTip::setFont(font());
}

QFont FormControls::font()
{
    QFont font("Arial");
    font.setPixelSize(13);
    return font;
}

void FormControls::keepLineHeight(QLabel *label)
{
    label->ensurePolished();
    label->setFixedSize(label->sizeHint().width(), label->fontMetrics().height());
}
