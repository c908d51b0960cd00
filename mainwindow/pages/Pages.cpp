#include "mainwindow/pages/Pages.h"

#include "widgets/FormControls.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <QtGlobal>

namespace
{

class WheelFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        // Not accepted, it goes on to what the field lies in.
        if (event->type() == QEvent::Wheel)
            event->ignore();
        return event->type() == QEvent::Wheel;
    }
};

} // namespace

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

QWidget *Pages::makeColumn(std::initializer_list<QWidget *> rows, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    for (QWidget *row : rows)
        layout->addWidget(row);
    layout->addStretch();
    return page;
}

QCheckBox *Pages::makeCheckBox(const char *source, bool checked, QWidget *parent)
{
    auto *box = new QCheckBox(text(source), parent);
    FormControls::applyLook(box);
    box->setChecked(checked);
    return box;
}

void Pages::leaveWheelToPage(QWidget *field)
{
    field->installEventFilter(new WheelFilter(field));
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
