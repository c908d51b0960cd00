#include "tests/TestProgram.h"
#include "widgets/RegistrationFile.h"

#include <QtTest>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

namespace
{

std::optional<QVector<RegistrationItem>> readBytes(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return RegistrationFile::read(buffer);
}

QByteArray written(const QVector<RegistrationItem> &items)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return RegistrationFile::write(buffer, items) ? bytes : QByteArray();
}

/// Two pairs, written by hand: ("Ada", "Büro") and (null, empty).
const QByteArray HAND_MADE = QByteArray::fromHex("00000002"
                                                 "00000006 004100640061"
                                                 "00000008 004200FC0072006F"
                                                 "FFFFFFFF"
                                                 "00000000");

} // namespace

class RegistrationFileTest : public QObject
{
    Q_OBJECT

private slots:
    void aHandMadeFileIsReadByteForByte()
    {
        const auto items = readBytes(HAND_MADE);
        QVERIFY(items.has_value());
        QCOMPARE(items->size(), 2);
        QCOMPARE(items->at(0).name, QString("Ada"));
        QCOMPARE(items->at(0).content, QString::fromUtf8("Büro"));
        QVERIFY(items->at(1).name.isNull());
        QVERIFY(items->at(1).content.isEmpty() && !items->at(1).content.isNull());
    }

    void writingGivesTheSameBytes() { QCOMPARE(written(*readBytes(HAND_MADE)), HAND_MADE); }

    void anEmptyListIsACountOfZero()
    {
        QCOMPARE(written({}), QByteArray(4, 0));
        QCOMPARE(readBytes(QByteArray(4, 0))->size(), 0);
    }

    void aFileCutAtAnyByteIsRefused()
    {
        for (int length = 0; length < HAND_MADE.size(); ++length)
            QVERIFY2(!readBytes(HAND_MADE.left(length)), qPrintable(QString::number(length)));
    }

    void aNegativeCountIsRefused()
    {
        QVERIFY(!readBytes(QByteArray::fromHex("FFFFFFFF")));
        QVERIFY(!readBytes(QByteArray::fromHex("80000000") + HAND_MADE.mid(4)));
    }

    void aHugeCountIsRefusedAtTheEndOfTheFile()
    {
        QVERIFY(!readBytes(QByteArray::fromHex("7FFFFFFF")));
        QVERIFY(!readBytes(QByteArray::fromHex("7FFFFFFF") + HAND_MADE.mid(4)));
    }

    void aStringLongerThanTheFileIsRefused()
    {
        QVERIFY(!readBytes(QByteArray::fromHex("00000001 FFFFFFFE 0041")));
        QVERIFY(!readBytes(QByteArray::fromHex("00000001 00000008 0041")));
    }

    void anOddStringLengthIsRefused()
    {
        QVERIFY(!readBytes(QByteArray::fromHex("00000001 00000003 004100 00000000")));
    }

    void whatFollowsTheLastItemIsIgnored() { QCOMPARE(readBytes(HAND_MADE + "more")->size(), 2); }

    void aHundredThousandItemsGoThereAndBack()
    {
        QVector<RegistrationItem> items(100000);
        for (int i = 0; i < items.size(); ++i)
            items[i] = {QString::number(i), QString("content %1").arg(i)};
        const auto back = readBytes(written(items));
        QVERIFY(back.has_value());
        QVERIFY(*back == items);
    }

    void aFailedWriteLeavesTheOldFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("list.rf");
        QVERIFY(RegistrationFile::write(path, {{"old", "list"}}));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray before = file.readAll();
        file.close();

        // A full disk: no file of this process may grow beyond a few bytes.
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        signal(SIGXFSZ, SIG_IGN);
        const rlimit small{10, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const bool result = RegistrationFile::write(path, {{"new", QString(50000, 'x')}});
        setrlimit(RLIMIT_FSIZE, &old);

        QVERIFY(!result);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), before);
    }

    void aFolderThatIsNotThereIsAFailedWrite()
    {
        QVERIFY(!RegistrationFile::write(QString("/nowhere/at/all/list.rf"), {{"a", "b"}}));
    }
};

REGISTER_CORE_TEST(RegistrationFileTest)
#include "tst_registration_file.moc"
