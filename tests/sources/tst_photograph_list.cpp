#include "sources/photographs/FileNames.h"
#include "sources/photographs/PhotographList.h"
#include "sources/photographs/PictureFile.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTemporaryDir>

#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

void touch(const QDir &dir, const QString &name)
{
    QFile file(dir.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

class PhotographListTest : public QObject
{
    Q_OBJECT

private slots:
    void listsTheFiveSuffixesByNameUpperCaseFirst()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        for (const char *name : {"b.jpg", "A.png", "a.gif", "c.bmp", "d.jpeg", "e.txt", "f.tiff"})
            touch(dir, name);
        QCOMPARE(PhotographList::list(dir),
                 QStringList({"A.png", "a.gif", "b.jpg", "c.bmp", "d.jpeg"}));
    }

    void aSuffixInUpperCaseIsNotListed()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        touch(dir, "a.PNG");
        QVERIFY(PhotographList::list(dir).isEmpty());
    }

    void foldersAndVanishedFoldersGiveNothing()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        QVERIFY(dir.mkdir("holiday.jpg"));
        QVERIFY(PhotographList::list(dir).isEmpty());
        QVERIFY(PhotographList::list(QDir(folder.path() + "/gone")).isEmpty());
    }

    void namesInAnyScriptAreListed()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        const QStringList names{QString::fromUtf8("Übung 1.jpg"), QString::fromUtf8("照片.jpg"),
                                QString::fromUtf8("фото.png")};
        for (const QString &name : names)
            touch(dir, name);
        QStringList found = PhotographList::list(dir);
        found.sort();
        QStringList expected = names;
        expected.sort();
        QCOMPARE(found, expected);
    }

    void linksCountAsWhatTheyLeadTo_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("listed");
        QTest::newRow("a file") << "file" << true;
        QTest::newRow("a file over another link") << "link" << true;
        QTest::newRow("a pipe") << "pipe" << false;
        QTest::newRow("a folder") << "folder" << false;
        QTest::newRow("a device") << "/dev/zero" << false;
        QTest::newRow("nothing") << "nothing" << false;
        QTest::newRow("itself") << "a.jpg" << false;
    }

    void linksCountAsWhatTheyLeadTo()
    {
        QFETCH(QString, target);
        QFETCH(bool, listed);
        QTemporaryDir folder;
        const QDir dir(folder.path());
        touch(dir, "file");
        QVERIFY(dir.mkdir("folder"));
        QCOMPARE(mkfifo(QFile::encodeName(dir.filePath("pipe")).constData(), 0600), 0);
        QVERIFY(QFile::link("file", dir.filePath("link")));
        QVERIFY(QFile::link(target, dir.filePath("a.jpg")));
        QCOMPARE(PhotographList::list(dir).size(), listed ? 1 : 0);
    }

    void pipesAndHiddenFilesAreNotListed()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        QCOMPARE(mkfifo(QFile::encodeName(dir.filePath("a.jpg")).constData(), 0600), 0);
        touch(dir, ".b.jpg");
        touch(dir, ".jpg");
        QVERIFY(PhotographList::list(dir).isEmpty());
    }

    void namesThatAreNoTextAreListedAndFound_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("Latin-1") << QByteArray("caf\xe9.jpg");
        QTest::newRow("a sequence cut off") << QByteArray("\xe7\x85.jpg");
        QTest::newRow("text and no text") << QByteArray("\xe7\x85\xa7\xff.jpg");
        QTest::newRow("what encodes an escape") << QByteArray("\xed\xb2\x80.jpg");
        QTest::newRow("outside the first plane") << QByteArray("\xf0\x9f\x93\xb7\xfe.jpg");
    }

    void namesThatAreNoTextAreListedAndFound()
    {
        QFETCH(QByteArray, name);
        QTemporaryDir folder;
        const QByteArray path = QFile::encodeName(folder.path()) + "/" + name;
        std::ofstream(path.constData()) << "content";
        // The folder's own clearing up does not find such names.
        const auto removal = qScopeGuard([&path] { ::unlink(path.constData()); });
        const QStringList names = PhotographList::list(QDir(folder.path()));
        QCOMPARE(names.size(), 1);
        QCOMPARE(FileNames::encode(names[0]), name);
        PictureFile file(QDir(folder.path()).filePath(names[0]));
        QCOMPARE(file.content({}), QByteArray("content"));
        QVERIFY(FileNames::readable(names[0]).contains(QChar(QChar::ReplacementCharacter)));
    }

    void namesThatAreTextStayAsTheToolkitHasThem()
    {
        for (const QString &name : {QString::fromUtf8("Übung 照片 📷.jpg"), QString("a.png")}) {
            QCOMPARE(FileNames::decode(QFile::encodeName(name)), name);
            QCOMPARE(FileNames::encode(name), QFile::encodeName(name));
            QCOMPARE(FileNames::readable(name), name);
        }
    }

    void mergedListsKeepWhatIsGone()
    {
        QCOMPARE(PhotographList::merged({"a.jpg", "c.jpg"}, {"B.jpg", "a.jpg", "d.jpg"}),
                 QStringList({"B.jpg", "a.jpg", "c.jpg", "d.jpg"}));
        QCOMPARE(PhotographList::merged({"a.jpg"}, {}), QStringList({"a.jpg"}));
    }

    void stepsStopAtBothEnds()
    {
        QCOMPARE(PhotographList::previousIndex(2), 1);
        QCOMPARE(PhotographList::previousIndex(0), 0);
        QCOMPARE(PhotographList::nextIndex(1, 3), 2);
        QCOMPARE(PhotographList::nextIndex(2, 3), 2);
        QCOMPARE(PhotographList::nextIndex(0, 0), -1);
    }

    void theSlideshowWraps()
    {
        QCOMPARE(PhotographList::wrappedIndex(1, 3), 2);
        QCOMPARE(PhotographList::wrappedIndex(2, 3), 0);
        QCOMPARE(PhotographList::wrappedIndex(0, 1), 0);
        QCOMPARE(PhotographList::wrappedIndex(0, 0), -1);
    }
};

REGISTER_CORE_TEST(PhotographListTest)
#include "tst_photograph_list.moc"
