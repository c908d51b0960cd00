#pragma once

#include "tests/media/Lateness.h"
#include "tests/media/MovieFile.h"
#include "tests/media/RecordProbe.h"
#include "tests/media/SoundServer.h"
#include "tests/media/WhenFree.h"

#include <QtTest>

#include <functional>
#include <future>
#include <map>

/// Movies whose recording is disturbed. They are recorded some at a time, as each spends its time
/// waiting, and looked at when all have been begun.
class DisturbedMovies
{
public:
    /// What of a movie may be missing after a fault, in seconds.
    static constexpr double LAST_SECOND = 1.1;
    static constexpr int FAULT_TIMEOUT_MS = 90000;

    /// What a recording has left.
    struct Outcome {
        bool asPlanned = false;
        /// When the machine counts for what is missing.
        Lateness::Clock::time_point from = Lateness::Clock::now();
        Lateness::Clock::time_point to;
        /// As long as it was recorded.
        double seconds = 0;
        /// What the probe said, and why the recording failed.
        QByteArray said;
        QString failure;
        QString file;
    };

    DisturbedMovies() { m_server.pretendAbsent(); }

    void record(const QString &name, const std::function<Outcome(const QString &file)> &faulty)
    {
        const QString file = m_folder.filePath(QString(name).replace(' ', '-') + ".mov");
        const auto job = [file, faulty] {
            const Lateness::Clock::time_point from = Lateness::Clock::now();
            Outcome outcome = faulty(file);
            outcome.from = from;
            outcome.to = Lateness::Clock::now();
            outcome.file = file;
            return outcome;
        };
        m_movies.emplace(name, whenFree(m_places, job));
    }

    [[nodiscard]] QStringList movies() const
    {
        QStringList names;
        for (const auto &movie : m_movies)
            names << movie.first;
        return names;
    }
    /// Once for each.
    Outcome recorded(const QString &name) { return m_movies.at(name).get(); }

    /// With what the script says, which records a movie to the file that it is told last.
    static Outcome byScript(const QString &script, const QStringList &arguments)
    {
        QProcess run;
        run.start(script, arguments);
        Outcome outcome;
        outcome.asPlanned = run.waitForFinished(FAULT_TIMEOUT_MS) && run.exitCode() == 0;
        outcome.said = run.readAllStandardOutput() + run.readAllStandardError();
        return outcome;
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    void waitForDone() const
    {
        for (const auto &movie : m_movies) {
            if (movie.second.valid())
                movie.second.wait();
        }
    }

    /// What a machine under load may cost beside: a save takes several turns of its threads and of
    /// the disk. On one at rest that is some hundredths of a second.
    double allowance(const Outcome &outcome) const
    {
        constexpr int TURNS = 4;
        return TURNS * m_lateness.most(outcome.from, outcome.to);
    }

    static void expectUnbroken(const QVector<MovieFile::Picture> &pictures)
    {
        for (int n = 1; n < pictures.size(); ++n)
            QVERIFY(pictures[n].number > pictures[n - 1].number);
    }

    void expectPlayableUpToTheFailure(const Outcome &outcome) const
    {
        // The last whole second that the probe told of before the failure.
        double seconds = 0;
        for (const QByteArray &line : outcome.said.split('\n')) {
            if (line.startsWith("second "))
                seconds = line.split(' ').value(1).toDouble();
        }
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY2(seconds > 1, "failed too early to tell anything");
        QVERIFY2(movie.duration() > seconds - 1.0 - LAST_SECOND - allowance(outcome),
                 qPrintable(QString("%1 of %2 s").arg(movie.duration()).arg(seconds)));
        expectUnbroken(movie.pictures());
    }

private:
    static constexpr int MOVIES_AT_ONCE = 2;

    QTemporaryDir m_folder;
    SoundServer m_server{m_folder.path()};
    Lateness m_lateness{m_folder.path()};
    QSemaphore m_places{MOVIES_AT_ONCE};
    std::map<QString, std::future<Outcome>> m_movies;
};
