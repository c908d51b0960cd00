#include "sources/photographs/ThumbnailCache.h"
#include "sources/photographs/ThumbnailStore.h"
#include "tests/TestProgram.h"
#include "tests/sources/ExifPicture.h"

#include <QtTest>

#include <QTemporaryDir>

#include <memory>

namespace
{

constexpr QSize STRIP(56, 50);

FileStamp stampOf(const QString &path)
{
    return PictureFile(path).stamp();
}

} // namespace

class ThumbnailStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir(cacheFolder()).removeRecursively();
    }

    void addressesAreWrittenAsOtherProgramsWriteThem_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("uri");
        QTest::addColumn<QString>("name");
        // The example of the standard.
        QTest::newRow("plain") << "/home/jens/photos/me.png"
                               << QByteArray("file:///home/jens/photos/me.png")
                               << "c6ee772d9e49320e97ec29a7eb5b1697.png";
        QTest::newRow("escaped") << QString::fromUtf8("/a b/ü;#%?[x]!$&'()*+,:=@~_-.jpg")
                                 << QByteArray("file:///a%20b/%C3%BC%3B%23%25%3F%5Bx%5D!$&'()*+,:"
                                               "=@~_-.jpg")
                                 << "";
    }

    void addressesAreWrittenAsOtherProgramsWriteThem()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, uri);
        QFETCH(QString, name);
        QCOMPARE(ThumbnailCache::uriOf(path), uri);
        if (!name.isEmpty())
            QCOMPARE(ThumbnailCache::fileFor(path), cacheFolder() + "/normal/" + name);
    }

    void aThumbnailIsKeptForAllPrograms()
    {
        const QString path = made("a.jpg", QSize(800, 600), Qt::blue);
        ThumbnailStore store;
        QCOMPARE(store.thumbnail(path, STRIP).size(), QSize(56, 42));
        const QString file = ThumbnailCache::fileFor(path);
        const QImage kept(file, "png");
        QCOMPARE(kept.size(), QSize(128, 96));
        QCOMPARE(kept.text("Thumb::URI").toLatin1(), ThumbnailCache::uriOf(path));
        QCOMPARE(kept.text("Thumb::MTime"),
                 QString::number(QFileInfo(path).lastModified().toSecsSinceEpoch()));
        QCOMPARE(QFileInfo(file).permissions() &
                     (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
                 QFile::Permissions());
        QCOMPARE(QDir(QFileInfo(file).path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void whatWasMadeIsNotMadeAgain()
    {
        const QString path = made("a.jpg", QSize(800, 600), Qt::blue);
        ThumbnailStore store;
        const QImage first = store.thumbnail(path, STRIP);
        QCOMPARE(store.thumbnail(path, STRIP), first);
        QCOMPARE(store.decoded(), 1);
        // The next start of the program finds it on the disk.
        ThumbnailStore later;
        QCOMPARE(later.thumbnail(path, STRIP), first);
        QCOMPARE(later.decoded(), 0);
    }

    void aPictureThatChangedIsDecodedAgain()
    {
        const QString path = made("a.jpg", QSize(800, 600), Qt::blue);
        ThumbnailStore store;
        QVERIFY(!store.thumbnail(path, STRIP).isNull());
        made("a.jpg", QSize(900, 600), Qt::yellow);
        QCOMPARE(store.thumbnail(path, STRIP).size(), QSize(56, 37));
        ThumbnailStore later;
        QCOMPARE(later.thumbnail(path, STRIP).size(), QSize(56, 37));
        QVERIFY(QFile::remove(path));
        QVERIFY(store.thumbnail(path, STRIP).isNull());
    }

    void whatIsNoThumbnailOfThisPictureIsNotTaken_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("a picture without an address") << QByteArray();
        QTest::newRow("text") << QByteArray("no picture");
    }

    void whatIsNoThumbnailOfThisPictureIsNotTaken()
    {
        QFETCH(QByteArray, content);
        const QString path = made("a.jpg", QSize(800, 600), Qt::blue);
        const QString file = ThumbnailCache::fileFor(path);
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        if (content.isEmpty()) {
            QVERIFY(QFile::rename(made("b.png", QSize(100, 100), Qt::yellow), file));
        } else {
            QFile bad(file);
            QVERIFY(bad.open(QIODevice::WriteOnly));
            bad.write(content);
        }
        QVERIFY(ThumbnailCache::read(path, stampOf(path)).isNull());
        ThumbnailStore store;
        QCOMPARE(store.thumbnail(path, STRIP).size(), QSize(56, 42));
    }

    void nothingIsWrittenWhereNoneIsNeeded_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("small already") << "a.png" << QSize(128, 100) << QColor(Qt::blue);
        QTest::newRow("transparent") << "b.png" << QSize(800, 600) << QColor(0, 0, 0, 90);
    }

    void nothingIsWrittenWhereNoneIsNeeded()
    {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QFETCH(QColor, colour);
        ThumbnailStore store;
        QVERIFY(!store.thumbnail(made(name, size, colour), STRIP).isNull());
        QVERIFY(!QFile::exists(ThumbnailCache::fileFor(m_folder->filePath(name))));
    }

    void theCachesOwnFilesGetNoThumbnails()
    {
        QVERIFY(QDir().mkpath(cacheFolder() + "/large"));
        QImage image(256, 256, QImage::Format_RGB32);
        image.fill(Qt::blue);
        const QString path = cacheFolder() + "/large/x.png";
        QVERIFY(image.save(path));
        ThumbnailStore store;
        QVERIFY(!store.thumbnail(path, STRIP).isNull());
        QVERIFY(!QFile::exists(ThumbnailCache::fileFor(path)));
    }

    void theSmallPictureOfACameraComesFirst()
    {
        const QString path = written("a.jpg", QSize(160, 120), 1);
        ThumbnailStore store;
        const ThumbnailStore::Thumbnail quick = store.quickThumbnail(path, STRIP);
        QVERIFY(quick.isEmbedded);
        QCOMPARE(quick.image.size(), QSize(56, 42));
        QVERIFY(isYellow(quick.image));
        QCOMPARE(store.decoded(), 0);
        QVERIFY(store.quickThumbnail(path, STRIP).isEmbedded);
        QVERIFY(!isYellow(store.thumbnail(path, STRIP)));
        // The picture itself counts from then on, also after the next start.
        QVERIFY(!store.quickThumbnail(path, STRIP).isEmbedded);
        ThumbnailStore later;
        const ThumbnailStore::Thumbnail kept = later.quickThumbnail(path, STRIP);
        QVERIFY(!kept.isEmbedded && !isYellow(kept.image));
        QCOMPARE(later.decoded(), 0);
    }

    void theSmallPictureStandsUpright()
    {
        constexpr int TURNED_RIGHT = 6;
        ThumbnailStore store;
        const ThumbnailStore::Thumbnail quick =
            store.quickThumbnail(written("a.jpg", QSize(160, 120), TURNED_RIGHT), STRIP);
        QVERIFY(quick.isEmbedded);
        QCOMPARE(quick.image.size(), QSize(37, 50));
    }

    void aSmallPictureOfAnotherShapeIsNotTaken()
    {
        ThumbnailStore store;
        const ThumbnailStore::Thumbnail made =
            store.quickThumbnail(written("a.jpg", QSize(160, 107), 1), STRIP);
        QVERIFY(!made.isEmbedded && !isYellow(made.image));
        QCOMPARE(store.decoded(), 1);
    }

    void aSharpScreensThumbnailHasItsOwnPlaceInMemory()
    {
        const QString path = made("a.jpg", QSize(800, 600), Qt::blue);
        ThumbnailStore store;
        QCOMPARE(store.thumbnail(path, STRIP).size(), QSize(56, 42));
        QCOMPARE(store.thumbnail(path, 2 * STRIP).size(), QSize(112, 84));
        QCOMPARE(store.thumbnail(path, 3 * STRIP).size(), QSize(168, 126));
    }

private:
    static QString cacheFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
               "/thumbnails";
    }

    QString made(const QString &name, QSize size, const QColor &colour) const
    {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(colour);
        if (colour.alpha() == 255)
            image = image.convertToFormat(QImage::Format_RGB32);
        if (!image.save(m_folder->filePath(name)))
            qFatal("cannot write a picture");
        return m_folder->filePath(name);
    }

    /// A blue picture with a small yellow one in it.
    QString written(const QString &name, QSize small, int orientation) const
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write a picture");
        file.write(ExifPicture::with(ExifPicture::jpeg(small, Qt::yellow),
                                     ExifPicture::jpeg(QSize(800, 600), Qt::blue), orientation));
        return file.fileName();
    }

    static bool isYellow(const QImage &image)
    {
        return qRed(image.pixel(image.rect().center())) > 200;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

REGISTER_TEST(ThumbnailStoreTest)
#include "tst_thumbnail_store.moc"
