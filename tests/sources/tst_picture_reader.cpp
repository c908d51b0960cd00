#include "sources/photographs/PictureReader.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <QtEndian>

#include <sys/resource.h>

namespace
{

/// A JPEG file of a white picture whose top left quarter is red, with an orientation tag.
void writeTagged(const QString &path, int orientation)
{
    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(0, 0, 200, 100, Qt::red);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "jpg", 95));
    // An application segment with one tag of the first image directory, tag 0x0112, type short.
    QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 32);
    exif[25] = char(orientation);
    QByteArray segment("\xff\xe1", 2);
    segment += char(0);
    segment += char(exif.size() + 2);
    jpeg.insert(2, segment + exif);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(jpeg);
}

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

long mostMemoryKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

class PictureReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void aPictureIsReadWhole()
    {
        QImage image(33, 17, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(path("a.png")));
        QCOMPARE(PictureReader::read(path("a.png")).convertToFormat(QImage::Format_RGB32), image);
    }

    void aTaggedPictureStandsUpright_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("red");
        QTest::newRow("1 as it lies") << 1 << QSize(400, 200) << QPoint(100, 50);
        QTest::newRow("2 mirrored") << 2 << QSize(400, 200) << QPoint(300, 50);
        QTest::newRow("3 on its head") << 3 << QSize(400, 200) << QPoint(300, 150);
        QTest::newRow("4 mirrored on its head") << 4 << QSize(400, 200) << QPoint(100, 150);
        QTest::newRow("5 mirrored, turned left") << 5 << QSize(200, 400) << QPoint(50, 100);
        QTest::newRow("6 turned right") << 6 << QSize(200, 400) << QPoint(150, 100);
        QTest::newRow("7 mirrored, turned right") << 7 << QSize(200, 400) << QPoint(150, 300);
        QTest::newRow("8 turned left") << 8 << QSize(200, 400) << QPoint(50, 300);
    }

    void aTaggedPictureStandsUpright()
    {
        QFETCH(int, orientation);
        QFETCH(QSize, size);
        QFETCH(QPoint, red);
        writeTagged(path("tagged.jpg"), orientation);
        const QImage whole = PictureReader::read(path("tagged.jpg"));
        QCOMPARE(whole.size(), size);
        const QImage small = PictureReader::readFitted(path("tagged.jpg"), QSize(56, 50));
        QCOMPARE(small.size(), size.scaled(56, 50, Qt::KeepAspectRatio));
        for (const QImage &image : {whole, small}) {
            for (const QPoint quarter : {QPoint(1, 1), QPoint(3, 1), QPoint(1, 3), QPoint(3, 3)}) {
                const QPoint spot(image.width() * quarter.x() / 4,
                                  image.height() * quarter.y() / 4);
                const bool wanted =
                    QPoint(size.width() * quarter.x() / 4, size.height() * quarter.y() / 4) == red;
                QCOMPARE(qGreen(image.pixel(spot)) < 60, wanted);
            }
        }
    }

    void anUnreadablePictureIsNull_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("Dear reader, this is no picture at all.\n");
        QTest::newRow("start of a JPEG file") << QByteArray("\xff\xd8\xff\xe0", 4);
        QTest::newRow("start of a PNG file") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    }

    void anUnreadablePictureIsNull()
    {
        QFETCH(QByteArray, bytes);
        QFile file(path("bad.jpg"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        QVERIFY(PictureReader::read(path("bad.jpg")).isNull());
        QVERIFY(PictureReader::readFitted(path("bad.jpg"), QSize(56, 50)).isNull());
        QVERIFY(PictureReader::read(path("missing.jpg")).isNull());
        QVERIFY(PictureReader::read(m_folder.path()).isNull());
    }

    void aTruncatedPictureDoesNoHarm()
    {
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(Qt::green);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(image.save(&buffer, "jpg"));
        for (int length = 0; length < bytes.size(); length += 397) {
            QFile file(path("cut.jpg"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes.left(length));
            file.close();
            const QImage whole = PictureReader::read(path("cut.jpg"));
            QVERIFY(whole.isNull() || whole.size() == image.size());
            const QImage small = PictureReader::readFitted(path("cut.jpg"), QSize(56, 50));
            QVERIFY(small.isNull() || small.size() == QSize(56, 42));
        }
    }

    void aFileThatIsNotWhatItsNameSaysIsReadByItsContent()
    {
        QImage image(80, 60, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(QImageWriter(path("really-png.jpg"), "png").write(image));
        QCOMPARE(PictureReader::read(path("really-png.jpg")).size(), QSize(80, 60));
        QCOMPARE(PictureReader::readFitted(path("really-png.jpg"), QSize(56, 50)).size(),
                 QSize(56, 42));
    }

    void fittedPicturesHaveTheSizeOfAWholeOneScaled_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("suffix");
        for (const QSize &size :
             {QSize(1, 1), QSize(4000, 3000), QSize(3000, 4000), QSize(113, 100), QSize(5000, 101),
              QSize(101, 5000), QSize(30, 20)}) {
            for (const char *suffix : {"jpg", "png"})
                QTest::addRow("%dx%d %s", size.width(), size.height(), suffix) << size << suffix;
        }
    }

    void fittedPicturesHaveTheSizeOfAWholeOneScaled()
    {
        QFETCH(QSize, size);
        QFETCH(QString, suffix);
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(40, 120, 200));
        const QString file = path("sized." + suffix);
        QVERIFY(image.save(file));
        const QImage expected =
            QImage(file).scaled(56, 50, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QImage actual = PictureReader::readFitted(file, QSize(56, 50));
        QCOMPARE(actual.size(), expected.size());
        const QRgb middle = actual.pixel(actual.rect().center());
        QVERIFY(qAbs(qRed(middle) - 40) < 4 && qAbs(qBlue(middle) - 200) < 4);
    }

    void deepAndPrintersColoursAreReadable()
    {
        for (const char *arguments : {"-depth 16 deep.png", "-colorspace CMYK cmyk.jpg"}) {
            const QStringList split = QString(arguments).split(' ');
            QStringList command{"-size", "300x200", "gradient:red-blue"};
            command << split[0] << split[1] << path(split[2]);
            QCOMPARE(QProcess::execute("convert", command), 0);
            QCOMPARE(PictureReader::read(path(split[2])).size(), QSize(300, 200));
            QCOMPARE(PictureReader::readFitted(path(split[2]), QSize(56, 50)).size(),
                     QSize(56, 37));
        }
    }

    void anAnimationGivesItsFirstPicture()
    {
        QCOMPARE(
            QProcess::execute("convert", {"-size", "64x48", "xc:red", "xc:blue", path("a.gif")}),
            0);
        const QImage image = PictureReader::read(path("a.gif"));
        QCOMPARE(image.pixel(5, 5), qRgb(255, 0, 0));
        const QImage small = PictureReader::readFitted(path("a.gif"), QSize(56, 50));
        QCOMPARE(small.size(), QSize(56, 42));
        QCOMPARE(small.pixel(5, 5), qRgb(255, 0, 0));
    }

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
        QVERIFY(colour || image.width() > 8000);
        QCOMPARE(image.width(), image.height());
        const QImage small = PictureReader::readFitted(path("huge.png"), QSize(56, 50));
        QVERIFY(colour || small.size() == QSize(50, 50));
        rusage usage{};
        QCOMPARE(getrusage(RUSAGE_SELF, &usage), 0);
        QVERIFY2(usage.ru_maxrss < 900 * 1024, qPrintable(QString::number(usage.ru_maxrss)));
    }

    void aProgressivePhotographIsReadLikeAnyOther()
    {
        const QImage plain = PictureReader::readFitted(photograph("none"), QSize(56, 50));
        const QImage progressive = PictureReader::readFitted(photograph("JPEG"), QSize(56, 50));
        QCOMPARE(progressive.size(), QSize(56, 42));
        QCOMPARE(progressive, plain);
    }

    void aGreyPhotographIsReadReduced()
    {
        QImage image(1200, 900, QImage::Format_Grayscale8);
        image.fill(90);
        QVERIFY(image.save(path("grey.jpg")));
        const QImage small = PictureReader::readFitted(path("grey.jpg"), QSize(56, 50));
        QCOMPARE(small.size(), QSize(56, 42));
        QVERIFY(qAbs(qGreen(small.pixel(20, 20)) - 90) < 4);
    }

    void aThumbnailLooksLikeTheWholePictureMadeSmall()
    {
        const QString file = photograph("none");
        const QImage small = PictureReader::readFitted(file, QSize(56, 50));
        const QImage whole =
            QImage(file).scaled(56, 50, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        for (int y = 0; y < small.height(); ++y) {
            for (int x = 0; x < small.width(); ++x) {
                QVERIFY(qAbs(qRed(small.pixel(x, y)) - qRed(whole.pixel(x, y))) < 12);
                QVERIFY(qAbs(qBlue(small.pixel(x, y)) - qBlue(whole.pixel(x, y))) < 12);
            }
        }
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
        const long before = mostMemoryKb();
        QVERIFY(PictureReader::read(path(file)).isNull());
        QVERIFY(PictureReader::readFitted(path(file), QSize(56, 50)).isNull());
        QVERIFY(mostMemoryKb() < before + 100 * 1024);
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
    /// A photograph of 1200 x 900 with that kind of interlacing.
    QString photograph(const QString &interlace) const
    {
        const QString file = path("photograph-" + interlace + ".jpg");
        QProcess::execute("convert", {"-seed", "1", "-size", "1200x900", "plasma:red-blue",
                                      "-interlace", interlace, file});
        return file;
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

REGISTER_TEST(PictureReaderTest)
#include "tst_picture_reader.moc"
