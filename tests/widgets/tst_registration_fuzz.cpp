#include <QtTest>

#include <QByteArray>
#include <QVector>

#include <random>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size);

namespace
{

const QVector<QByteArray> CORPUS{
    QByteArray::fromHex("00000000"),
    QByteArray::fromHex("00000001 00000002 0041 00000002 0042"),
    QByteArray::fromHex("00000002 FFFFFFFF 00000000 00000006 004100640061 FFFFFFFF"),
    QByteArray::fromHex("FFFFFFFF 00000000"),
    QByteArray::fromHex("7FFFFFFF FFFFFFFF FFFFFFFF"),
};

} // namespace

class RegistrationFuzzTest : public QObject
{
    Q_OBJECT

private slots:
    /// A million inputs a run, the same ones each time.
    void noChangedFileDoesHarm()
    {
        std::mt19937 random(20);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        for (int input = 0; input < 1000000; ++input) {
            QByteArray bytes = CORPUS[below(CORPUS.size())];
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
                    bytes.insert(at, CORPUS[below(CORPUS.size())].mid(below(8), below(12)));
                    break;
                default:
                    if (at < bytes.size())
                        bytes[at] = char(random());
                }
            }
            const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
            QCOMPARE(LLVMFuzzerTestOneInput(data, size_t(bytes.size())), 0);
        }
    }
};

QTEST_GUILESS_MAIN(RegistrationFuzzTest)
#include "tst_registration_fuzz.moc"
