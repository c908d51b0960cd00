#include "sources/photographs/PicturePreloader.h"
#include "sources/photographs/PictureReader.h"
#include "tests/Allocator.h"
#include "tests/ProcessMemory.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"

#include <QtTest>

#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <array>

namespace
{

/// Writes a black PNG file with as many of its rows as asked for. Another process does it, so that
/// this one stays small.
const char *const WRITER = R"(
import struct, sys, zlib
path, width, height, rows, depth, colour, channels = sys.argv[1], *map(int, sys.argv[2:])
def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
stream = zlib.compressobj(1)
row = bytes(1 + width * channels * depth // 8)
pixels = b"".join(stream.compress(row) for _ in range(rows)) + stream.flush()
with open(path, "wb") as file:
    file.write(b"\x89PNG\r\n\x1a\n")
    file.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, 0)))
    file.write(chunk(b"IDAT", pixels) + chunk(b"IEND", b""))
)";

} // namespace

/// Pictures of 108 megapixels, as the sensors of telephones have them.
class PictureMemoryTest : public QObject
{
    Q_OBJECT

    static constexpr int WIDTH = 12000;
    static constexpr int HEIGHT = 9000;

    /// An answer has 144, and the rest is what the libraries need.
    static constexpr qint64 ANSWER_MEGABYTES = 170;

    QTemporaryDir m_folder;
    qint64 m_before = 0;

    QString written(int rows, int depth, int colour, int channels) const
    {
        const QString path = m_folder.filePath("picture.png");
        QStringList arguments{"-c", WRITER, path};
        for (const int number : {WIDTH, HEIGHT, rows, depth, colour, channels})
            arguments << QString::number(number);
        return QProcess::execute("python3", arguments) == 0 ? path : QString();
    }

    /// A small red JPEG file that only says that it is large: the decoder makes room for all of it.
    /// `frame` is the marker before its size.
    QString pretended(const QStringList &options, const char *frame, QSize size) const
    {
        const QString path = m_folder.filePath("pretended.jpg");
        (void)QProcess::execute("convert", QStringList{"-size", "64x48", "xc:red"} + options +
                                               QStringList{path});
        QFile file(path);
        if (!file.open(QIODevice::ReadWrite))
            return {};
        const int place = file.peek(file.size()).indexOf(frame);
        std::array<uchar, 4> bytes{};
        qToBigEndian(quint16(size.height()), bytes.data());
        qToBigEndian(quint16(size.width()), bytes.data() + 2);
        file.seek(place + 5);
        file.write(reinterpret_cast<const char *>(bytes.data()), 4);
        return place > 0 ? path : QString();
    }

private slots:
    void init() { m_before = m_before > 0 ? m_before : largestMegabytes(); }

    void onlyTheAnswerIsHeld_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("colour");
        QTest::addColumn<int>("channels");
        QTest::newRow("grey") << HEIGHT << 8 << 0 << 1;
        QTest::newRow("16 bits a channel") << HEIGHT / 10 << 16 << 2 << 3;
    }

    void onlyTheAnswerIsHeld()
    {
        QFETCH(int, rows);
        QFETCH(int, depth);
        QFETCH(int, colour);
        QFETCH(int, channels);
        const QString path = written(rows, depth, colour, channels);
        QVERIFY(!path.isEmpty());
        const QImage picture = PictureReader::read(path);
        QVERIFY(picture.width() > 8000);
        QVERIFY(qint64(picture.width()) * picture.height() <= PictureReader::MAX_PIXELS);
        QCOMPARE(picture.pixel(picture.width() / 2, picture.height() / 20), qRgb(0, 0, 0));
        QVERIFY2(!SYSTEM_ALLOCATOR || largestMegabytes() < m_before + ANSWER_MEGABYTES,
                 qPrintable(QString::number(largestMegabytes())));
    }

    void aBitmapIsReadInParts()
    {
        // Its pixels are a hole in the file but for the first row of the file, the lowest of all.
        const QString path = m_folder.filePath("picture.bmp");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromHex("424d 00000000 00000000 36000000 28000000 e02e0000 28230000"
                                       "0100 1800 00000000 00000000 00000000 00000000 00000000"
                                       "00000000"));
        file.write(QByteArray("\x10\x20\xf0").repeated(WIDTH));
        QVERIFY(file.resize(54 + qint64(WIDTH) * 3 * HEIGHT));
        file.close();
        // It is decoded from the disk, which tells that it answers.
        int signs = 0;
        QImage picture = PictureReader::readFile(path, [&signs](qint64) { ++signs; }).picture;
        QVERIFY(signs > 100);
        QVERIFY(picture.width() > 8000);
        QCOMPARE(picture.pixel(picture.rect().center()), qRgb(0, 0, 0));
        QVERIFY(qRed(picture.pixel(picture.width() / 2, picture.height() - 1)) > 100);
        QVERIFY2(!SYSTEM_ALLOCATOR || largestMegabytes() < m_before + ANSWER_MEGABYTES,
                 qPrintable(QString::number(largestMegabytes())));
        picture = QImage();
        QVERIFY(file.resize(54 + qint64(WIDTH) * 3 * HEIGHT / 2));
        picture = PictureReader::read(path);
        QCOMPARE(picture.pixel(picture.width() / 2, 10), qRgb(255, 255, 255));
        QCOMPARE(picture.pixel(picture.width() / 2, picture.height() - 10), qRgb(0, 0, 0));
    }

    void printersColoursAreReadRowByRow()
    {
        const QString path = pretended({"-colorspace", "CMYK"}, "\xff\xc0", QSize(8000, 6000));
        const QImage picture = PictureReader::read(path);
        QCOMPARE(picture.size(), QSize(8000, 6000));
        QVERIFY(qRed(picture.pixel(9, 5)) > 200 && qBlue(picture.pixel(9, 5)) < 60);
        QVERIFY2(!SYSTEM_ALLOCATOR || largestMegabytes() < m_before + ANSWER_MEGABYTES,
                 qPrintable(QString::number(largestMegabytes())));
    }

    void twoOfThemAreNeverHeldAtOnce()
    {
        const QString first = written(HEIGHT / 10, 8, 0, 1);
        const QString second = m_folder.filePath("second.png");
        const QString small = m_folder.filePath("small.png");
        QVERIFY(QFile::link(first, second));
        QVERIFY(QImage(8, 8, QImage::Format_Mono).save(small));
        PicturePreloader preloader([](const QString &) {});
        (void)preloader.take(first);
        preloader.prepare({first, second, small});
        QTRY_VERIFY_WITH_TIMEOUT(preloader.holds(small), TIMEOUT_MS);
        QVERIFY(preloader.holds(first));
        QVERIFY(!preloader.holds(second));
        preloader.prepare({second, first});
        QTRY_VERIFY_WITH_TIMEOUT(preloader.holds(second), TIMEOUT_MS);
        QVERIFY(!preloader.holds(first));
        (void)preloader.take(first);
        QTRY_VERIFY_WITH_TIMEOUT(preloader.holds(first), TIMEOUT_MS);
        QVERIFY(!preloader.holds(second));
        QVERIFY2(!SYSTEM_ALLOCATOR || largestMegabytes() < m_before + ANSWER_MEGABYTES,
                 qPrintable(QString::number(largestMegabytes())));
    }

    // The last one, as the process was never larger.
    void severalScansAreReadReduced()
    {
        const QString path = pretended({"-interlace", "JPEG", "-sampling-factor", "2x2"},
                                       "\xff\xc2", QSize(WIDTH, HEIGHT));
        const QImage picture = PictureReader::read(path);
        QCOMPARE(picture.size(), QSize(WIDTH, HEIGHT) / 4);
        QVERIFY2(!SYSTEM_ALLOCATOR ||
                     largestMegabytes() <
                         m_before + PictureReader::MAX_DECODED_BYTES / 1024 / 1024 + 20,
                 qPrintable(QString::number(largestMegabytes())));
    }
};

REGISTER_TEST(PictureMemoryTest)
#include "tst_picture_memory.moc"
