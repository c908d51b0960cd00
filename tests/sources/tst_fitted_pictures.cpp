#include "sources/photographs/PictureReader.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QProcess>
#include <QTemporaryDir>

/// Pictures that are read in the size of a thumbnail.
class FittedPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

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

private:
    /// A photograph of 1200 x 900 with that kind of interlacing.
    QString photograph(const QString &interlace) const
    {
        QString file = path("photograph-" + interlace + ".jpg");
        QProcess::execute("convert", {"-seed", "1", "-size", "1200x900", "plasma:red-blue",
                                      "-interlace", interlace, file});
        return file;
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

REGISTER_TEST(FittedPicturesTest)
#include "tst_fitted_pictures.moc"
