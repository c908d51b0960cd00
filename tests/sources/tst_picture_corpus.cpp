#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "sources/photographs/PictureReader.h"
#include "sources/pictures/PictureMemory.h"
#include "tests/CorpusResults.h"
#include "tests/ProcessMemory.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QColorSpace>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>

namespace
{

class Receiver : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override { shown = image; }
    void imageCaptured(void *, int, int, bool, bool) override {}
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}

    QImage shown;
};

/// How far two colours of pictures of the same size are apart, at the most and on average.
struct Difference {
    int most = 0;
    double mean = 0;
};

Difference difference(const QImage &one, const QImage &other)
{
    Difference result;
    qint64 sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        const uchar *left = one.constScanLine(y);
        const uchar *right = other.constScanLine(y);
        for (int i = 0; i < one.width() * 3; ++i) {
            const int apart = std::abs(left[i] - right[i]);
            result.most = std::max(result.most, apart);
            sum += apart;
        }
    }
    result.mean = double(sum) / double(qint64(one.width()) * one.height() * 3);
    return result;
}

bool wantsAll()
{
    return qEnvironmentVariableIsSet("PICTURE_CORPUS_ALL");
}

} // namespace

/// Pictures of every kind beside what ImageMagick makes of them, damaged ones, and what is none.
/// With PICTURE_CORPUS_ALL in the environment they are larger and more, and the longest time that
/// the caller was held and the most memory are told.
class PictureCorpusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aPictureIsAsImageMagickReadsIt_data();
    void aPictureIsAsImageMagickReadsIt();
    void aDamagedPictureIsShownOrToldOf();
    void whatIsNoPictureIsToldOf();
    void afterEveryDamagedPictureTheNextOneIsShown();
    void largePicturesStayWithinTheMemory();

private:
    [[nodiscard]] QDir in(const char *part) const { return QDir(m_folder.filePath(part)); }

    QTemporaryDir m_folder;
};

void PictureCorpusTest::initTestCase()
{
    const auto writeProfile = [this](const char *name, QColorSpace::NamedColorSpace space) {
        QFile file(m_folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QColorSpace(space).iccProfile());
    };
    writeProfile("srgb.icc", QColorSpace::SRgb);
    writeProfile("p3.icc", QColorSpace::DisplayP3);
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments{m_folder.path()};
    if (wantsAll())
        arguments << "all";
    script.start(TEST_SOURCE_DIR "/make-picture-corpus", arguments);
    QVERIFY(script.waitForFinished(-1));
    QCOMPARE(script.exitCode(), 0);
}

void PictureCorpusTest::aPictureIsAsImageMagickReadsIt_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : in("good").entryList(QDir::Files))
        QTest::newRow(qPrintable(name)) << name;
}

void PictureCorpusTest::aPictureIsAsImageMagickReadsIt()
{
    QFETCH(QString, name);
    const PictureReader::Reading reading = PictureReader::readFile(in("good").filePath(name));
    QVERIFY(reading.problem == PictureProblem::None);
    const QImage expected =
        QImage(in("expected").filePath(name + ".png")).convertToFormat(QImage::Format_RGB888);
    QVERIFY(!expected.isNull());
    QCOMPARE(reading.picture.size(), expected.size());
    // So that the canvas need not copy it.
    QVERIFY(PictureMemory::holds(reading.picture));
    const Difference apart = difference(reading.picture, expected);
    // Two ways of rounding; those of a profile and of printers' colours have more steps.
    const bool hasSteps = name.startsWith("p3") || name.startsWith("cmyk");
    const bool isSame = apart.most <= (hasSteps ? 6 : 2) && apart.mean <= (hasSteps ? 2.0 : 0.6);
    CorpusResults::add({"picture", "good", QFileInfo(name).suffix(), QFileInfo(name).baseName(),
                        QString::number(apart.most), isSame ? "right" : "differs", name});
    QVERIFY2(isSame,
             qPrintable(QString("%1 at the most, %2 on average").arg(apart.most).arg(apart.mean)));
}

void PictureCorpusTest::aDamagedPictureIsShownOrToldOf()
{
    const QStringList names = in("damaged").entryList(QDir::Files);
    QVERIFY(names.size() >= 4 * in("good").entryList(QDir::Files).size());
    int shown = 0;
    for (const QString &name : names) {
        const PictureReader::Reading reading =
            PictureReader::readFile(in("damaged").filePath(name));
        QVERIFY2(reading.picture.isNull() == (reading.problem != PictureProblem::None),
                 qPrintable(name));
        if (reading.picture.isNull())
            QVERIFY2(reading.problem == PictureProblem::Damaged, qPrintable(name));
        else
            QCOMPARE(reading.picture.format(), QImage::Format_RGB888);
        CorpusResults::add({"picture",
                            "damaged",
                            QFileInfo(name).suffix(),
                            QFileInfo(name).baseName().section('-', -1),
                            {},
                            reading.picture.isNull() ? "said: damaged" : "what is left",
                            name});
        shown += reading.picture.isNull() ? 0 : 1;
    }
    // Nine tenths of a file have a picture in them, but for those of a single row.
    QStringList nearlyWhole;
    QStringList empty;
    for (const QFileInfo &file : in("damaged").entryInfoList({"*-90.*"}, QDir::Files)) {
        nearlyWhole << file.fileName();
        if (PictureReader::read(file.filePath()).isNull())
            empty << file.fileName();
    }
    QVERIFY(nearlyWhole.size() >= 10);
    QVERIFY2(empty.size() * 10 < nearlyWhole.size(), qPrintable(empty.join(' ')));
    QVERIFY(shown < names.size());
}

void PictureCorpusTest::whatIsNoPictureIsToldOf()
{
    const QStringList names =
        in("none").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    QCOMPARE(names.size(), 5 * 8);
    for (const QString &name : names) {
        const PictureReader::Reading reading = PictureReader::readFile(in("none").filePath(name));
        const PictureProblem expected =
            name.startsWith("broken") ? PictureProblem::Gone
            : name.startsWith("empty") || name.startsWith("text") || name.startsWith("random")
                ? PictureProblem::Damaged
                : PictureProblem::Unreadable;
        QVERIFY2(reading.picture.isNull() && reading.problem == expected, qPrintable(name));
        const char *said = expected == PictureProblem::Gone      ? "said: gone"
                           : expected == PictureProblem::Damaged ? "said: damaged"
                                                                 : "said: unreadable";
        CorpusResults::add({"picture",
                            "none",
                            QFileInfo(name).suffix(),
                            QFileInfo(name).baseName(),
                            {},
                            said,
                            name});
    }
}

void PictureCorpusTest::afterEveryDamagedPictureTheNextOneIsShown()
{
    // All of them in one folder, in which a good one follows each.
    const QDir folder = in("mixed");
    QVERIFY(QDir(m_folder.path()).mkdir("mixed"));
    const QString good = in("good").filePath("p24.png");
    int count = 0;
    for (const char *part : {"damaged", "none"}) {
        for (const QFileInfo &file :
             in(part).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
            const QString number = QString("%1").arg(count++, 5, 10, QChar('0'));
            QVERIFY(QFile::link(file.absoluteFilePath(),
                                folder.filePath(number + "-bad." + file.suffix())));
            QVERIFY(QFile::link(good, folder.filePath(number + "-good.png")));
        }
    }
    Receiver receiver;
    PhotographSource source(&receiver, nullptr);
    QVERIFY(source.setDirectory(folder, "00000-good.png"));
    const QStringList paths = source.fileNameList();
    // Folders, pipes and links that lead nowhere are not listed.
    QCOMPARE(paths.size(), 2 * count - 5 * 5);
    qint64 longestMs = 0;
    for (int id = 0; id < paths.size(); ++id) {
        QElapsedTimer timer;
        timer.start();
        source.selectPhotograph(id);
        longestMs = std::max(longestMs, timer.elapsed());
        QCOMPARE(source.current(), id);
        const bool isBad = paths.at(id).contains("-bad.");
        QVERIFY2(receiver.shown.isNull() == (source.problem() != PictureProblem::None),
                 qPrintable(paths.at(id)));
        QVERIFY2(isBad || receiver.shown.size() == QImage(good).size(), qPrintable(paths.at(id)));
    }
    if (wantsAll())
        qInfo("a step took %lld ms at the most", longestMs);
}

void PictureCorpusTest::largePicturesStayWithinTheMemory()
{
    if (!wantsAll())
        return;
    for (const QString &name : in("large").entryList(QDir::Files)) {
        QElapsedTimer timer;
        timer.start();
        const PictureReader::Reading reading = PictureReader::readFile(in("large").filePath(name));
        qInfo("%s: %d x %d in %lld ms; the process had %lld MB at the most", qPrintable(name),
              reading.picture.width(), reading.picture.height(), timer.elapsed(),
              largestMegabytes());
        QVERIFY2(!reading.picture.isNull(), qPrintable(name));
    }
    constexpr qint64 MOST_MEGABYTES = 700;
    QVERIFY(largestMegabytes() < MOST_MEGABYTES);
}

REGISTER_TEST(PictureCorpusTest)
#include "tst_picture_corpus.moc"
