#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "tests/TestProgram.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

using namespace WindowProbe;

namespace
{

QRect placeIn(const QWidget &window, const QWidget &widget)
{
    return {widget.mapTo(&window, QPoint(0, 0)), widget.size()};
}

/// What the compositor shows.
QImage screen()
{
    const QTemporaryDir folder;
    QProcess shooter;
    shooter.setWorkingDirectory(folder.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    shooter.setProcessEnvironment(environment);
    shooter.start("weston-screenshooter", QStringList());
    if (!shooter.waitForFinished(TIMEOUT_MS))
        return {};
    return QImage(folder.filePath(QDir(folder.path()).entryList({"*.png"}).value(0)));
}

} // namespace

/// The window on a Wayland desktop, where no program places its windows.
class WindowWaylandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), QString("wayland"));
        usualSettings();
        m_camera = std::make_unique<VirtualCamera>();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanupTestCase()
    {
        m_window.reset();
        m_camera.reset();
    }

    void popUpsOpenBesideTheirButtons_data()
    {
        QTest::addColumn<int>("command");
        QList<Command> popping = poppingButtons();
        popping += {Command::Settings, Command::About, Command::More};
        for (const Command command : popping)
            QTest::addRow("%s", Commands::row(command).skin) << int(command);
    }

    void popUpsOpenBesideTheirButtons()
    {
        QFETCH(int, command);
        ImageButton *button = m_window->button(Command(command));
        open(Command(command));
        const ToolWindow *popup = m_window->currentToolWindow();
        QVERIFY(popup && popup->isVisible());
        // A window of its own would stand wherever the compositor puts it.
        QCOMPARE(popup->window(), m_window.get());
        const QRect place = placeIn(*m_window, *popup);
        QVERIFY(m_window->rect().contains(place));
        for (const ImageButton *other : m_window->findChildren<ImageButton *>()) {
            if (other->isVisible() && !popup->isAncestorOf(other))
                QVERIFY2(!placeIn(*m_window, *other).intersects(place),
                         qPrintable(other->accessibleName()));
        }
        // Beside its column, or the next one.
        const QRect near = placeIn(*m_window, *button).adjusted(-80, -20, 80, 20);
        QVERIFY(near.intersects(place));
        // Nothing else lies over it.
        QVERIFY(popup->isAncestorOf(m_window->childAt(place.topLeft() + QPoint(20, 10))));
    }

    void keysStayInThePopUpUntilItCloses()
    {
        // This compositor has no keyboard, so that it gives the focus to no window.
        QApplication::setActiveWindow(m_window.get());
        open(Command::Line);
        ToolWindow *popup = m_window->currentToolWindow();
        popup->takeFocus();
        QTRY_VERIFY(popup->isAncestorOf(QApplication::focusWidget()));
        for (int key = 0; key < 30; ++key) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(popup->isAncestorOf(QApplication::focusWidget()));
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_COMPARE(QApplication::focusWidget(),
                     static_cast<QWidget *>(m_window->button(Command::Line)));
    }

    void thePanelLeavesThePictureAlive()
    {
        enter(*m_window, 0);
        QVERIFY(m_camera->plug());
        QVERIFY(framesPass());
        for (int turn = 0; turn < 2; ++turn) {
            const int before = m_window->width();
            m_window->expand();
            QTRY_VERIFY(m_window->width() != before);
            // The number on the emulated sheet changes with each frame.
            const QImage first = screen();
            QVERIFY(!first.isNull());
            const auto moves = [this, &first] { return framesPass() && screen() != first; };
            QVERIFY(QTest::qWaitFor(moves, TIMEOUT_MS));
        }
    }

private:
    bool framesPass() const
    {
        const auto sent = [this] { return m_camera->statistics().framesSent; };
        const auto before = sent();
        return QTest::qWaitFor([&] { return sent() > before + 3; }, TIMEOUT_MS);
    }

    void open(Command command)
    {
        enter(*m_window, command == Command::FillBackground ? Modes::DrawingBoard : Modes::Live);
        if (Commands::row(command).holdSlot)
            emit m_window->button(command)->hold();
        else
            m_window->button(command)->click();
    }

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(WindowWaylandTest)
#include "tst_window_wayland.moc"
