#include "sources/photographs/PhotographList.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTemporaryDir>

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
