#include "tests/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// The renderer as the build calls it: what it writes, and that every fault stops the build by name.
class SkinRenderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void drawsEachStateAtBothSizes();
    void faultsStopTheBuild_data();
    void faultsStopTheBuild();

private:
    void write(const QString &name, const QByteArray &text);
    bool render();
    QImage drawn(const QString &name) const { return QImage(m_folder->filePath("out/" + name)); }

    QScopedPointer<QTemporaryDir> m_folder;
    QString m_message;
};

namespace
{

const QByteArray table =
    "[states]\nA = 10x4 panel\n[OSD]\nB = 6x6 picture once\n[top]\nC = 2x2 popup\n";
const QByteArray palette =
    "[Normal]\nink = #010203\n[Over]\nink = #FF0000\n[Click]\nink = #0000FF\n";

QByteArray square(int width, int height, const QByteArray &fill)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + QByteArray::number(width) +
           "\" height=\"" + QByteArray::number(height) +
           "\"><rect width=\"100\" height=\"100\" fill=\"" + fill + "\"/></svg>";
}

} // namespace

void SkinRenderTest::init()
{
    m_folder.reset(new QTemporaryDir);
    write("skin.ini", table);
    write("palette.ini", palette);
    write("states/A.svg", square(10, 4, "@ink@"));
    write("OSD/B.svg", square(6, 6, "#00FF00"));
    write("top/C.svg", square(2, 2, "@ink@"));
}

void SkinRenderTest::drawsEachStateAtBothSizes()
{
    QVERIFY2(render(), qPrintable(m_message));
    QCOMPARE(drawn("Normal/A.png").size(), QSize(10, 4));
    QCOMPARE(drawn("Normal/A@2x.png").size(), QSize(20, 8));
    QCOMPARE(drawn("Normal/A.png").pixel(5, 2), qRgb(1, 2, 3));
    QCOMPARE(drawn("Over/A.png").pixel(5, 2), qRgb(255, 0, 0));
    QCOMPARE(drawn("Click/A@2x.png").pixel(19, 7), qRgb(0, 0, 255));
    QCOMPARE(drawn("OSD/B.png").pixel(5, 5), qRgb(0, 255, 0));
    QVERIFY(drawn("OSD/B@2x.png").isNull());
    QCOMPARE(drawn("C.png").pixel(1, 1), qRgb(1, 2, 3));
    QFile list(m_folder->filePath("out/skin.qrc"));
    QVERIFY(list.open(QIODevice::ReadOnly));
    const QByteArray text = list.readAll();
    QVERIFY(text.contains("prefix=\"/icons\""));
    QCOMPARE(text.count("<file>"), 3 * 2 + 1 + 2);
    QVERIFY(text.contains("<file>Over/A@2x.png</file>"));
}

void SkinRenderTest::faultsStopTheBuild_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("no drawing") << "skin.ini" << table + "D = 2x2 popup\n"
                                << "top/D.svg";
    QTest::newRow("stray drawing") << "OSD/E.svg" << square(2, 2, "#000000") << "OSD/E.svg";
    QTest::newRow("named twice") << "skin.ini" << table + "C = 2x2 popup\n"
                                 << "named twice";
    QTest::newRow("other size") << "top/C.svg" << square(3, 2, "#000000") << "size differs";
    QTest::newRow("unknown token") << "top/C.svg" << square(2, 2, "@inc@") << "@inc@";
    QTest::newRow("no drawing in it") << "top/C.svg" << QByteArray("<svg") << "not a drawing";
    QTest::newRow("empty drawing") << "top/C.svg" << QByteArray() << "not a drawing";
    QTest::newRow("bad row") << "skin.ini" << QByteArray("[top]\nC = big\n") << "skin.ini:2";
    QTest::newRow("bad palette") << "palette.ini" << QByteArray("[Normal]\nink\n")
                                 << "palette.ini:2";
}

void SkinRenderTest::faultsStopTheBuild()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    write(file, text);
    QVERIFY(!render());
    QVERIFY2(m_message.contains(message), qPrintable(m_message));
    QVERIFY(!QFile::exists(m_folder->filePath("out/skin.qrc")));
}

void SkinRenderTest::write(const QString &name, const QByteArray &text)
{
    const QString path = m_folder->filePath(name);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

bool SkinRenderTest::render()
{
    QProcess process;
    process.start(SKINRENDER, {m_folder->filePath("skin.ini"), m_folder->filePath("palette.ini"),
                               m_folder->filePath("out")});
    if (!process.waitForFinished(60000))
        return false;
    m_message = QString::fromLocal8Bit(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

REGISTER_TEST(SkinRenderTest)
#include "tst_skinrender.moc"
