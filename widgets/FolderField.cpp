#include "widgets/FolderField.h"

#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <QStylePainter>

FolderField::FolderField(const QString &path, QWidget *parent)
    : QLineEdit(path, parent)
{
    setReadOnly(true);
    setCursor(Qt::ArrowCursor);
}

void FolderField::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionFrame option;
    initStyleOption(&option);
    painter.drawPrimitive(QStyle::PE_PanelLineEdit, option);
    const QRect room = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideLeft, room.width()));
}

void FolderField::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        emit browseWanted();
}
