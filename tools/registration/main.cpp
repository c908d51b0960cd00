// Shows the registration pages in a window of their own, with a button for each of their slots.
#include "widgets/RegistrationWidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

struct Action {
    const char *caption;
    void (RegistrationWidget::*slot)();
};

const Action ACTIONS[] = {
    {"New", &RegistrationWidget::create},     {"Open...", &RegistrationWidget::open},
    {"Save...", &RegistrationWidget::save},   {"Add", &RegistrationWidget::add},
    {"<", &RegistrationWidget::previousPage}, {">", &RegistrationWidget::nextPage},
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle("Registration");
    auto *pages = new RegistrationWidget(&window);
    auto *page = new QLabel("1 / 1", &window);
    auto *buttons = new QHBoxLayout;
    for (const Action &action : ACTIONS) {
        auto *button = new QPushButton(action.caption, &window);
        QObject::connect(button, &QPushButton::clicked, pages, action.slot);
        buttons->addWidget(button);
    }
    buttons->addWidget(page);
    auto *column = new QVBoxLayout(&window);
    column->addWidget(pages);
    column->addLayout(buttons);
    QObject::connect(pages, &RegistrationWidget::pageChanged, page, [page](int index, int total) {
        page->setText(QString("%1 / %2").arg(index).arg(total));
    });
    window.resize(700, 600);
    window.show();
    return QApplication::exec();
}
