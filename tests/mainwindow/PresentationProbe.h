#pragma once

#include "mainwindow/presentation/PresentationView.h"
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
        QCoreApplication::setOrganizationName("Quillmark");
        QCoreApplication::setApplicationName("Document Camera");
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

    std::unique_ptr<MainWindow> m_window;
};
