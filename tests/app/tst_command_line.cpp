#include "app/CommandLine.h"

#include "tests/TestProgram.h"

#include <algorithm>

using Action = CommandLine::Action;

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void decides_data();
    void decides();
    void aRefusalIsOneLineThatNamesTheArgument();
    void namesItsVersion();
    void namesTheDisplayThatWasChosen();
    void helpNamesWhatItTakes();
};

void CommandLineTest::decides_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("action");
    const auto row = [](const QStringList &arguments, Action action) {
        QTest::newRow(qPrintable("'" + arguments.join("' '") + "'")) << arguments << int(action);
    };
    row({}, Action::Run);
    row({"-platform", "offscreen"}, Action::Run);
    row({"--platform", "offscreen"}, Action::Run);
    row({"-style=fusion"}, Action::Run);
    row({"-style", "fusion", "-reverse"}, Action::Run);
    row({"-display", ":7", "-stylesheet", "file"}, Action::Run);
    row({"--version"}, Action::Print);
    row({"--help"}, Action::Print);
    row({"-platform", "offscreen", "--version"}, Action::Print);
    row({"--nonsense"}, Action::Refuse);
    row({"--"}, Action::Refuse);
    row({"-"}, Action::Refuse);
    row({""}, Action::Refuse);
    row({"film.mp4"}, Action::Refuse);
    row({"-platform"}, Action::Refuse);
    row({"-platform=offscreen"}, Action::Refuse);
    row({"-reverse", "stray"}, Action::Refuse);
    row({"--version=2"}, Action::Refuse);
}

void CommandLineTest::decides()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, action);
    std::vector<std::string> words;
    for (const QString &argument : arguments)
        words.push_back(argument.toStdString());
    QCOMPARE(int(CommandLine::parse(words).action), action);
}

void CommandLineTest::aRefusalIsOneLineThatNamesTheArgument()
{
    const std::string text = CommandLine::parse({"--nonsense"}).text;
    QCOMPARE(std::count(text.begin(), text.end(), '\n'), 1);
    QCOMPARE(text.back(), '\n');
    QVERIFY(text.find("'--nonsense'") != std::string::npos);
}

void CommandLineTest::namesItsVersion()
{
    QCOMPARE(CommandLine::parse({"--version"}).text, std::string("Document Camera 1.00\n"));
}

void CommandLineTest::namesTheDisplayThatWasChosen()
{
    QCOMPARE(CommandLine::parse({"-style", "fusion"}).display, std::string());
    QCOMPARE(CommandLine::parse({"--display", ":7", "-style", "fusion"}).display,
             std::string(":7"));
    // The platform takes the last one.
    QCOMPARE(CommandLine::parse({"-display", ":7", "-display", ":8"}).display, std::string(":8"));
}

void CommandLineTest::helpNamesWhatItTakes()
{
    // Each option of the help is one that is taken.
    const QString help = QString::fromStdString(CommandLine::help());
    int count = 0;
    for (const QString &line : help.split('\n')) {
        if (!line.startsWith("  -"))
            continue;
        ++count;
        const QStringList words = line.simplified().split(' ');
        std::vector<std::string> arguments{words[0].toStdString()};
        if (words[1] == "NAME")
            arguments.emplace_back("value");
        QVERIFY2(CommandLine::parse(arguments).action != Action::Refuse, qPrintable(line));
    }
    QCOMPARE(count, 5);
}

REGISTER_PLAIN_TEST(CommandLineTest)
#include "tst_command_line.moc"
