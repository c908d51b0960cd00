#include "sources/photographs/PictureReader.h"
#include "tests/Allocator.h"
#include "tests/ProcessMemory.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTemporaryDir>
#include <QtEndian>

namespace
{

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320 : 0);
    }
    return ~crc;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray &name, const QByteArray &data)
{
    return bigEndian(quint32(data.size())) + name + data + bigEndian(crc32(name + data));
}

/// A black PNG file of any size, either one bit a pixel, or in colour with most of its rows
/// missing at the end of the stream (a whole one takes seconds to write).
void writeBlackPng(const QString &path, int side, bool colour)
{
    const QByteArray header =
        bigEndian(quint32(side)) + bigEndian(quint32(side)) +
        (colour ? QByteArray("\x08\x02\0\0\0", 5) : QByteArray("\x01\0\0\0\0", 5));
    const int rowBytes = colour ? side * 3 + 1 : (side + 7) / 8 + 1;
    const QByteArray rows(colour ? rowBytes * (side / 50) : rowBytes * side, 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    // qCompress() puts the length before the zlib stream.
    file.write(QByteArray("\x89PNG\r\n\x1a\n") + chunk("IHDR", header) +
               chunk("IDAT", qCompress(rows).mid(4)) + chunk("IEND", {}));
}

/// Writes 20,000 x 20,000 into the header of a JPEG file with several scans or of a PNG file.
void pretendToBeHuge(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    if (bytes.startsWith("\x89PNG")) {
        const QByteArray header = "IHDR" + bigEndian(20000) + bigEndian(20000) + bytes.mid(24, 5);
        bytes.replace(12, header.size() + 4, header + bigEndian(crc32(header)));
    } else {
        const int frame = bytes.indexOf(QByteArray("\xff\xc2", 2));
        QVERIFY(frame > 0);
        bytes.replace(frame + 5, 4, QByteArray("\x4e\x20\x4e\x20", 4));
    }
    file.seek(0);
    file.write(bytes);
}

} // namespace

/// Pictures of 400 million pixels, and files that say that they are.
class HugePicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void aHugePictureIsReadReducedAndBounded_data()
    {
        QTest::addColumn<bool>("colour");
        QTest::newRow("one bit a pixel") << false;
        QTest::newRow("colour, cut off") << true;
    }

    void aHugePictureIsReadReducedAndBounded()
    {
        QFETCH(bool, colour);
        writeBlackPng(path("huge.png"), 20000, colour);
        const QImage image = PictureReader::read(path("huge.png"));
        QVERIFY(colour || !image.isNull());
        QVERIFY(qint64(image.width()) * image.height() <= PictureReader::MAX_PIXELS);
        QVERIFY(colour || image.width() > 7000);
        QCOMPARE(image.width(), image.height());
        const QImage small = PictureReader::readFitted(path("huge.png"), QSize(56, 50));
        QVERIFY(colour || small.size() == QSize(50, 50));
        QVERIFY2(!SYSTEM_ALLOCATOR || largestMegabytes() < 900,
                 qPrintable(QString::number(largestMegabytes())));
    }

    void aHugePictureInSeveralPassesIsRefused_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("passes");
        QTest::newRow("progressive JPEG") << "passes.jpg" << QByteArray("JPEG");
        QTest::newRow("interlaced PNG") << "passes.png" << QByteArray("PNG");
    }

    void aHugePictureInSeveralPassesIsRefused()
    {
        // A small file that only says that it is huge: the decoder would make room for the whole.
        QFETCH(QString, file);
        QFETCH(QByteArray, passes);
        QCOMPARE(QProcess::execute("convert", {"-size", "64x48", "gradient:red-blue", "-interlace",
                                               passes, path(file)}),
                 0);
        QVERIFY(!PictureReader::read(path(file)).isNull());
        pretendToBeHuge(path(file));
        const qint64 before = largestMegabytes();
        QVERIFY(PictureReader::read(path(file)).isNull());
        QVERIFY(PictureReader::readFitted(path(file), QSize(56, 50)).isNull());
        QVERIFY(largestMegabytes() < before + 100);
    }

    void aHugePictureThatCannotBeReadReducedIsRefused()
    {
        // The header of a 20,000 x 20,000 bitmap; its 1.2 gigabytes of pixels are a hole in the
        // file.
        const QByteArray header = QByteArray::fromHex(
            "424d 00000000 00000000 36000000 28000000 204e0000 204e0000 0100 1800 00000000"
            "00000000 00000000 00000000 00000000 00000000");
        QCOMPARE(header.size(), 54);
        QFile file(path("huge.bmp"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(header);
        QVERIFY(file.resize(54 + qint64(60000) * 20000));
        file.close();
        QVERIFY(PictureReader::read(path("huge.bmp")).isNull());
    }

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

REGISTER_TEST(HugePicturesTest)
#include "tst_huge_pictures.moc"
