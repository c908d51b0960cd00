#include "sources/jpeg/ExifThumbnail.h"
#include "tests/TestProgram.h"
#include "tests/sources/ExifPicture.h"

#include <QtTest>

Q_DECLARE_METATYPE(QDataStream::ByteOrder)

class ExifThumbnailTest : public QObject
{
    Q_OBJECT

private slots:
    void itIsFoundInBothByteOrders_data()
    {
        QTest::addColumn<QDataStream::ByteOrder>("order");
        QTest::newRow("big end first") << QDataStream::BigEndian;
        QTest::newRow("little end first") << QDataStream::LittleEndian;
    }

    void itIsFoundInBothByteOrders()
    {
        QFETCH(QDataStream::ByteOrder, order);
        QCOMPARE(exifThumbnail(ExifPicture::with(m_small, m_large, 1, order)), m_small);
    }

    void otherSegmentsMayComeBefore()
    {
        const QByteArray comment("\xff\xe1\x00\x08http:/", 10);
        QCOMPARE(exifThumbnail(ExifPicture::with(m_small, m_large).insert(2, comment)), m_small);
    }

    void aPictureWithoutOneHasNone()
    {
        QVERIFY(exifThumbnail(m_large).isEmpty());
        QVERIFY(exifThumbnail(ExifPicture::with({}, m_large)).isEmpty());
        QVERIFY(exifThumbnail({}).isEmpty());
        QVERIFY(exifThumbnail("This is no picture.").isEmpty());
    }

    void whatIsCutOffHasNone()
    {
        const QByteArray whole = ExifPicture::with(m_small, m_large);
        const int end = whole.indexOf(m_small) + m_small.size();
        for (int size = 0; size < end; ++size)
            QVERIFY(exifThumbnail(whole.left(size)).isEmpty());
        QCOMPARE(exifThumbnail(whole.left(end)), m_small);
    }

    void aWrongPlaceOrLengthHasNone_data()
    {
        QTest::addColumn<int>("fromEnd");
        QTest::newRow("place") << 4 + 16;
        QTest::newRow("length") << 4 + 4;
        QTest::newRow("the second directory") << 30 + 4;
    }

    void aWrongPlaceOrLengthHasNone()
    {
        QFETCH(int, fromEnd);
        QByteArray bytes = ExifPicture::with(m_small, m_large);
        bytes.replace(bytes.indexOf(m_small) - fromEnd, 4, QByteArray(4, char(0xff)));
        QVERIFY(exifThumbnail(bytes).isEmpty());
    }

private:
    const QByteArray m_small = ExifPicture::jpeg(QSize(16, 12), Qt::yellow);
    const QByteArray m_large = ExifPicture::jpeg(QSize(160, 120), Qt::blue);
};

REGISTER_TEST(ExifThumbnailTest)
#include "tst_exif_thumbnail.moc"
