#include "sources/jpeg/JpegHeader.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

namespace
{

QByteArray jpeg(int width, int height, QImage::Format format = QImage::Format_RGB888)
{
    QImage image(width, height, format);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "jpg").write(image);
    return bytes;
}

QSize sizeOf(const QByteArray &bytes)
{
    return jpegFrameSize(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

/// Where the frame header's height and width stand: marker, length and precision come before.
int frameHeader(const QByteArray &bytes)
{
    return bytes.indexOf(QByteArray("\xFF\xC0", 2)) + 5;
}

} // namespace

class JpegHeaderTest : public QObject
{
    Q_OBJECT

private slots:
    void theSizeIsTheHeaders()
    {
        QCOMPARE(sizeOf(jpeg(1280, 720)), QSize(1280, 720));
        QCOMPARE(sizeOf(jpeg(1, 1)), QSize(1, 1));
        QCOMPARE(sizeOf(jpeg(33, 17, QImage::Format_Grayscale8)), QSize(33, 17));
    }

    void aPatchedSizeIsReadAsItStands()
    {
        QByteArray bytes = jpeg(640, 480);
        const int at = frameHeader(bytes);
        bytes[at] = '\x7F';
        bytes[at + 1] = '\x01';
        QCOMPARE(sizeOf(bytes), QSize(640, 0x7F01));
    }

    void aFrameCutAfterItsHeaderStillHasItsSize()
    {
        const QByteArray bytes = jpeg(640, 480);
        const int scan = bytes.indexOf(QByteArray("\xFF\xDA", 2));
        QCOMPARE(sizeOf(bytes.left(scan + 20)), QSize(640, 480));
    }

    void noHeaderNoSize()
    {
        QVERIFY(sizeOf(QByteArray()).isEmpty());
        QVERIFY(jpegFrameSize(nullptr, 100).isEmpty());
        QVERIFY(sizeOf(QByteArray("\xFF", 1)).isEmpty());
        QVERIFY(sizeOf(QByteArray("\xFF\xD8", 2)).isEmpty());
        QVERIFY(sizeOf(QByteArray("\xFF\xD8\xFF\xD9", 4)).isEmpty());
        QVERIFY(sizeOf(QByteArray(4096, '\0')).isEmpty());
        QVERIFY(sizeOf("not a picture at all").isEmpty());
    }

    void aSizeOfZeroIsNone()
    {
        QByteArray bytes = jpeg(640, 480);
        const int at = frameHeader(bytes);
        for (int i = 0; i < 4; ++i)
            bytes[at + i] = '\0';
        QVERIFY(sizeOf(bytes).isEmpty());
    }

    void everyPrefixIsReadWithoutHarm()
    {
        const QByteArray bytes = jpeg(64, 48);
        for (int length = 0; length < bytes.size(); ++length) {
            // A copy of exactly that length, so that reading on would be seen by the sanitizer.
            const std::vector<char> cut(bytes.constData(), bytes.constData() + length);
            const QSize size = jpegFrameSize(cut.data(), cut.size());
            QVERIFY(size.isEmpty() || size == QSize(64, 48));
        }
    }

    void damagedHeadersAreReadWithoutHarm()
    {
        const QByteArray whole = jpeg(64, 48);
        quint32 random = 12345;
        for (int round = 0; round < 3000; ++round) {
            QByteArray bytes = whole;
            for (int hit = 0; hit < 3; ++hit) {
                random = random * 1664525u + 1013904223u;
                bytes[static_cast<int>((random >> 8) % static_cast<quint32>(bytes.size()))] =
                    static_cast<char>(random >> 24);
            }
            const QSize size = sizeOf(bytes);
            QVERIFY(size.isEmpty() || (size.width() <= 65535 && size.height() <= 65535));
        }
    }
};

REGISTER_CORE_TEST(JpegHeaderTest)
#include "tst_jpeg_header.moc"
