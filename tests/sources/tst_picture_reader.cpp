#include "sources/photographs/PictureReader.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QColorSpace>
#include <QImageWriter>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <fstream>

#include <sys/stat.h>

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

    void transparentPicturesLieOverWhite_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("options");
        QTest::newRow("PNG") << "a.png" << QStringList{"PNG32:"};
        QTest::newRow("16 bits a channel") << "deep.png" << QStringList{"PNG64:"};
        QTest::newRow("grey with alpha") << "grey.png" << QStringList{"-colorspace", "Gray", ""};
        QTest::newRow("palette") << "palette.png" << QStringList{"-colors", "4", "PNG8:"};
        QTest::newRow("GIF") << "a.gif" << QStringList{""};
        QTest::newRow("BMP") << "a.bmp" << QStringList{""};
    }

    void transparentPicturesLieOverWhite()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, options);
        // A black bar on a transparent ground.
        QStringList command{
            "-size", "300x200", "xc:none", "-fill", "black", "-draw", "rectangle 100,0 199,199"};
        command << options;
        command.last() += path(name);
        QCOMPARE(QProcess::execute("convert", command), 0);
        const QImage whole = PictureReader::read(path(name));
        QCOMPARE(whole.size(), QSize(300, 200));
        QCOMPARE(whole.format(), QImage::Format_RGB888);
        QCOMPARE(whole.pixel(10, 10), qRgb(255, 255, 255));
        QCOMPARE(whole.pixel(150, 100), qRgb(0, 0, 0));
        const QImage small = PictureReader::readFitted(path(name), QSize(56, 50));
        QCOMPARE(small.pixel(2, 2), qRgb(255, 255, 255));
        QCOMPARE(small.pixel(28, 18), qRgb(0, 0, 0));
    }

    void halfTransparentPixelsAreMixedWithWhite()
    {
        QImage image(4, 4, QImage::Format_ARGB32);
        image.fill(qRgba(200, 0, 100, 51));
        QVERIFY(image.save(path("half.png")));
        const QRgb pixel = PictureReader::read(path("half.png")).pixel(1, 1);
        // A fifth of the colour and four fifths of white.
        QVERIFY2(qAbs(qRed(pixel) - 244) <= 1, qPrintable(QString::number(qRed(pixel))));
        QVERIFY(qAbs(qGreen(pixel) - 204) <= 1);
        QVERIFY(qAbs(qBlue(pixel) - 224) <= 1);
    }

    void coloursAreThoseOfTheProfile_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QColorSpace>("space");
        QTest::addColumn<QColor>("stored");
        QTest::addColumn<QColor>("shown");
        const QColorSpace swapped(QPointF(0.3127, 0.329), QPointF(0.30, 0.60), QPointF(0.64, 0.33),
                                  QPointF(0.15, 0.06), QColorSpace::TransferFunction::SRgb);
        for (const char *suffix : {"jpg", "png"}) {
            QTest::addRow("Display P3 %s", suffix) << suffix << QColorSpace(QColorSpace::DisplayP3)
                                                   << QColor(200, 80, 80) << QColor(216, 67, 76);
            QTest::addRow("red and green swapped %s", suffix)
                << suffix << swapped << QColor(200, 40, 60) << QColor(40, 200, 60);
            QTest::addRow("the screen's own %s", suffix)
                << suffix << QColorSpace(QColorSpace::SRgb) << QColor(200, 40, 60)
                << QColor(200, 40, 60);
        }
    }

    void coloursAreThoseOfTheProfile()
    {
        QFETCH(QString, suffix);
        QFETCH(QColorSpace, space);
        QFETCH(QColor, stored);
        QFETCH(QColor, shown);
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(stored);
        image.setColorSpace(space);
        const QString file = path("profile." + suffix);
        QVERIFY(image.save(file, nullptr, 100));
        for (const QImage &read :
             {PictureReader::read(file), PictureReader::readFitted(file, QSize(56, 50))}) {
            const QColor pixel(read.pixel(read.rect().center()));
            QVERIFY2(qAbs(pixel.red() - shown.red()) <= 3 &&
                         qAbs(pixel.green() - shown.green()) <= 3 &&
                         qAbs(pixel.blue() - shown.blue()) <= 3,
                     qPrintable(pixel.name()));
        }
    }

    void halfAPngShowsItsHalf_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QSize>("size");
        for (const char *kind : {"PNG24", "PNG32", "PNG48", "PNG64", "PNG8"})
            QTest::newRow(kind) << kind << QSize(400, 300);
        QTest::newRow("very small") << "PNG24" << QSize(60, 45);
    }

    void halfAPngShowsItsHalf()
    {
        QFETCH(QString, kind);
        QFETCH(QSize, size);
        QStringList command{"-seed", "2", "-size",
                            QString("%1x%2").arg(size.width()).arg(size.height()),
                            "plasma:red-blue"};
        if (kind == "PNG8")
            command << "-colors"
                    << "64";
        command << kind + ":" + path("whole.png");
        QCOMPARE(QProcess::execute("convert", command), 0);
        const QImage whole = PictureReader::read(path("whole.png"));
        QFile::remove(path("cut.png"));
        QVERIFY(QFile::copy(path("whole.png"), path("cut.png")));
        QFile file(path("cut.png"));
        QVERIFY(file.resize(file.size() / 2));
        const QImage cut = PictureReader::read(path("cut.png"));
        QCOMPARE(cut.size(), size);
        const QRect top(0, 0, size.width(), size.height() / 4);
        QCOMPARE(cut.copy(top), whole.copy(top));
        QCOMPARE(cut.pixel(size.width() / 2, size.height() - 2), qRgb(255, 255, 255));
        QVERIFY(!PictureReader::readFitted(path("cut.png"), QSize(56, 50)).isNull());
        QVERIFY(file.resize(60));
        QVERIFY(PictureReader::read(path("cut.png")).isNull());
    }

    void narrowPicturesAreRead_data()
    {
        QTest::addColumn<QSize>("size");
        for (const QSize &size : {QSize(1, 20000), QSize(8, 20000), QSize(20000, 1)}) {
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
        }
    }

    void narrowPicturesAreRead()
    {
        QFETCH(QSize, size);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(path("narrow.png")));
        QCOMPARE(PictureReader::read(path("narrow.png")).size(), size);
        const QImage small = PictureReader::readFitted(path("narrow.png"), QSize(56, 50));
        QCOMPARE(small.size(), size.scaled(56, 50, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }

    void aProblemIsTold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("problem");
        QTest::newRow("no file") << "missing.jpg" << int(PictureProblem::Gone);
        QTest::newRow("in no folder") << "missing/a.jpg" << int(PictureProblem::Gone);
        QTest::newRow("a pipe") << "pipe.jpg" << int(PictureProblem::Unreadable);
        QTest::newRow("a folder") << "folder.jpg" << int(PictureProblem::Unreadable);
        QTest::newRow("a device") << "/dev/zero" << int(PictureProblem::Unreadable);
        QTest::newRow("a text") << "text.jpg" << int(PictureProblem::Damaged);
        QTest::newRow("nothing in it") << "empty.jpg" << int(PictureProblem::Damaged);
        QTest::newRow("a picture") << "fine.jpg" << int(PictureProblem::None);
    }

    void aProblemIsTold()
    {
        QFETCH(QString, name);
        QFETCH(int, problem);
        QDir(m_folder.path()).mkdir("folder.jpg");
        mkfifo(QFile::encodeName(path("pipe.jpg")).constData(), 0600);
        std::ofstream(path("text.jpg").toStdString()) << "Dear reader";
        std::ofstream(path("empty.jpg").toStdString()).flush();
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(path("fine.jpg")));
        const auto reading = PictureReader::readFile(QDir(m_folder.path()).filePath(name));
        QCOMPARE(int(reading.problem), problem);
        QCOMPARE(reading.picture.isNull(), problem != int(PictureProblem::None));
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

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

REGISTER_TEST(PictureReaderTest)
#include "tst_picture_reader.moc"
