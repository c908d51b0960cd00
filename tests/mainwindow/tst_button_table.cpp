#include "mainwindow/Commands.h"

#include "tests/TestProgram.h"

#include <QFile>
#include <QKeySequence>
#include <QSet>
#include <QTest>

using Commands::Group;
using Commands::PopUp;
using Commands::Row;

/// What holds for every row of the table of commands, whatever rows there are.
class ButtonTableTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsStandAtTheirCommand();
    void groupsAreWholeAndNamed();
    void eachModeHasOneButton();
    void eachToolHasOneButton();
    void eachKeyHasOneCommand();
    void theManualPageNamesEveryKey();
    void eachHoldHasAPopUp();
    void eachCommandDoesSomething();
    void eachButtonHasASkinAndAText();
    void commandsThatLastAreStopped();
};

void ButtonTableTest::rowsStandAtTheirCommand()
{
    QVERIFY(!Commands::rows().empty());
    for (std::size_t i = 0; i < Commands::rows().size(); ++i)
        QCOMPARE(std::size_t(Commands::rows()[i].command), i);
    QCOMPARE(std::size_t(Command::ThickerPen), Commands::rows().size() - 1);
}

void ButtonTableTest::groupsAreWholeAndNamed()
{
    // A title is set where the group changes, so a group is one stretch of the table.
    for (std::size_t i = 1; i < Commands::rows().size(); ++i)
        QVERIFY(int(Commands::rows()[i - 1].group) <= int(Commands::rows()[i].group));
    QSet<QString> titles;
    for (int group = 0; group < Commands::PANEL_GROUP_COUNT; ++group) {
        QVERIFY(Commands::inPanel(Group(group)));
        QVERIFY(!Commands::rowsOf(Group(group)).empty());
        titles << Commands::titleOf(Group(group));
    }
    QCOMPARE(titles.size(), Commands::PANEL_GROUP_COUNT);
    QVERIFY(!titles.contains(QString()));
    QVERIFY(!Commands::inPanel(Group::Modes));
}

void ButtonTableTest::eachModeHasOneButton()
{
    const std::vector<Row> modes = Commands::rowsOf(Group::Modes);
    QCOMPARE(int(modes.size()), Modes::COUNT);
    int checked = 0;
    for (std::size_t mode = 0; mode < modes.size(); ++mode) {
        QCOMPARE(int(modes[mode].command) - int(Command::LiveMode), int(mode));
        checked += modes[mode].look & Commands::Checked ? 1 : 0;
    }
    QCOMPARE(checked, 1);
    QVERIFY(modes[Modes::Live].look & Commands::Checked);
}

void ButtonTableTest::eachToolHasOneButton()
{
    QMap<int, int> buttons;
    int atFirst = 0;
    for (const Row &row : Commands::rows()) {
        if (!row.tool)
            continue;
        ++buttons[*row.tool];
        QVERIFY2(row.look & Commands::InToolGroup, row.text);
        QVERIFY(Commands::ofTool(*row.tool) == row.command);
        atFirst += row.look & Commands::Checked ? 1 : 0;
    }
    for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode)
        QCOMPARE(buttons.take(mode), 1);
    QVERIFY(buttons.isEmpty());
    QCOMPARE(atFirst, 1);
    QVERIFY(Commands::rowsOf(Group::Card).back().command == Command::More);
    QVERIFY(!Commands::ofTool(-1));
    QVERIFY(!Commands::ofTool(CanvasModes::MOUSE_MODE_COUNT));
}

void ButtonTableTest::eachKeyHasOneCommand()
{
    for (int mode = 0; mode < Modes::COUNT; ++mode) {
        QMap<int, Command> commands;
        for (const Row &row : Commands::rows()) {
            if (!Modes::contains(row.modes, mode))
                continue;
            for (const int key : row.keys) {
                QVERIFY2(!commands.contains(key), qPrintable(QKeySequence(key).toString()));
                commands[key] = row.command;
                const auto modifiers =
                    Qt::KeyboardModifiers(uint(key) & uint(Qt::KeyboardModifierMask));
                const int plain = key & ~int(Qt::KeyboardModifierMask);
                QVERIFY(Commands::ofKey(plain, modifiers, mode) == row.command);
            }
        }
        QVERIFY(!commands.isEmpty());
    }
}

void ButtonTableTest::theManualPageNamesEveryKey()
{
    QFile manual(TEST_SOURCE_DIR "/../../packaging/document-camera.1.in");
    QVERIFY(manual.open(QIODevice::ReadOnly));
    const QString chapter =
        QString::fromUtf8(manual.readAll()).section(".SH KEYS\n", 1).section("\n.SH", 0, 0);
    QStringList named;
    for (const QString &line : chapter.split('\n')) {
        if (line.startsWith(".B "))
            named += line.mid(3).remove('\\').split(", ");
    }
    QStringList keys;
    for (const Row &row : Commands::rows()) {
        for (const int key : row.keys) {
            // A sign that some keyboards have on Shift is named once.
            const QString name = QKeySequence(key & ~int(Qt::ShiftModifier)).toString();
            const bool sign = name.size() == 1 && !name[0].isLetter();
            keys += sign ? name : QKeySequence(key).toString();
        }
    }
    keys.removeDuplicates();
    keys.sort();
    named.sort();
    QCOMPARE(named, keys);
}

void ButtonTableTest::eachHoldHasAPopUp()
{
    for (const Row &row : Commands::rows()) {
        if (row.holdSlot)
            QVERIFY2(row.popUp != PopUp::None, row.text);
        // A pop-up has a button to stand by.
        if (row.popUp != PopUp::None)
            QVERIFY(row.skin);
        const bool strokes =
            row.popUp == PopUp::Width || row.popUp == PopUp::Line || row.popUp == PopUp::Shape;
        QCOMPARE(row.popUpTitle != nullptr, strokes);
    }
}

void ButtonTableTest::eachCommandDoesSomething()
{
    for (const Row &row : Commands::rows()) {
        QVERIFY(row.clickSlot || row.holdSlot || row.startSlot || row.tool);
        QVERIFY(row.modes != 0);
        QVERIFY((row.modes & ~Modes::ALL) == 0);
        if (row.group == Group::Keys)
            QVERIFY(row.clickSlot && !row.keys.empty());
    }
}

void ButtonTableTest::eachButtonHasASkinAndAText()
{
    for (const Row &row : Commands::rows()) {
        QCOMPARE(row.skin != nullptr, row.group != Group::Keys);
        // The list of keys says it of those without a button.
        QVERIFY(row.text && *row.text);
    }
}

void ButtonTableTest::commandsThatLastAreStopped()
{
    for (const Row &row : Commands::rows()) {
        QCOMPARE(row.startSlot != nullptr, row.stopSlot != nullptr);
        QVERIFY(!row.startSlot || !row.repeating);
    }
}

REGISTER_PLAIN_TEST(ButtonTableTest)
#include "tst_button_table.moc"
