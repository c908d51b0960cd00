#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <vector>

#include <sys/stat.h>

namespace
{

/// Far more than any call of a player takes that does not wait for the file.
constexpr int CALL_LIMIT_MS = 1000;
constexpr std::array SUFFIXES{"mp4", "avi", "mkv", "ts", "mpg", "wmv"};

QByteArray noise(int size)
{
    std::mt19937 random(1);
    QByteArray bytes(size, 0);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}

QByteArray withFaults(QByteArray content)
{
    std::mt19937 random(1);
    for (int n = 0; n < content.size() / 1000; ++n)
        content[static_cast<int>(random() % static_cast<unsigned>(content.size()))] =
            static_cast<char>(random());
    return content;
}

} // namespace

/// Whatever a file holds, the window goes on and the next film plays.
class FilmBadInputTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_good;

    QString path(const QString &name) const { return m_folder.filePath(name); }

    bool write(const QString &name, const QByteArray &content)
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

private slots:
    void initTestCase()
    {
        m_good = path("good.mp4");
        TestFilm made;
        made.seconds = 1.0 / 3;
        QVERIFY(made.write(m_good));
    }

    void badFilesOfEverySuffix_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char *suffix : SUFFIXES)
            QTest::newRow(suffix) << suffix;
    }

    /// All of a suffix at the same time, as each spends its time waiting.
    void badFilesOfEverySuffix()
    {
        QFETCH(QString, suffix);
        TestFilm made;
        made.seconds = 0.5;
        const bool old = suffix == "mpg" || suffix == "wmv";
        if (old) {
            made.video = QStringList{"-c:v", suffix == "mpg" ? "mpeg2video" : "wmv2"};
            made.sound = QStringList{"-c:a", suffix == "mpg" ? "mp2" : "wmav2"};
        }
        if (suffix == "mp4")
            made.output = QStringList{"-movflags", "faststart"};
        QVERIFY(made.write(path("whole." + suffix)));
        QFile file(path("whole." + suffix));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();

        QStringList bad;
        const auto add = [&](const QString &name, const QByteArray &content) {
            bad.append(path(name + '.' + suffix));
            return write(name + '.' + suffix, content);
        };
        for (const int percent : {10, 50, 90})
            QVERIFY(add(QString("cut %1").arg(percent), whole.left(whole.size() * percent / 100)));
        QVERIFY(add("damaged", withFaults(whole)));
        QVERIFY(add("empty", {}));
        QVERIFY(add("text", QByteArray("This is no film.\n").repeated(2000)));
        QVERIFY(add("noise", noise(200000)));
        QVERIFY(QDir(m_folder.path()).mkdir("folder." + suffix));
        bad.append(path("folder." + suffix));
        QCOMPARE(mkfifo(qPrintable(path("pipe." + suffix)), 0600), 0);
        bad.append(path("pipe." + suffix));
        play(bad);
    }

private:
    struct Show {
        explicit Show(const QString &path)
            : name(path)
        {
            sink.readNumber = TestFilm::numberIn;
            connect(&source, &FilmSource::faulty, &source, [this] { faulty = true; });
            call([this] { source.setFile(name); });
        }
        bool answered() const { return faulty || sink.count() > 0 || sink.refreshing(); }
        template <class Call>
        void call(const Call &what)
        {
            QElapsedTimer clock;
            clock.start();
            what();
            slowestMs = std::max(slowestMs, clock.elapsed());
        }

        QString name;
        RecordingSink sink;
        FilmSource source{&sink, nullptr};
        bool faulty = false;
        qint64 slowestMs = 0;
    };

    void play(const QStringList &bad)
    {
        std::vector<std::unique_ptr<Show>> shows;
        for (const QString &each : bad)
            shows.push_back(std::make_unique<Show>(each));
        for (const auto &show : shows) {
            QVERIFY2(QTest::qWaitFor([&] { return show->answered(); }, TIMEOUT_MS),
                     qPrintable(show->name));
            for (const int percent : {50, 100, 0})
                show->call([&] { show->source.setPosition(percent); });
            show->call([&] { show->source.forward(); });
            show->call([&] { show->source.backward(); });
        }
        for (const auto &show : shows) {
            show->call([&] { show->source.setFile(m_good); });
            show->sink.forget();
        }
        for (const auto &show : shows) {
            QVERIFY2(QTest::qWaitFor([&] { return show->sink.lastNumber() == 9; }, TIMEOUT_MS),
                     qPrintable(show->name));
            QVERIFY2(show->slowestMs < CALL_LIMIT_MS, qPrintable(show->name));
        }
    }
};

REGISTER_CORE_TEST(FilmBadInputTest)
#include "tst_film_bad_input.moc"
