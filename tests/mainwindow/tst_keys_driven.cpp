#include "tests/mainwindow/DrivenWindow.h"

#include "mainwindow/actions/KeyBindings.h"

#include "tests/TestProgram.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>

#include <map>

using namespace DrivenWindow;
using namespace WindowProbe;

namespace
{

constexpr const char *LAST_KEY = "Scroll_Lock";

/// Whether the key that ends a series has come to the program, and let go.
class LastKey : public QObject
{
public:
    bool released = false;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyRelease)
            released = released || static_cast<QKeyEvent *>(event)->key() == Qt::Key_ScrollLock;
        return false;
    }
};

/// A key of the table by its X name; empty for one that an American keyboard does not have.
QString xName(int key)
{
    static const std::map<int, QString> names{
        {Qt::Key_Plus, "KP_Add"},
        {Qt::Key_Minus, "minus"},
        {Qt::Key_Equal, "equal"},
        {Qt::Key_Delete, "Delete"},
        {Qt::Key_Period, "period"},
        {Qt::Key_Space, "space"},
        {Qt::Key_PageUp, "Prior"},
        {Qt::Key_PageDown, "Next"},
        {Qt::Key_Left, "Left"},
        {Qt::Key_Right, "Right"},
        {Qt::Key_Up, "Up"},
        {Qt::Key_Down, "Down"},
        {Qt::Key_Escape, "Escape"},
        {Qt::SHIFT | Qt::Key_Plus, "plus"},
        {Qt::SHIFT | Qt::Key_Minus, ""},
    };
    if (const auto found = names.find(key); found != names.end())
        return found->second;
    const int plain = key & ~int(Qt::KeyboardModifierMask);
    QString name = QKeySequence(plain).toString().toLower();
    if (const auto found = names.find(plain); found != names.end())
        name = found->second;
    else if (plain >= Qt::Key_F1 && plain <= Qt::Key_F35)
        name = name.toUpper();
    if (key & Qt::SHIFT)
        name.prepend("shift+");
    return key & Qt::CTRL ? "ctrl+" + name : name;
}

/// The keys of the table in its order, each once, and what they give in a mode.
struct Series {
    QStringList keys;
    QStringList texts;
};

Series keysOf(int mode)
{
    Series all;
    std::map<QString, QString> texts;
    for (const Commands::Row &row : Commands::rows()) {
        for (const int key : row.keys) {
            const QString name = xName(key);
            if (name.isEmpty() || row.command == Command::Leave)
                continue;
            if (!all.keys.contains(name))
                all.keys << name;
            if (Modes::contains(row.modes, mode))
                texts[name] = row.text;
        }
    }
    for (const QString &key : all.keys) {
        if (texts.count(key) > 0)
            all.texts << texts[key];
    }
    return all;
}

} // namespace

/// The keys of the table as a real keyboard and a real display server deliver them.
class KeysDrivenTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init();
    void cleanup() { m_window.reset(); }
    void everyKeyGivesItsCommand_data();
    void everyKeyGivesItsCommand();
    void aHeldKeyIsNotEndedByAnother();
    void keysAreADialogsWhileItIsOpen_data();
    void keysAreADialogsWhileItIsOpen();

private:
    /// Types them, and returns when the program has seen the last one.
    void type(const QStringList &keys);

    std::unique_ptr<MainWindow> m_window;
    QStringList m_given;
};

void KeysDrivenTest::init()
{
    usualSettings();
    m_window = open();
    QVERIFY(m_window);
    // What a command does has tests of its own; here it would open dialogs in which the next keys
    // end.
    const auto *keys = m_window->findChild<KeyBindings *>();
    QVERIFY(keys && QObject::disconnect(keys, nullptr, m_window.get(), nullptr));
    m_given.clear();
    const auto note = [this](Command command) { m_given << Commands::row(command).text; };
    connect(keys, &KeyBindings::given, this, note);
    connect(keys, &KeyBindings::started, this, note);
    connect(keys, &KeyBindings::stopped, this,
            [this](Command command) { m_given << QString("end ") + Commands::row(command).text; });
}

void KeysDrivenTest::type(const QStringList &keys)
{
    LastKey last;
    qApp->installEventFilter(&last);
    Pointer::run(QStringList{"key"} + keys + QStringList{LAST_KEY});
    QTRY_VERIFY_WITH_TIMEOUT(last.released, TIMEOUT_MS);
}

void KeysDrivenTest::everyKeyGivesItsCommand_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode < Modes::COUNT; ++mode)
        QTest::newRow(qPrintable(modes()[mode])) << mode;
}

void KeysDrivenTest::everyKeyGivesItsCommand()
{
    QFETCH(int, mode);
    QVERIFY(enterMode(*m_window, mode));
    const Series all = keysOf(mode);
    QVERIFY(all.keys.size() > 40);
    type(all.keys);
    m_given.erase(std::remove_if(m_given.begin(), m_given.end(),
                                 [](const QString &text) { return text.startsWith("end "); }),
                  m_given.end());
    QCOMPARE(m_given, all.texts);
    type({"Escape"});
    QCOMPARE(m_given.size(), all.texts.size());
    m_window->lineHold();
    type({"Escape"});
    QCOMPARE(m_given.size(), all.texts.size() + 1);
    QCOMPARE(m_given.last(), QString(Commands::row(Command::Leave).text));
}

void KeysDrivenTest::aHeldKeyIsNotEndedByAnother()
{
    Pointer::keyDown("KP_Add");
    QTRY_COMPARE_WITH_TIMEOUT(m_given, QStringList{"Zoom in"}, TIMEOUT_MS);
    type({"l", "Right", "ctrl+2"});
    QCOMPARE(m_given, QStringList({"Zoom in", "Line", "Film"}));
    Pointer::keyUp("KP_Add");
    QTRY_COMPARE_WITH_TIMEOUT(m_given, QStringList({"Zoom in", "Line", "Film", "end Zoom in"}),
                              TIMEOUT_MS);
}

void KeysDrivenTest::keysAreADialogsWhileItIsOpen_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"message", "files", "menu"})
        QTest::newRow(kind) << kind;
}

void KeysDrivenTest::keysAreADialogsWhileItIsOpen()
{
    QFETCH(QString, kind);
    QVERIFY(enterMode(*m_window, 2));
    // Those that close a dialog are its own as well.
    QStringList keys = keysOf(2).keys;
    keys.removeAll("space");
    QMessageBox message(m_window.get());
    message.setText("message");
    QFileDialog files(m_window.get());
    QMenu menu(m_window.get());
    menu.addAction("menu");
    if (kind == "menu") {
        menu.popup(m_window->mapToGlobal(QPoint(400, 300)));
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::activePopupWidget(), &menu, TIMEOUT_MS);
    } else {
        QDialog &dialog = kind == "message" ? static_cast<QDialog &>(message) : files;
        dialog.setWindowModality(Qt::WindowModal);
        dialog.show();
        QTRY_VERIFY_WITH_TIMEOUT(dialog.isActiveWindow(), TIMEOUT_MS);
    }
    type(keys);
    QCOMPARE(m_given, QStringList());
    QVERIFY(kind == "menu" ? menu.isVisible() : message.isVisible() || files.isVisible());
    menu.close();
    message.close();
    files.close();
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isActiveWindow(), TIMEOUT_MS);
    type({"l"});
    QCOMPARE(m_given, QStringList{"Line"});
}

REGISTER_TEST(KeysDrivenTest)
#include "tst_keys_driven.moc"
