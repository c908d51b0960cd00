#include "tests/TestProgram.h"
#include "tests/media/MovieAtoms.h"

#include "sources/recording/MovieDisk.h"
#include "sources/recording/QuickTimeFile.h"

#include <QtTest>

#include <QRandomGenerator>

#include <cstring>
#include <functional>

namespace
{

constexpr int SECTOR = 512;

/// One call of the disk.
struct Operation {
    enum Kind { Write, Resize, Sync } kind;
    qint64 offset = 0;
    QByteArray bytes = {};
};

void apply(QByteArray &file, const Operation &operation)
{
    const auto offset = static_cast<int>(operation.offset);
    if (operation.kind == Operation::Resize && offset < file.size()) {
        file.truncate(offset);
    } else if (operation.kind == Operation::Resize) {
        file.append(QByteArray(offset - file.size(), '\0'));
    } else if (operation.kind == Operation::Write) {
        const int end = offset + operation.bytes.size();
        if (end > file.size())
            file.append(QByteArray(end - file.size(), '\0'));
        std::memcpy(file.data() + offset, operation.bytes.constData(),
                    static_cast<size_t>(operation.bytes.size()));
    }
}

/// Notes what is done to it; fails from the operation of that number on.
class NotedDisk : public MovieDisk
{
public:
    QVector<Operation> operations;
    int failsFrom = -1;
    /// Fails half way through a write.
    bool tears = false;

    bool write(qint64 offset, const QByteArray &bytes) override
    {
        if (fails()) {
            if (tears)
                operations.append({Operation::Write, offset, bytes.left(bytes.size() / 2)});
            return false;
        }
        return note({Operation::Write, offset, bytes});
    }
    bool resize(qint64 size) override { return !fails() && note({Operation::Resize, size}); }
    bool sync() override { return !fails() && note({Operation::Sync}); }

    QByteArray file() const
    {
        QByteArray file;
        for (const Operation &operation : operations)
            apply(file, operation);
        return file;
    }

private:
    bool fails() const { return failsFrom >= 0 && operations.size() >= failsFrom; }
    bool note(const Operation &operation)
    {
        operations.append(operation);
        return true;
    }
};

/// Only counts.
class CountedDisk : public MovieDisk
{
public:
    qint64 written = 0;
    qint64 size = 0;

    bool write(qint64 offset, const QByteArray &bytes) override
    {
        written += bytes.size();
        size = std::max(size, offset + bytes.size());
        return true;
    }
    bool resize(qint64 newSize) override
    {
        size = newSize;
        return true;
    }
    bool sync() override { return true; }
};

/// The bytes of a sample tell which it is.
QByteArray sampleOf(int track, int number, int bytes)
{
    QByteArray sample(bytes, static_cast<char>(number * 7 + track));
    sample.replace(0, 4, QByteArray::number(1000 + number % 9000));
    return sample;
}

/// A recording of 30 pictures and 43 packets of sound a second, half a second at a time.
class Recording
{
public:
    explicit Recording(MovieDisk &disk, int pictureBytes)
        : file(disk)
        , m_pictureBytes(pictureBytes)
    {
        file.addTrack({MovieTrack::Kind::Pictures, 90000, QByteArray(100, 'v'), 3000, 640, 360});
        file.addTrack({MovieTrack::Kind::Sound, 44100, QByteArray(100, 'a'), 1024});
    }

    bool append()
    {
        const QVector<QuickTimeFile::Chunk> chunks{chunk(0, 15, m_pictureBytes), chunk(1, 21, 200)};
        return file.append(chunks);
    }
    int bytesOf(int track, int number) const
    {
        return (track == 0 ? m_pictureBytes : 200) + number % 11;
    }

    QuickTimeFile file;
    int samples[2] = {0, 0};

private:
    QuickTimeFile::Chunk chunk(int track, int count, int)
    {
        QuickTimeFile::Chunk chunk{track, {}, {}};
        for (int n = 0; n < count; ++n) {
            const int number = samples[track]++;
            // Pictures come a little early or late, as those of a camera do.
            const qint64 time = track == 0 ? number * 3000 + number % 5 : number * 1024;
            const QByteArray bytes = sampleOf(track, number, bytesOf(track, number));
            chunk.samples.append(
                {time, static_cast<std::uint32_t>(bytes.size()), number % 30 == 0});
            chunk.bytes += bytes;
        }
        return chunk;
    }

    const int m_pictureBytes;
};

/// What is wrong with the movie, which must hold at least `least` pictures, all of them whole.
QString complaint(const QByteArray &bytes, const Recording &recording, int least)
{
    const MovieAtoms movie(bytes);
    if (!movie.error().isEmpty())
        return movie.error();
    for (int track = 0; track < movie.tracks().size(); ++track) {
        const QVector<MovieAtoms::Sample> &samples = movie.tracks()[track];
        for (int number = 0; number < samples.size(); ++number) {
            const QByteArray expected = sampleOf(track, number, recording.bytesOf(track, number));
            if (samples[number].bytes != expected.size() ||
                std::memcmp(bytes.constData() + samples[number].offset, expected.constData(),
                            static_cast<size_t>(expected.size())) != 0)
                return QString("sample %1 of track %2 is damaged").arg(number).arg(track);
        }
    }
    if (movie.tracks().isEmpty() || movie.tracks().constFirst().size() < least)
        return QString("fewer than %1 pictures").arg(least);
    return {};
}

/// What the disk may hold when the power fails: any sectors of what it was not waited for.
QByteArray afterPowerCut(QByteArray file, const QVector<Operation> &pending)
{
    QRandomGenerator &random = *QRandomGenerator::global();
    for (const Operation &operation : pending) {
        if (operation.kind == Operation::Resize) {
            if (random.bounded(2))
                apply(file, operation);
            continue;
        }
        for (int at = 0; at < operation.bytes.size();) {
            const int left = SECTOR - static_cast<int>((operation.offset + at) % SECTOR);
            if (random.bounded(2))
                apply(file,
                      {Operation::Write, operation.offset + at, operation.bytes.mid(at, left)});
            at += left;
        }
    }
    return file;
}

} // namespace

class QuickTimeFileTest : public QObject
{
    Q_OBJECT

private slots:
    void aFinishedMovieHoldsItsSamplesAndTheirIndexAlone()
    {
        NotedDisk disk;
        Recording recording(disk, 3000);
        for (int n = 0; n < 40; ++n)
            QVERIFY(recording.append());
        QVERIFY(recording.file.finish());
        const QByteArray file = disk.file();
        QCOMPARE(complaint(file, recording, 600), QString());
        QCOMPARE(MovieAtoms(file).tracks()[1].size(), 840);
        QVERIFY2(MovieAtoms(file).spareBytes() < 100,
                 qPrintable(QString::number(MovieAtoms(file).spareBytes())));
    }

    void afterEveryOperationTheFileIsAMovie_data()
    {
        QTest::addColumn<int>("pictureBytes");
        QTest::newRow("the samples come near the index often") << 9000;
        QTest::newRow("the index is full") << 100;
    }

    /// A kill leaves what has been written up to then, a power cut any part of what the disk was
    /// not waited for; what had been appended before is whole in both.
    void afterEveryOperationTheFileIsAMovie()
    {
        QFETCH(int, pictureBytes);
        NotedDisk disk;
        Recording recording(disk, pictureBytes);
        QVector<QPair<int, int>> appended; // operations so far, pictures so far
        for (int n = 0; n < (pictureBytes > 1000 ? 24 : 140); ++n) {
            QVERIFY(recording.append());
            appended.append({disk.operations.size(), recording.samples[0]});
        }
        QVERIFY(recording.file.finish());

        QByteArray durable;
        QByteArray killed;
        QVector<Operation> pending;
        int state = 0;
        for (int n = 0; n < disk.operations.size(); ++n) {
            const Operation &operation = disk.operations[n];
            apply(killed, operation);
            pending.append(operation);
            if (operation.kind == Operation::Sync) {
                durable = killed;
                pending.clear();
            }
            while (state + 1 < appended.size() && appended[state + 1].first <= n + 1)
                ++state;
            if (n + 1 < appended[0].first)
                continue; // nothing has been recorded yet
            const int pictures = appended[state].second;
            QCOMPARE(complaint(killed, recording, pictures), QString());
            // Where much is under way there is much that can go wrong.
            for (int turn = 0; turn < (pending.isEmpty() ? 0 : 2); ++turn)
                QCOMPARE(complaint(afterPowerCut(durable, pending), recording, pictures),
                         QString());
        }
    }

    void aDiskThatFailsLeavesWhatHasBeenAppended_data()
    {
        QTest::addColumn<bool>("tears");
        QTest::newRow("before the write") << false;
        QTest::newRow("half way") << true;
    }

    /// For each operation in turn: it fails, and all after it; or it fails and the disk then works
    /// again, as when there is room for the little that the end of a movie needs.
    void aDiskThatFailsLeavesWhatHasBeenAppended()
    {
        QFETCH(bool, tears);
        int failures = 0;
        for (int from = 8; failures == 0 || from - failures < 8 + 1; ++from) {
            NotedDisk disk;
            disk.failsFrom = from;
            disk.tears = tears;
            Recording recording(disk, 9000);
            int appended = 0;
            for (int n = 0; n < 12 && recording.append(); ++n)
                appended = recording.samples[0];
            if (appended == 12 * 15)
                break;
            ++failures;
            if (appended == 0)
                continue;
            QCOMPARE(complaint(disk.file(), recording, appended), QString());
            disk.failsFrom = -1;
            recording.file.finish();
            QCOMPARE(complaint(disk.file(), recording, appended), QString());
        }
        QVERIFY(failures > 50);
    }

    void anHourCostsNoMoreThanAMinute()
    {
        CountedDisk disk;
        Recording recording(disk, 3000);
        qint64 samples = 0;
        qint64 mostInAMinute = 0;
        for (int minute = 0; minute < 60; ++minute) {
            const qint64 before = disk.written;
            for (int n = 0; n < 120; ++n)
                QVERIFY(recording.append());
            samples = qint64(recording.samples[0]) * 3005 + qint64(recording.samples[1]) * 205;
            mostInAMinute = std::max(mostInAMinute, disk.written - before);
        }
        // Beside the samples themselves it is the index, now and then as a whole.
        QVERIFY2(mostInAMinute < samples / 60 * 2, qPrintable(QString::number(mostInAMinute)));
        const qint64 before = disk.written;
        QVERIFY(recording.file.finish());
        const qint64 index = disk.size - samples;
        QVERIFY2(index < samples / 100, qPrintable(QString("%1 of %2").arg(index).arg(samples)));
        QVERIFY(disk.written - before < index + 1000);
    }
};

REGISTER_PLAIN_TEST(QuickTimeFileTest)
#include "tst_quicktime_file.moc"
