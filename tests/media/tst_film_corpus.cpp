#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"

#include <QtTest>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

/// Of 255 on average: what rounding, and where a colour is put between two pixels, may cost. The
/// next picture differs by eight at least.
constexpr double SAME_PICTURE = 3;

/// Of 255, on average; 255 for pictures of different sizes.
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size() || one.isNull())
        return 255;
    const QImage left = one.convertToFormat(QImage::Format_RGB888);
    const QImage right = other.convertToFormat(QImage::Format_RGB888);
    qint64 sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int i = 0; i < left.width() * 3; ++i)
            sum += std::abs(left.constScanLine(y)[i] - right.constScanLine(y)[i]);
    }
    return static_cast<double>(sum) / (3.0 * left.width() * left.height());
}

} // namespace

/// Films of many kinds beside what ffmpeg decodes of them: the first picture, and the one on show
/// after a seek to one second. FILM_CORPUS=all in the environment brings ten times as many, and
/// names of films just those.
class FilmCorpusTest : public QObject
{
    Q_OBJECT

    struct Show {
        explicit Show(const QString &path)
        {
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

    void aFilmIsAsFfmpegDecodesIt_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList files = QDir(m_folder.path()).entryList(QDir::Files, QDir::Name);
        for (const QString &name : files) {
            if (!name.endsWith(".png"))
                QTest::newRow(qPrintable(name)) << m_folder.filePath(name);
        }
    }

    void aFilmIsAsFfmpegDecodesIt()
    {
        QFETCH(QString, path);
        Show show(path);
        const QString beginning = path + ".first.png";
        if (!QFile::exists(beginning)) {
            // No decoder of the media library's takes it, and that is said.
            const QVector<FilmFault> told{FilmFault::DecoderMissing};
            QTRY_VERIFY_WITH_TIMEOUT(show.faults == told, TIMEOUT_MS);
            return;
        }
        const double first = shownDifference(show, beginning);
        QVERIFY2(first <= SAME_PICTURE, qPrintable(QString("first: %1").arg(first)));
        show.source.setPosition(50);
        const double middle = shownDifference(show, path + ".middle.png");
        QVERIFY2(middle <= SAME_PICTURE, qPrintable(QString("middle: %1").arg(middle)));
        QCOMPARE(show.faults.size(), 0);
    }
};

REGISTER_CORE_TEST(FilmCorpusTest)
#include "tst_film_corpus.moc"
