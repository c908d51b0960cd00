#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QTemporaryDir>

/// Films without an index and without a beginning of their own: streams, as broadcasts and discs
/// have them.
class FilmStreamsTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    void aSeekInAProgramStreamShowsItsPicture()
    {
        constexpr int TIMEOUT_MS = 30000;
        TestFilm made;
        made.rate = 25;
        made.seconds = 10;
        made.sound.clear(); // it would move the pictures by a fraction
        made.video = QStringList{"-c:v", "mpeg2video", "-q:v", "3", "-g", "40", "-bf", "2"};
        const QString path = m_folder.filePath("stream.mpg");
        QVERIFY(made.write(path));
        RecordingSink sink;
        sink.readNumber = TestFilm::numberIn;
        FilmSource source(&sink, nullptr);
        source.setFile(path);
        source.pause();
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), 0, TIMEOUT_MS);
        for (const int percent : {72, 12, 52, 92, 0, 32}) {
            source.setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), percent / 10 * 25, TIMEOUT_MS);
        }
    }
};

REGISTER_CORE_TEST(FilmStreamsTest)
#include "tst_film_streams.moc"
