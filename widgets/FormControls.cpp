#include "widgets/FormControls.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QPalette>
#include <QToolTip>

namespace
{

QPalette lightPalette()
{
    const QColor face(0xE8EAED);
    const QColor ink(0x15181B);
    QPalette palette(face, face);
    palette.setColor(QPalette::Base, face);
    palette.setColor(QPalette::AlternateBase, face);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, ink);
    palette.setColor(QPalette::Highlight, QColor(0x0074E6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

void FormControls::applyLook(QWidget *field, int height)
{
    field->setPalette(lightPalette());
    if (auto *box = qobject_cast<QComboBox *>(field))
        box->view()->setPalette(lightPalette());
    field->setFont(font());
    field->setFixedHeight(height);
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
