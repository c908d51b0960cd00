#include "canvas/model/OutputFolder.h"
#include "tests/TestProgram.h"
#include "tests/fakes/HangingFolder.h"

#include <QtTest>

#include <QDir>
#include <QTemporaryDir>

#include <thread>
#include <vector>

using State = OutputFolder::State;

class OutputFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void saysWhetherItIsThere()
    {
        QTemporaryDir folder;
        const auto there = OutputFolder::of(folder.path());
        QCOMPARE(there->path(), folder.path());
        QCOMPARE(there->state(), State::Exists);
        QCOMPARE(OutputFolder::of(folder.filePath("gone"))->state(), State::Missing);
        folder.remove();
        QCOMPARE(there->state(), State::Missing);
    }

    void isOneObjectForAllWhoUseIt()
    {
        QTemporaryDir folder;
        const auto first = OutputFolder::of(folder.path());
        QCOMPARE(OutputFolder::of(folder.path()), first);
        QVERIFY(OutputFolder::of("/") != first);
        QCOMPARE(OutputFolder::of(folder.path()), first);
    }

    void writesAndReplacesAFile()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        for (const QByteArray &bytes : {QByteArray("a long one"), QByteArray("short")}) {
            QVERIFY(!output->write(folder.filePath("a"), bytes));
            QFile file(folder.filePath("a"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), bytes);
        }
        QCOMPARE(output->write(folder.filePath("gone/a"), "x").value_or(QString()),
                 QString("No such file or directory"));
    }

    void waitsOnceForAFolderThatHangs()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        {
            const HangingFolder hanging(folder.path());
            QCOMPARE(output->state(), State::TimedOut);
            QCOMPARE(hanging.waiting(), 1);
            // The others do not wait, and ask nothing more of the server.
            for (int i = 0; i < 1000; ++i)
                QCOMPARE(output->state(), State::Waiting);
            QCOMPARE(output->write(folder.filePath("a"), "x").value_or(QString()),
                     QString("Connection timed out"));
            QCOMPARE(hanging.waiting(), 1);
        }
        QTRY_COMPARE(output->state(), State::Exists);
        QVERIFY(!output->write(folder.filePath("a"), "x"));
    }

    void isRememberedWhileItHangs()
    {
        QTemporaryDir folder;
        {
            const HangingFolder hanging(folder.path());
            QCOMPARE(OutputFolder::of(folder.path())->state(), State::TimedOut);
            QCOMPARE(OutputFolder::of("/")->state(), State::Exists);
            QCOMPARE(OutputFolder::of(folder.path())->state(), State::Waiting);
            QCOMPARE(hanging.waiting(), 1);
        }
        QTRY_COMPARE(OutputFolder::of(folder.path())->state(), State::Exists);
    }

    void holdsUpNoOtherFolder()
    {
        QTemporaryDir hung;
        QTemporaryDir local;
        const HangingFolder hanging(hung.path());
        QCOMPARE(OutputFolder::of(hung.path())->state(), State::TimedOut);
        const auto output = OutputFolder::of(local.path());
        QCOMPARE(output->state(), State::Exists);
        QVERIFY(!output->write(local.filePath("a"), "x"));
    }

    void aWriteThatHangsIsLeftToItself()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        {
            const HangingFolder hanging(folder.path(), HangingFolder::Opening);
            QCOMPARE(output->state(), State::Exists);
            QCOMPARE(output->write(folder.filePath("a"), "x").value_or(QString()),
                     QString("Connection timed out"));
            QCOMPARE(output->state(), State::Waiting);
        }
        QTRY_COMPARE(output->state(), State::Exists);
        QCOMPARE(QFileInfo(folder.filePath("a")).size(), 1);
    }

    void removesAFile()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        QVERIFY(!output->write(folder.filePath("a"), "x"));
        output->remove(folder.filePath("a"));
        QVERIFY(!QFile::exists(folder.filePath("a")));
        output->remove(folder.filePath("a"));
    }

    void aRemovalThatWasGivenUpIsNotMadeUpFor()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        QVERIFY(!output->write(folder.filePath("a"), "x"));
        {
            const HangingFolder hanging(folder.path(), HangingFolder::EverythingAndRemoving);
            output->remove(folder.filePath("a"));
            QCOMPARE(hanging.waiting(), 1);
            QCOMPARE(output->state(), State::Waiting);
            output->remove(folder.filePath("a"));
            QCOMPARE(hanging.waiting(), 1);
        }
        QTRY_COMPARE(output->state(), State::Exists);
        QVERIFY(QFile::exists(folder.filePath("a")));
    }

    void manyThreadsMayAskAndWrite()
    {
        QTemporaryDir folder;
        const auto output = OutputFolder::of(folder.path());
        std::atomic<int> failures{0};
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&, bytes = QByteArray(1000 * (i + 1), char('a' + i))] {
                for (int round = 0; round < 50; ++round) {
                    if (output->state() != State::Exists ||
                        output->write(folder.filePath("a"), bytes))
                        ++failures;
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(failures, 0);
        QFile file(folder.filePath("a"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        QVERIFY(whole.size() >= 1000);
        QCOMPARE(whole, QByteArray(whole.size(), whole[0]));
    }
};

REGISTER_CORE_TEST(OutputFolderTest)
#include "tst_output_folder.moc"
