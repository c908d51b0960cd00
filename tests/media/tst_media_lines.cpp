#include "diagnostics/TerminalLines.h"
#include "sources/FilmSource.h"
#include "sources/recording/MovieWriter.h"
#include "sources/recording/SoundCapture.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/SoundServer.h"
#include "tests/media/TestFilm.h"

#include <QFile>
#include <QMutex>
#include <QTemporaryDir>

using TerminalLines::Line;

namespace
{

QMutex saidMutex;
QStringList said;
QtMessageHandler previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    {
        const QMutexLocker lock(&saidMutex);
        said.append(message);
    }
    previous(type, context, message);
}

int count(const QString &line)
{
    const QMutexLocker lock(&saidMutex);
    return said.count(line);
}

} // namespace

/// What the terminal is told of films and movies, by the real media library.
class MediaLinesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { previous = qInstallMessageHandler(collect); }
    void cleanup() { qInstallMessageHandler(previous); }

    void aFilmThatCannotBePlayedIsNamed()
    {
        RecordingSink sink;
        FilmSource source(&sink, nullptr);
        const QString garbage = m_folder.filePath("garbage.mp4");
        QFile file(garbage);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) == 5000);
        file.close();
        source.setFile(garbage);
        QTRY_COMPARE_WITH_TIMEOUT(count(TerminalLines::text(Line::NotAFilm, {garbage})), 1,
                                  TIMEOUT_MS);

        source.setFile(m_folder.path());
        QTRY_COMPARE_WITH_TIMEOUT(
            count(TerminalLines::text(Line::FilmUnreadable, {m_folder.path()})), 1, TIMEOUT_MS);
        // Once is enough for one file.
        source.setFile(garbage);
        source.setFile(m_folder.path());
        QCOMPARE(count(TerminalLines::text(Line::NotAFilm, {garbage})), 1);
    }

    void theMissingDecoderIsNamed()
    {
        const QString path = m_folder.filePath("codec.mp4");
        TestFilm made;
        made.seconds = 1;
        made.sound.clear();
        QVERIFY(made.write(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray content = file.readAll().replace("avc1", "zzzz");
        QVERIFY(file.seek(0) && file.write(content) == content.size());
        file.close();
        RecordingSink sink;
        FilmSource source(&sink, nullptr);
        source.setFile(path);
        const QString line =
            TerminalLines::text(Line::DecoderMissing, {path, "zzzz decoder"}).toLower();
        const auto told = [&line] {
            const QMutexLocker lock(&saidMutex);
            for (const QString &message : said) {
                // The library's own word for it, which holds the code of the film.
                if (message.startsWith(line.left(30), Qt::CaseInsensitive) &&
                    message.contains("gstreamer1.0-libav") && message.contains("zzzz"))
                    return true;
            }
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(told(), TIMEOUT_MS);
    }

    void aMissingEncoderIsTold()
    {
        const auto writer =
            MovieWriter::create({m_folder.filePath("movie.mov"), {320, 240}, {"noSuchEncoder"}},
                                [](const QString &) {});
        QTRY_COMPARE_WITH_TIMEOUT(count(TerminalLines::text(Line::NoMovieEncoder)), 1, TIMEOUT_MS);
    }

    void aMissingSoundServerIsTold()
    {
        SoundServer server(m_folder.path());
        server.pretendAbsent();
        const auto capture = SoundCapture::create(MicrophoneId{0x04FC, 0x6330});
        capture->start([](const SoundBuffer &) {});
        QTRY_COMPARE_WITH_TIMEOUT(count(TerminalLines::text(Line::NoSoundServer)), 1, TIMEOUT_MS);
        capture->stop();
    }

private:
    QTemporaryDir m_folder;
};

REGISTER_TEST(MediaLinesTest)
#include "tst_media_lines.moc"
