#include "mainwindow/pages/Pages.h"

#include <QCoreApplication>
#include <QLabel>
#include <QtGlobal>

const std::vector<Pages::Page> &Pages::all()
{
    static const std::vector<Page> pages{
        {Id::Camera, QT_TRANSLATE_NOOP("MoreToolWindow", "Camera"), makeCameraPage},
        {Id::Recording, QT_TRANSLATE_NOOP("MoreToolWindow", "Recording"), makeRecordingPage},
        {Id::Presentation, QT_TRANSLATE_NOOP("MoreToolWindow", "Presentation"),
         makePresentationPage},
        {Id::Keys, QT_TRANSLATE_NOOP("MoreToolWindow", "Keys"), makeKeysPage},
        // Last: the page that was chosen last is kept by its number.
        {Id::Pen, QT_TRANSLATE_NOOP("MoreToolWindow", "Pen and fingers"), makePenPage},
    };
    return pages;
}

QString Pages::text(const char *source)
{
    return QCoreApplication::translate("MoreToolWindow", source);
}

QWidget *Pages::makeTable(const std::vector<Line> &lines, QWidget *parent)
{
    QString rows;
    for (const Line &line : lines) {
        rows += QStringLiteral("<tr><td style='padding: 3px 16px 3px 0; color: #AEB6C0'>%1</td>"
                               "<td style='padding: 3px 0'>%2</td></tr>")
                    .arg(line.what.toHtmlEscaped(), line.how.toHtmlEscaped());
    }
    auto *table = new QLabel("<table>" + rows + "</table>", parent);
    table->setTextFormat(Qt::RichText);
    table->setWordWrap(true);
    table->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return table;
}
