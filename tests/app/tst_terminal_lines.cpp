#include "diagnostics/TerminalLines.h"

#include "tests/TestProgram.h"

#include <QFile>
#include <QRegularExpression>

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

REGISTER_PLAIN_TEST(TerminalLinesTest)
#include "tst_terminal_lines.moc"
