#include "tests/TestProgram.h"

#include <QtTest>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QVector>

#include <random>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size);

namespace
{

/// Every file that the fuzzer keeps: each reaches something of its own.
QVector<QByteArray> corpus()
{
    QVector<QByteArray> files;
    const QDir folder(TEST_SOURCE_DIR "/registration-corpus");
    for (const QString &name : folder.entryList(QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            files.append(file.readAll());
    }
    return files;
}

int feed(const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
    return LLVMFuzzerTestOneInput(data, size_t(bytes.size()));
}

} // namespace

class RegistrationFuzzTest : public QObject
{
    Q_OBJECT

private slots:
    void noFileOfTheCorpusDoesHarm()
    {
        const QVector<QByteArray> files = corpus();
        QVERIFY(files.size() > 30);
        for (const QByteArray &file : files)
            QCOMPARE(feed(file), 0);
    }

    /// A million inputs a run, the same ones each time.
    void noChangedFileDoesHarm()
    {
        const QVector<QByteArray> files = corpus();
        QVERIFY(!files.isEmpty());
        std::mt19937 random(20);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        for (int input = 0; input < 1000000; ++input) {
            QByteArray bytes = files[below(files.size())];
            for (int change = below(6); change > 0; --change) {
                const int at = below(bytes.size() + 1);
                switch (below(4)) {
                case 0:
                    bytes.insert(at, char(random()));
                    break;
                case 1:
                    bytes.remove(at, 1 + below(4));
                    break;
                case 2:
                    bytes.insert(at, files[below(files.size())].mid(below(8), below(12)));
                    break;
                default:
                    if (at < bytes.size())
                        bytes[at] = char(random());
                }
            }
            QCOMPARE(feed(bytes), 0);
        }
    }
};

REGISTER_CORE_TEST(RegistrationFuzzTest)
#include "tst_registration_fuzz.moc"
