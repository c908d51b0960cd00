#pragma once

#include "mainwindow/presentation/Presentation.h"
#include "mainwindow/presentation/PresentationView.h"
#include "settings/StoredSettings.h"
#include "tests/mainwindow/WindowProbe.h"

#include <QApplication>
#include <QCoreApplication>
#include <QtTest>

#include <memory>

/// A main window of its own for each test of the window for the class.
class PresentationProbe : public QObject
{
    Q_OBJECT

protected:
    static void nameTheProgram()
    {
        WindowProbe::beOnOneself();
        StoredSettings::nameFiles();
    }

    void showWindow()
    {
        WindowProbe::usualSettings();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    /// Null while it is closed.
    static PresentationView *view()
    {
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<PresentationView *>(each))
                return found;
        }
        return nullptr;
    }

    static constexpr QSize PICTURE{320, 240};

    static QImage pattern(int seed)
    {
        QImage image(PICTURE, QImage::Format_RGB888);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y,
                               qRgb((x * 7 + seed) % 256, (y * 5 + 3 * seed) % 256, x * y % 256));
        }
        return image;
    }

    /// What the window's pixels become.
    static QImage shown(QWidget &view)
    {
        QImage pixels(view.size(), QImage::Format_RGB32);
        pixels.fill(Qt::magenta);
        view.render(&pixels);
        return pixels.convertToFormat(QImage::Format_RGB888);
    }

    void open()
    {
        m_window->button(Command::Present)->click();
        QVERIFY(view() && view()->isVisible());
    }

    Presentation &presentation() { return *m_window->presentation(); }

    std::unique_ptr<MainWindow> m_window;
};
