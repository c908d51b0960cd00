#include "tools/screenshots/Photographer.h"

#include "mainwindow/MainWindow.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QWindow>

namespace
{

constexpr int SETTLING_MS = 300;

} // namespace

Photographer::Photographer(MainWindow *window, const QDir &folder)
    : m_window(window)
    , m_folder(folder)
{
}

void Photographer::take(const QString &name)
{
    wait(SETTLING_MS);
    QRect area = m_window->geometry();
    if (const ToolWindow *popup = m_window->currentToolWindow())
        area |= popup->geometry();
    save(area, name);
}

void Photographer::takePopup(const QString &name)
{
    const ToolWindow *popup = m_window->currentToolWindow();
    if (!popup)
        qFatal("no pop-up for %s", qPrintable(name));
    waitFor([popup] { return popup->windowHandle() && popup->windowHandle()->isExposed(); });
    wait(SETTLING_MS);
    save(popup->geometry(), name);
}

void Photographer::takeNextBox(const QString &name)
{
    auto *timer = new QTimer(m_window);
    QObject::connect(timer, &QTimer::timeout, m_window, [this, timer, name] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->windowHandle() || !box->windowHandle()->isExposed())
            return;
        timer->stop();
        timer->deleteLater();
        wait(SETTLING_MS);
        save(box->geometry(), name);
        box->reject();
    });
    timer->start(20);
}

void Photographer::save(QRect area, const QString &name)
{
    QScreen *screen = QGuiApplication::primaryScreen();
    area &= screen->geometry();
    const QPixmap picture = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    const QString path = m_folder.filePath(name + ".png");
    if (!picture.save(path))
        qFatal("cannot write %s", qPrintable(path));
}

void Photographer::wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool Photographer::waitFor(const std::function<bool()> &done, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > milliseconds)
            return false;
        wait(20);
    }
    return true;
}
