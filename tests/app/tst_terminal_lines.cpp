#include "diagnostics/TerminalLines.h"

#include "tests/TestProgram.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

using TerminalLines::Line;

namespace
{

QStringList said;

void collect(QtMsgType, const QMessageLogContext &, const QString &message)
{
    said.append(message);
}

/// The words of a document without its line breaks and the marks of its format.
QString wordsOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll())
        .remove(QRegularExpression("^\\.[A-Z]+ ?|\\\\f[IR]|[`\\\\]",
                                   QRegularExpression::MultilineOption))
        .simplified();
}

/// The sentence with any words in its places.
QRegularExpression patternOf(const char *text)
{
    return QRegularExpression(QRegularExpression::escape(QString::fromLatin1(text))
                                  .replace("\\%1", "[^:.]+?")
                                  .replace("\\%2", "[^:.]+?"));
}

} // namespace

class TerminalLinesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyLineHasARowOfItsOwn();
    void takesWordsThatLookLikePlaces();
    void saysACauseOnce();
    void documentsExplainEveryLine_data();
    void documentsExplainEveryLine();
    void everyEntryExplainsALine();
    void everyLineHasATestThatProducesIt();
};

void TerminalLinesTest::everyLineHasARowOfItsOwn()
{
    int expected = 0;
    for (const TerminalLines::Row &row : TerminalLines::rows())
        QCOMPARE(int(row.line), expected++);
    QCOMPARE(expected, int(Line::VariableIgnored) + 1);
}

void TerminalLinesTest::takesWordsThatLookLikePlaces()
{
    const QString text = TerminalLines::text(Line::SnapshotNotWritten, {"/a%2b", "full"});
    QVERIFY2(text.startsWith("The snapshot /a%2b was not written (full): "), qPrintable(text));
}

void TerminalLinesTest::saysACauseOnce()
{
    said.clear();
    const QtMessageHandler before = qInstallMessageHandler(collect);
    TerminalLines::tell(Line::NotAFilm, {"/a"});
    TerminalLines::tell(Line::NotAFilm, {"/a"});
    TerminalLines::tell(Line::NotAFilm, {"/b"});
    TerminalLines::tell(Line::SnapshotNotWritten, {"/p/1.jpg", "full"}, "/p full");
    TerminalLines::tell(Line::SnapshotNotWritten, {"/p/2.jpg", "full"}, "/p full");
    qInstallMessageHandler(before);
    QCOMPARE(said,
             (QStringList{TerminalLines::text(Line::NotAFilm, {"/a"}),
                          TerminalLines::text(Line::NotAFilm, {"/b"}),
                          TerminalLines::text(Line::SnapshotNotWritten, {"/p/1.jpg", "full"})}));
}

void TerminalLinesTest::documentsExplainEveryLine_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name : {"README.md", "packaging/document-camera.1.in"})
        QTest::newRow(name) << QStringLiteral(SOURCE_ROOT "/") + name;
}

void TerminalLinesTest::documentsExplainEveryLine()
{
    QFETCH(QString, path);
    const QString words = wordsOf(path);
    QVERIFY(!words.isEmpty());
    for (const TerminalLines::Row &row : TerminalLines::rows())
        QVERIFY2(patternOf(row.text).match(words).hasMatch(), row.text);
}

void TerminalLinesTest::everyEntryExplainsALine()
{
    QFile file(QStringLiteral(SOURCE_ROOT "/README.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString chapter = QString::fromUtf8(file.readAll()).section("## Troubleshooting", 1);
    QRegularExpressionMatchIterator entries =
        QRegularExpression("^- `([^`]+)`", QRegularExpression::MultilineOption)
            .globalMatch(chapter);
    std::size_t count = 0;
    while (entries.hasNext()) {
        const QString entry = entries.next().captured(1).simplified();
        const auto &rows = TerminalLines::rows();
        QVERIFY2(std::any_of(rows.begin(), rows.end(),
                             [&entry](const TerminalLines::Row &row) {
                                 return patternOf(row.text).match(entry).hasMatch();
                             }),
                 qPrintable(entry));
        ++count;
    }
    QCOMPARE(count, TerminalLines::rows().size());
}

void TerminalLinesTest::everyLineHasATestThatProducesIt()
{
    QString tests;
    QDirIterator files(QStringLiteral(SOURCE_ROOT "/tests"), {"tst_*.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (files.fileName() != QLatin1String("tst_terminal_lines.cpp") &&
            file.open(QIODevice::ReadOnly))
            tests += QString::fromUtf8(file.readAll());
    }
    QFile table(QStringLiteral(SOURCE_ROOT "/diagnostics/TerminalLines.cpp"));
    QVERIFY(table.open(QIODevice::ReadOnly));
    QRegularExpressionMatchIterator names =
        QRegularExpression("\\{(Line::\\w+),").globalMatch(QString::fromUtf8(table.readAll()));
    std::size_t count = 0;
    for (; names.hasNext(); ++count) {
        const QString name = names.next().captured(1);
        QVERIFY2(QRegularExpression(name + "\\b").match(tests).hasMatch(), qPrintable(name));
    }
    QCOMPARE(count, TerminalLines::rows().size());
}

REGISTER_PLAIN_TEST(TerminalLinesTest)
#include "tst_terminal_lines.moc"
