#include "sources/FilmSource.h"
#include "tests/CorpusResults.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <numeric>

namespace
{

/// Of 255 on average: what rounding, and where a colour is put between two pixels, may cost. The
/// next picture differs by eight at least.
constexpr double SAME_PICTURE = 3;
/// Of the areas beside mpv's.
constexpr int SAME_COLOURS = 2;

/// How far each channel of two pictures of the same size is apart, from `top` of the height on.
QVector<int> differences(const QImage &one, const QImage &other, double top = 0)
{
    const QImage left = one.convertToFormat(QImage::Format_RGB888);
    const QImage right = other.convertToFormat(QImage::Format_RGB888);
    QVector<int> apart;
    for (int y = static_cast<int>(left.height() * top); y < left.height(); ++y) {
        for (int i = 0; i < left.width() * 3; ++i)
            apart.append(std::abs(left.constScanLine(y)[i] - right.constScanLine(y)[i]));
    }
    return apart;
}

/// Of 255, on average; 255 for pictures of different sizes.
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size() || one.isNull())
        return 255;
    const QVector<int> apart = differences(one, other);
    return std::accumulate(apart.begin(), apart.end(), 0.0) / apart.size();
}

/// Of 255, of the areas: not of the edges between them, which each program smooths in its own way.
int areasApart(const QImage &one, const QImage &other, double top)
{
    if (one.size() != other.size() || one.isNull())
        return 255;
    QVector<int> apart = differences(one, other, top);
    const auto middle = apart.begin() + apart.size() / 2;
    std::nth_element(apart.begin(), middle, apart.end());
    return *middle;
}

/// What the script tells of a film.
struct Facts {
    explicit Facts(const QString &path)
    {
        QFile file(path + ".json");
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QJsonObject told = QJsonDocument::fromJson(file.readAll()).object();
        kind = told.value("kind").toString();
        about = told.value("about").toString();
        sound = told.value("sound").toString();
        mpvShows = told.value("mpv").toString();
        hasDecoder = told.value("decoder").toBool();
        for (const QJsonValue number : told.value("numbers").toArray())
            numbers.append(number.toInt());
        isShown = QFile::exists(path + ".first.png");
    }
    QString kind, about, sound;
    /// Which picture there is of mpv's, "first" or "middle".
    QString mpvShows;
    bool hasDecoder = true;
    /// Of the pictures that ffmpeg decodes; none where pictures cannot be told from each other.
    QVector<int> numbers;
    /// ffmpeg decodes a picture of it.
    bool isShown = false;
};

} // namespace

/// Films of many kinds beside what ffmpeg and mpv make of them: the first picture, the one on show
/// after a seek to the middle, and the last one when it has played from there. FILM_CORPUS=all in
/// the environment brings ten times as many, and names of films just those.
class FilmCorpusTest : public QObject
{
    Q_OBJECT

    struct Show {
        Show(const QString &path, const Facts &facts)
        {
            if (!facts.numbers.isEmpty())
                sink.readNumber = TestFilm::numberIn;
            QObject::connect(&source, &FilmSource::faulty, &source,
                             [this](FilmFault fault) { faults.append(fault); });
            source.setFile(path);
            source.pause();
        }
        RecordingSink sink;
        QVector<FilmFault> faults;
        FilmSource source{&sink, nullptr};
    };

    QTemporaryDir m_folder;
    /// What came of the film, in words; empty while that is not known.
    QString m_result;
    QString m_name;

    /// Of what is shown once it is as expected, or when a fault is told or the time is up.
    static double shownDifference(const Show &show, const QString &expected)
    {
        const QImage picture(expected);
        double apart = 255;
        const auto done = [&] {
            apart = difference(show.sink.last(), picture);
            return apart <= SAME_PICTURE || !show.faults.isEmpty();
        };
        (void)QTest::qWaitFor(done, TIMEOUT_MS);
        return apart;
    }

    /// Plays to the end; whether the last picture is the film's, or one before a film breaks off.
    static bool playsToTheEnd(Show &show, const Facts &facts)
    {
        show.source.play();
        const auto ended = [&] { return show.sink.refreshing() || !show.faults.isEmpty(); };
        if (!QTest::qWaitFor(ended, TIMEOUT_MS))
            return false;
        const int last = show.sink.lastNumber();
        return facts.kind == "cut" ? facts.numbers.contains(last) : last == facts.numbers.last();
    }

    void lookAt(const QString &path, const Facts &facts);
    void compareWithMpv(const Show &show, const QString &picture, const Facts &facts);

private slots:
    void initTestCase()
    {
        QProcess script;
        script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const QStringList films =
            qEnvironmentVariable("FILM_CORPUS").split(' ', Qt::SkipEmptyParts);
        script.start(TEST_SOURCE_DIR "/make-film-corpus", QStringList{m_folder.path()} + films);
        QVERIFY(script.waitForFinished(-1));
        QCOMPARE(script.exitCode(), 0);
    }

    void aFilmIsAsOthersShowIt_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList files = QDir(m_folder.path()).entryList(QDir::Files, QDir::Name);
        for (const QString &name : files) {
            if (!name.endsWith(".png") && !name.endsWith(".json"))
                QTest::newRow(qPrintable(name)) << m_folder.filePath(name);
        }
    }

    void aFilmIsAsOthersShowIt()
    {
        QFETCH(QString, path);
        const Facts facts(path);
        QVERIFY(!facts.kind.isEmpty());
        m_name = QFileInfo(path).fileName();
        m_result.clear();
        lookAt(path, facts);
        CorpusResults::add({"film", facts.kind, QFileInfo(path).suffix(), facts.about, facts.sound,
                            QTest::currentTestFailed() ? "differs" : m_result, m_name});
    }
};

void FilmCorpusTest::lookAt(const QString &path, const Facts &facts)
{
    Show show(path, facts);
    if (!facts.hasDecoder || !facts.isShown) {
        // Nobody decodes it, or this media library does not, and that is said.
        QTRY_VERIFY_WITH_TIMEOUT(!show.faults.isEmpty(), TIMEOUT_MS);
        const FilmFault fault = show.faults.first();
        QVERIFY(facts.hasDecoder ? fault == FilmFault::NoFilm || fault == FilmFault::NoPicture
                                 : fault == FilmFault::DecoderMissing);
        m_result = fault == FilmFault::NoFilm      ? "said: no film"
                   : fault == FilmFault::NoPicture ? "said: sound alone, which plays"
                                                   : "said: no decoder";
        return;
    }
    const double first = shownDifference(show, path + ".first.png");
    QVERIFY2(first <= SAME_PICTURE, qPrintable(QString("first: %1").arg(first)));
    if (facts.mpvShows == "first")
        compareWithMpv(show, path + ".mpv.png", facts);
    const int before = show.sink.count();
    show.source.setPosition(50);
    if (facts.kind == "cut") {
        // Where the middle is depends on what is left of the container's times.
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.count() > before || !show.faults.isEmpty(), TIMEOUT_MS);
        QVERIFY2(facts.numbers.contains(show.sink.lastNumber()), "middle");
        show.source.setPosition(0);
        const double again = shownDifference(show, path + ".first.png");
        QVERIFY2(again <= SAME_PICTURE, qPrintable(QString("first again: %1").arg(again)));
    } else {
        const double middle = shownDifference(show, path + ".middle.png");
        QVERIFY2(middle <= SAME_PICTURE, qPrintable(QString("middle: %1").arg(middle)));
        if (facts.mpvShows == "middle")
            compareWithMpv(show, path + ".mpv.png", facts);
        QCOMPARE(show.faults.size(), 0);
    }
    if (QTest::currentTestFailed())
        return;
    if (!facts.numbers.isEmpty())
        QVERIFY2(playsToTheEnd(show, facts), qPrintable(QString::number(show.sink.lastNumber())));
    m_result = facts.kind == "cut" ? "plays to the cut" : "right";
}

/// After an exact seek mpv may show the picture that begins next; its coloured areas are those of
/// any.
void FilmCorpusTest::compareWithMpv(const Show &show, const QString &picture, const Facts &facts)
{
    if (!QFile::exists(picture))
        return;
    const QImage theirs(picture);
    const int apart = areasApart(show.sink.last(), theirs, facts.mpvShows == "first" ? 0 : 2.0 / 3);
    QVERIFY2(apart <= SAME_COLOURS, qPrintable(QString("mpv: %1").arg(apart)));
    if (facts.mpvShows == "first")
        return;
    const int ours = facts.numbers.indexOf(TestFilm::numberIn(show.sink.last()));
    const int next = facts.numbers.indexOf(TestFilm::numberIn(theirs)) - ours;
    QVERIFY2(next == 0 || next == 1, qPrintable(QString("mpv: %1 pictures later").arg(next)));
}

REGISTER_CORE_TEST(FilmCorpusTest)
#include "tst_film_corpus.moc"
